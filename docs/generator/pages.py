"""Inserts the tables into the pages of the reference: a line {{name}} is replaced by the table of that name.

    pages.py DESCRIPTION.json FOLDER PAGE.md...
"""

import json
import os
import re
import sys


def table(heads, rows):
    def line(cells):
        return "| " + " | ".join(str(cell).replace("|", "\\|") for cell in cells) + " |"
    return "\n".join([line(heads), line("---" for _ in heads)] + [line(row) for row in rows])


def code(text):
    return f"`{text}`" if text else ""


def hexadecimal(number):
    return f"0x{number:08X}"


def outcomes(rows, with_characters=False):
    def value(number):
        characters = number.to_bytes(4, "big").decode() if with_characters else ""
        return hexadecimal(number) + (f" '{characters}'" if characters else "")
    return table(["Name", "Value", "Cause", "What to do"],
                 [[code(row["name"]), value(row["value"]), row["cause"], row["cure"]] for row in rows])


def results(description):
    return outcomes(description["results"])


def connection_failures(description):
    return outcomes(description["connectionFailures"], with_characters=True)


def kinds(description):
    return table(["Kind", "Value in a line"], description["kinds"].items())


# ---- Properties ---------------------------------------------------------------------------------------------------

def interface_methods(row):
    """Getter, setter and the getter of the range, linked to the interface's reference."""
    calls = [row[call].split("::") for call in ("getter", "setter", "range") if call in row]
    calls = [("IMorquilDevice" if owner == "Device" else row["interface"], method) for owner, method in calls]
    return "<br>".join(f"{owner}::{method}" for owner, method in calls)


def property_values(row):
    if row["kind"] == "word":
        return "word: " + ", ".join(code(word) for word in row["words"])
    limit = f", at most {row['mostBytes']} bytes" if "mostBytes" in row else ""
    return row["kind"] + (f" ({row['unit']})" if "unit" in row else "") + limit


def property_meaning(row):
    """The summary, and which other properties change what the device accepts."""
    followed = " and ".join(code(name) for name in row.get("offerFollows", []))
    return row["summary"] + (f"; what the device accepts depends on {followed}" if followed else "")


def merged(rows):
    """Properties that differ only in a number share one row."""
    kept = []
    for row in rows:
        stem, _, number = row["name"].rpartition(".")
        if number.isdigit() and kept and kept[-1]["first"] == stem:
            kept[-1]["last"] = number
            continue
        kept.append(dict(row, first=stem if number.isdigit() else "", last=""))
    for row in kept:
        if row["last"]:
            row["name"] = f"{row['first']}.1` to `{row['first']}.{row['last']}"
    return kept


def properties(description):
    features = {row["interface"]: row for row in description["features"]}
    groups = {}
    for row in description["properties"]:
        groups.setdefault(row["name"].split(".")[0], []).append(row)
    parts = []
    for group, rows in groups.items():
        interface = rows[0]["interface"]
        feature = features.get(interface)
        about = f"Interface {interface}"
        if feature:
            about += f", property set '{feature['propertySet']['characters']}', block `{feature['block']}`"
        else:
            about += ", property set 'devc', block `MORQUIL DEVICE`"
        parts += [f"## {group}", about + ".",
                  table(["Property", "Meaning", "Access", "Values", "Methods"],
                        [[code(row["name"]), property_meaning(row), row["access"], property_values(row), interface_methods(row)]
                         for row in merged(rows)])]
    return "\n\n".join(parts)


# ---- Protocol -----------------------------------------------------------------------------------------------------

def anchor(name):
    return re.sub(r"[^a-z0-9]+", "-", name.lower())


ROLES = {"announcement": "The device sends it once, at the start.",
         "settings": "The device reports it; a host changes settings by sending their keys.",
         "offer": "What the settings can be set to. The device reports it when a host sends the empty block."}


def key_name(row):
    return code(row["key"] + "N" if "count" in row else row["key"])


def key_values(row):
    text = row["kind"]
    if "vocabulary" in row:
        text += f" of [{row['vocabulary']}](#words-{anchor(row['vocabulary'])})"
    if "count" in row:
        text += f"; N from 0 to {row['count'] - 1}"
    return text


def key_notes(row):
    notes = []
    if row["needed"]:
        notes.append("needed to connect")
    if not row["read"]:
        notes.append("only written: ignored in a report")
    if row["selects"]:
        notes.append("selects what the following lines belong to")
    if "group" in row:
        notes.append(f"for the preceding {code(row['group'])}")
    if "offeredBy" in row:
        notes.append("offered by " + ", ".join(code(key) for key in row["offeredBy"]))
    return "; ".join(notes)


def block_notes(row):
    notes = [ROLES[row["role"]]]
    notes.append("Needed to connect." if row["needed"] else "Not needed to connect.")
    if not row["sentByLibrary"]:
        notes.append("The library never sends it.")
    return " ".join(notes)


def blocks(description):
    parts = []
    for row in description["blocks"]:
        parts += [f"### {row['number']}. {row['header']} {{#block-{anchor(row['header'])}}}", block_notes(row),
                  table(["Key", "Value", "Example", "Notes"],
                        [[key_name(key), key_values(key), code(key.get("example", "")), key_notes(key)]
                         for key in row["keys"]])]
    return "\n\n".join(parts)


def vocabularies(description):
    parts = []
    for row in description["vocabularies"]:
        owner = f"::{row['enumeration']}" if "enumeration" in row else "no enumeration of the interfaces"
        parts += [f"### {row['name']} {{#words-{anchor(row['name'])}}}", f"Values of {owner}.",
                  table(["Value", "Word", "Constant"],
                        [[word["value"], code(word["word"]), code(word.get("constant", ""))] for word in row["words"]])]
    return "\n\n".join(parts)


TABLES = {"results": results, "connection failures": connection_failures, "kinds": kinds, "properties": properties,
          "blocks": blocks, "vocabularies": vocabularies}


def main():
    description_path, folder = sys.argv[1:3]
    description = json.load(open(description_path, encoding="utf-8"))
    os.makedirs(folder, exist_ok=True)
    for path in sys.argv[3:]:
        page = open(path, encoding="utf-8").read()
        page = re.sub(r"^\{\{([\w ]+)\}\}$", lambda name: TABLES[name[1]](description), page, flags=re.M)
        with open(f"{folder}/{os.path.basename(path)}", "w", encoding="utf-8") as file:
            file.write(page)


if __name__ == "__main__":
    main()
