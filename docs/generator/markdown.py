"""Pieces of Markdown that the generated pages are made of."""

import re


def table(heads, rows):
    def line(cells):
        return "| " + " | ".join(str(cell).replace("|", "\\|") for cell in cells) + " |"
    return "\n".join([line(heads), line("---" for _ in heads)] + [line(row) for row in rows])


def code(text):
    return f"`{text}`" if text else ""


def slug(heading):
    """The anchor that code hosting sites give a heading."""
    text = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading)
    return re.sub(r"[^\w -]", "", text.lower()).replace(" ", "-")


def file_name(name):
    return re.sub(r"[^a-z0-9]+", "-", name.lower()).strip("-")


def directive(name, argument, body="", colons=3):
    """A directive of the site; one that holds others needs more colons than they have."""
    fence = ":" * colons
    return f"{fence}{{{name}}} {argument}\n{body}\n{fence}\n"


def fields(pairs):
    """A list of named facts; empty ones are left out."""
    return "\n".join(f":{name}: {text}" for name, text in pairs if text)


FENCED = re.compile(r"(^ *```.*?^ *```$)", re.M | re.S)


def outside_code(text, change):
    """Applies `change` to everything except the blocks between fences."""
    return "".join(part if part.lstrip().startswith("```") else change(part) for part in FENCED.split(text))
