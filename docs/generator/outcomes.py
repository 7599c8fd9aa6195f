"""The pages of results and of the reasons why there is no connection."""

import markdown

FOLDER = "reference/results"


def value(row, has_characters):
    characters = f" '{row['value'].to_bytes(4, 'big').decode()}'" if has_characters else ""
    return f"0x{row['value']:08X}{characters}"


def entry(row, has_characters):
    facts = [("Value", value(row, has_characters)), ("Cause", row["cause"]), ("What to do", row["cure"])]
    return f"## {row['name']}\n\n{markdown.fields(facts)}"


def page(title, rows, has_characters):
    return "\n\n".join([f"# {title}", *(entry(row, has_characters) for row in rows)])


def pages(description):
    """Path and text of each page."""
    yield f"{FOLDER}/hresults.md", page("Every result", description["results"], False)
    yield f"{FOLDER}/connection-failures.md", page(
        "Why there is no connection", description["connectionFailures"], True)
