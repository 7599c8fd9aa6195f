#!/usr/bin/env python3
"""Makes the table of properties of the C++ layer, from the property table of the tools and the interface definitions.

    generate_properties.py property_table.hpp PROPERTY.cpp MorquilAPI.idl SOURCE...

PROPERTY.cpp puts the parts of the table together; the sources are these parts, and what their rows refer to.
"""

import pathlib
import re
import sys

sys.dont_write_bytecode = True  # the sources may be read-only
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))

from generator.definitions import (  # noqa: E402
    enumeration_name,
    enumerator_names,
    property_set,
    read_enumerations,
    read_interfaces,
    without_comments,
)
from generator.property_rows import read_properties  # noqa: E402

# How a value is stored.
STORED = {"int": "std::int64_t", "unsigned int": "std::int64_t", "double": "double", "long": "bool", "BSTR": "std::string"}

HEADER = """// Generated from the table of properties. Include morquil.hpp instead.
#pragma once

#include "morquil/property_calls.hpp"

namespace morquil::detail {

/// Every property of a device. A template, so that only programs that use it compile it.
template <class = void>
struct PropertyTable {
    static constexpr PropertyRow rows[] = {"""

FOOTER = """    };
};

}  // namespace morquil::detail"""


def number(value):
    """Not every compiler knows the smallest number as one literal."""
    return f"{value + 1} - 1" if value == -(2**31) else str(value)


class Writer:
    def __init__(self, enumerations, interfaces):
        self.enumerations = enumerations
        self.methods = {name: dict(methods) for name, methods in interfaces.items()}
        sets = enumerations["_MorquilPropertySetId"]
        self.sets = dict(zip(sets, enumerator_names("_MorquilPropertySetId", sets)))

    def stored(self, raw_type):
        return STORED.get(raw_type, "std::int64_t")

    def offer(self, row):
        """The function that says what the device accepts now."""
        words = f"morquil::{enumeration_name(row.raw_type)}" if row.raw_type in self.enumerations else ""
        if not row.offer:
            return "nullptr"
        if row.offer in self.methods[row.interface]:
            outs = [kind for direction, kind, _ in self.methods[row.interface][row.offer] if direction == "out"]
            method = f"&{row.interface}::{row.offer}"
            if len(outs) == 1:
                return f"&OfferedWords<{words}, {method}>"
            return f"&WordsBetween<{words}, {method}>" if words else f"&RangeOf<{self.stored(row.raw_type)}, {method}>"
        name, arguments = re.fullmatch(r"(\w+)(?:<(.*)>)?", row.offer).groups()
        if name in ("RangeOfHeight", "RangeOfOutputMode"):
            method, *mode = re.split(r",\s*", arguments)
            return f"&{name}<{', '.join([self.stored(row.raw_type), f'&{row.interface}::{method}', *mode])}>"
        if name in ("DropFrameModes", "OutputModes", "OutputRatios"):
            return f"&{name}"
        if name == "PresetNumbers":
            return f"&PresetNumbers<{arguments}>"
        raise ValueError(f"{row.name}: unknown offer {row.offer}")

    def row(self, row):
        words = enumeration_name(row.raw_type) if row.kind == "Word" else ""
        constant = property_set(row.interface, self.sets)
        smallest, largest = row.limits if row.kind in ("Number", "Bits") else (0, 0)
        info = ", ".join([f'"{row.name}"', f'"{row.summary}"', f"PropertyKind::{row.kind}", f'"{row.unit}"',
                          f"PropertySet::{self.sets[constant]}", "true" if row.getter else "false",
                          "true" if row.setter else "false", f'"{words}"', number(smallest), number(largest),
                          str(row.most_bytes)])
        calls = ", ".join([
            str(row.item),
            f"WordsOf<morquil::{words}>()" if words else "WordList()",
            f"&{row.exists}" if row.exists else "nullptr",
            f"&Read<{self.stored(row.raw_type)}, &{row.interface}::{row.getter}>" if row.getter else "nullptr",
            f"&Write<{self.stored(row.raw_type)}, &{row.interface}::{row.setter}>" if row.setter else "nullptr",
            self.offer(row)])
        return f"        {{{{{info}}},\n         {calls}}},"


def main():
    target, order, idl, *sources = sys.argv[1:]
    texts = [pathlib.Path(path).read_text(encoding="utf-8") for path in sources]
    definitions = without_comments(pathlib.Path(idl).read_text(encoding="utf-8"))
    interfaces = read_interfaces(definitions)
    rows = read_properties(interfaces, texts, pathlib.Path(order).read_text(encoding="utf-8"), [*texts, definitions])
    writer = Writer(read_enumerations(definitions), interfaces)
    lines = [HEADER, *(writer.row(row) for row in rows), FOOTER]
    pathlib.Path(target).write_text("\n".join(lines) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
