"""Writes the interfaces, and the generated part of the C++ layer, as headers with documentation comments.

    headers.py DESCRIPTION.json MorquilAPI.idl interfaces.hpp FOLDER
"""

import json
import os
import re
import sys

import idl


class Properties:
    """Which property of the command line a method belongs to."""

    def __init__(self, description):
        self.names = {}
        for row in description["properties"]:
            for call in ("getter", "setter", "range"):
                if call in row:
                    key = (row["interface"], row[call].split("::")[1])
                    self.names.setdefault(key, []).append(row["name"])

    def of(self, interface, method):
        names = self.names.get((interface, method), [])
        if not names:
            return ""
        shown = "`" + names[0] + "`" + (" to `" + names[-1] + "`" if len(names) > 2 else "")
        return f"\n\nIn morquilctl: {shown}."


def usual_comment(method):
    """The comment that follows from a method's name and parameters."""
    outs = [p for p in method.parameters if p[0] == "out"]
    if not outs and method.name.startswith(("Set", "Reset", "Start", "Save", "Recall")):
        return "Queues the change. The getter answers the new value once the device has reported it."
    if not outs:
        return ""
    if method.name.startswith("Is"):
        return "Whether the device offers it now: 0 until the device has reported it."
    if len(outs) == 2:
        return "The limits, as the device has reported them."
    return "The value, as the device has reported it."


def as_comment(text, indent=""):
    return "\n".join((indent + "/// " + line).rstrip() for line in text.split("\n"))


def signature(method):
    return ", ".join(f"{kind.replace('long', 'LONG')} {name}" for _, kind, name in method.parameters)


def interface_lines(interface, feature, properties):
    about = interface.help + ".\n\n" + interface.comment
    if feature:
        about += "\n\nGet it with QueryInterface on a device."
    yield as_comment(about)
    yield f"class {interface.name} : public IUnknown {{\npublic:"
    for method in interface.methods:
        comment = (method.comment or usual_comment(method)) + properties.of(interface.name, method.name)
        yield as_comment(comment, "    ")
        yield f"    virtual HRESULT {method.name}({signature(method)}) = 0;"
    yield "};\n"


def words_of_constants(description):
    return {word["constant"]: word["word"] for table in description["vocabularies"] for word in table["words"]
            if "constant" in word}


def value_comment(name, value, words):
    """The word of a value, or the four characters of an identifier."""
    if name in words:
        return f"  ///< Word \"{words[name]}\"."
    number = int(value, 0)
    return f"  ///< '{number.to_bytes(4, 'big').decode()}'" if number > 0xFFFF else ""


def interfaces_header(description, path):
    conventions, enumerations, interfaces = idl.read(path)
    features = {row["interface"]: row for row in description["features"]}
    words = words_of_constants(description)
    properties = Properties(description)
    vocabularies = {row["enumeration"]: row["name"] for row in description["vocabularies"] if "enumeration" in row}
    # The first words of each paragraph of the conventions are its title.
    yield as_comment("\\file MorquilAPI.h\n\n" + re.sub(r"^(\w[\w ]{2,14}\.) ", r"**\1** ", conventions, flags=re.M))
    yield ""
    for enumeration in enumerations:
        vocabulary = vocabularies.get(enumeration.name)
        yield as_comment(enumeration.comment or "Numbers of the interfaces." if not vocabulary else
                         f"Values of the vocabulary \\ref words-{vocabulary.lower()} \"{vocabulary}\".")
        yield f"enum {enumeration.name} {{"
        for name, value in enumeration.constants:
            yield f"    {name} = {value},{value_comment(name, value, words)}"
        yield "};\n"
    for interface in interfaces:
        yield from interface_lines(interface, features.get(interface.name), properties)


def layer_header(description, path):
    """The generated header of the C++ layer, with the method that each function calls and the word of each value."""
    words = words_of_constants(description)
    interface = ""
    # Without the tables of words, for which Doxygen would make an empty page per enumeration.
    tables = r"(?:///[^\n]*\n)?template <>\nstruct Words<.*?\n};\n"
    header = re.sub(tables, "", open(path, encoding="utf-8").read(), flags=re.S)
    for line in header.split("\n"):
        opened = re.match(r"class (\w+) : public Interface<(\w+)>", line)
        method = re.match(r"    [\w:<> ]+ (\w+)\(.*\) const \{$", line)
        value = re.match(r"    \w+ = (\w+),$", line)
        feature = re.match(r"    features::(\w+) \w+\(\) const", line)
        if opened:
            interface = opened[2]
            yield f"/// The functions of {interface}, which return values and throw exceptions."
        elif line.startswith("enum class"):
            yield "/// The values of the interfaces' enumeration of the same name."
        elif value and value[1] in words:
            line += f"  ///< Word \"{words[value[1]]}\"."
        elif feature:
            yield f"    /// A feature of the device. It keeps the device alive."
        elif method and interface:
            yield f"    /// Calls {interface}::{method[1]}."
        elif line.startswith("};"):
            interface = ""
        yield line


def main():
    description_path, idl_path, layer_path, folder = sys.argv[1:]
    description = json.load(open(description_path, encoding="utf-8"))
    os.makedirs(folder + "/morquil", exist_ok=True)
    for name, lines in (("MorquilAPI.h", interfaces_header(description, idl_path)),
                        ("morquil/interfaces.hpp", layer_header(description, layer_path))):
        with open(f"{folder}/{name}", "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
