"""The pages of the protocol: kinds of values, blocks, words."""

import markdown

FOLDER = "reference/protocol"

ROLES = {"announcement": "The device sends it once, at the start.",
         "settings": "The device reports it; a host changes settings by sending their keys.",
         "offer": "What the settings can be set to. The device reports it when a host sends the empty block."}


def key_name(row):
    return markdown.code(row["key"] + "N" if "count" in row else row["key"])


def key_values(row):
    text = row["kind"]
    if "vocabulary" in row:
        text += f" of [{row['vocabulary']}](words-{markdown.file_name(row['vocabulary'])})"
    if "count" in row:
        text += f"; N from 0 to {row['count'] - 1}"
    return text


USES = {"observed": "only the device sets it", "command": "carried out once", "setting": ""}


def key_notes(row):
    notes = ["needed to connect" if row["needed"] else "",
             "" if row["read"] else "only written: ignored in a report",
             "selects what the following lines belong to" if row["selects"] else "",
             f"for the preceding {markdown.code(row['group'])}" if "group" in row else "",
             USES.get(row.get("use"), ""),
             "offered by " + ", ".join(map(markdown.code, row["offeredBy"])) if "offeredBy" in row else ""]
    return "; ".join(note for note in notes if note)


def block_notes(row):
    notes = [ROLES[row["role"]], "Needed to connect." if row["needed"] else "Not needed to connect."]
    if not row["sentByLibrary"]:
        notes.append("The library never sends it.")
    return " ".join(notes)


def block(row):
    rows = [[key_name(key), key_values(key), markdown.code(key.get("example", "")), key_notes(key)]
            for key in row["keys"]]
    return "\n\n".join([f"(block-{markdown.file_name(row['header'])})=\n## {row['number']}. {row['header']}",
                        block_notes(row), markdown.table(["Key", "Value", "Example", "Notes"], rows)])


def blocks_page(description):
    about = ("*Needed to connect*: a host is connected only when the block has arrived with all of its keys that are "
             "marked the same way. The input's `Video mode` and `Video pixel format` are needed only while a signal is "
             "present.")
    return "\n\n".join(["# Blocks of the protocol", about, *map(block, description["blocks"])])


def kinds_page(description):
    rows = description["kinds"].items()
    return "# Kinds of values of the protocol\n\n" + markdown.table(["Kind", "Value in a line"], rows)


def vocabulary(row):
    owner = (f"Values of {{cpp:enum}}`{row['enumeration']}`." if "enumeration" in row
             else "No enumeration of the interfaces has these values.")
    rows = [[word["value"], markdown.code(word["word"]), markdown.code(word.get("constant", ""))]
            for word in row["words"]]
    return "\n\n".join([f"(words-{markdown.file_name(row['name'])})=\n## {row['name']}", owner,
                        markdown.table(["Value", "Word", "Constant"], rows)])


def words_page(description):
    about = ("The words of a list are separated by spaces. So a word that contains a space can be used on its own, but "
             "cannot be read from a list.")
    return "\n\n".join(["# Words of the protocol", about, *map(vocabulary, description["vocabularies"])])


def pages(description):
    """Path and text of each page."""
    yield f"{FOLDER}/blocks.md", blocks_page(description)
    yield f"{FOLDER}/kinds.md", kinds_page(description)
    yield f"{FOLDER}/words.md", words_page(description)
