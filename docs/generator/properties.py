"""What the description says about a property, in words, and the pages of the properties."""

import markdown

FOLDER = "reference/properties"


def unit(row):
    """The unit of a property's value; the only place that reads it."""
    return row.get("unit") or ("none: the device's own number" if row["kind"] in ("number", "decimal") else "none")


def access(row):
    return "command" if not row["readable"] else "read and write" if row["writable"] else "read only"


KINDS = {"number": "a whole number", "decimal": "a decimal number", "bits": "a bit mask of 32 bits",
         "timecode": "a timecode, `HH:MM:SS:FF`", "address": "a network address",
         "none": "none: it is only carried out"}


def values(row):
    if row["kind"] in ("word", "yes/no"):
        return ", ".join(markdown.code(word) for word in row["words"])
    if row["kind"] == "text":
        return f"text of at most {row['mostBytes']} bytes of UTF-8" if "mostBytes" in row else "text"
    return KINDS[row["kind"]]


def interface_of(row, call):
    """The interface of a call, and its method."""
    owner, method = row[call].split("::")
    return ("IMorquilDevice" if owner == "Device" else row["interface"]), method


def method_link(row, call):
    interface, method = interface_of(row, call)
    return f"{{cpp:func}}`{interface}::{method}`"


def limits(row):
    if "range" in row:
        what = "limits" if row["kind"] in ("number", "decimal") else "words"
        return f"the {what} that the device reports now: {method_link(row, 'range')}"
    if "min" in row:
        return f"{row['min']} to {row['max']}; the device reports no limits"
    return {"none": "none", "decimal": "the device reports no limits"}.get(row["kind"], "every value of its kind")


def device_behaviour(row):
    """What a device does with a change."""
    if not row["writable"]:
        return "sets it itself and reports it; hosts cannot change it"
    if not row["readable"]:
        return "carries it out once, and does not report whether it did"
    if "range" in row and row["kind"] in ("number", "decimal"):
        return "refuses a value outside its limits; the old value then stays"
    if "range" in row:
        return "refuses what it does not offer now; the old value then stays"
    return "reports the new value, or refuses the change; the old value then stays"


def notification(row, feature):
    characters = feature["propertySet"]["characters"]
    own = "also" if characters in ("ouco", "devc") else "not"
    return f"observers of '{characters}'" + (f", {own} of this host's own changes" if row["writable"] else "")


def features_by_interface(description):
    features = {row["interface"]: row for row in description["features"]}
    features["IMorquilDevice"] = {"propertySet": {"characters": "devc"}, "block": "MORQUIL DEVICE"}
    return features


def merged(rows):
    """Properties that differ only in a number become one row, with the first and the last name."""
    kept = []
    for row in rows:
        stem, _, number = row["name"].rpartition(".")
        if number.isdigit() and kept and kept[-1]["stem"] == stem:
            kept[-1]["last"] = row["name"]
            continue
        kept.append(dict(row, stem=stem if number.isdigit() else "", last=""))
    return kept


def example(row):
    if not row["readable"]:
        return ""
    return markdown.code(f"morquilctl get {row['name']}") + ", in C++ " + markdown.code(f'device["{row["name"]}"].Text()')


def entry(row, feature):
    names = row["name"] + (f" to {row['last']}" if row["last"] else "")
    calls = [method_link(row, call) for call in ("getter", "setter") if call in row]
    facts = [("Access", access(row)), ("Values", values(row)), ("Unit", unit(row)), ("Range", limits(row)),
             ("Device", device_behaviour(row)),
             ("Notifies", notification(row, feature) if row["readable"] else ""),
             ("Methods", ", ".join(calls)), ("Example", example(row))]
    return markdown.directive("property", names, f"\n{row['summary']}.\n\n{markdown.fields(facts)}")


def overview(rows):
    return markdown.table(["Property", "Meaning", "Access"],
                          [[f"[`{row['name']}`]({anchor(row['name'])})", row["summary"], access(row)]
                           for row in rows])


def anchor(name):
    return "property-" + markdown.file_name(name)


def group_page(group, rows, features):
    feature = features[rows[0]["interface"]]
    rows = merged(rows)
    about = (f"Interface {{cpp:class}}`{rows[0]['interface']}`, property set '{feature['propertySet']['characters']}', "
             f"block [`{feature['block']}`](block-{markdown.file_name(feature['block'])}).")
    entries = [f"({anchor(row['name'])})=\n{entry(row, feature)}" for row in rows]
    return "\n\n".join([f"# {group} properties", about, overview(rows), *entries])


def pages(description):
    """Path and text of each page."""
    features = features_by_interface(description)
    groups = {}
    for row in description["properties"]:
        groups.setdefault(row["name"].split(".")[0], []).append(row)
    for group, rows in groups.items():
        yield f"{FOLDER}/{group}.md", group_page(group, rows, features)


class ByMethod:
    """Which properties a method belongs to."""

    def __init__(self, description):
        self.rows = {}
        for row in description["properties"]:
            for call in ("getter", "setter", "range"):
                if call in row:
                    self.rows.setdefault(interface_of(row, call), []).append((call, row))

    def of(self, interface, method):
        """The role of the method (getter, setter or range), and the rows."""
        found = self.rows.get((interface, method), [])
        return (found[0][0] if found else ""), [row for _, row in found]
