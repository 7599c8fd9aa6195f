#!/usr/bin/env python3
"""Makes the facts about the interfaces that the C++ layer's types do not carry: their names, their property sets, and
the method that each function of the layer calls.

    interface_facts.py LAYER-GENERATOR MorquilAPI.idl interface_facts.h

The layer's own generator reads the interface definitions, so both agree on every name.
"""

import importlib.util
import sys


def load(path):
    sys.dont_write_bytecode = True  # the sources may be read-only
    specification = importlib.util.spec_from_file_location("layer", path)
    module = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(module)
    return module


def has_function(layer, enumerations, method, parameters):
    """Whether the C++ layer has a function for a method."""
    simple = set(layer.NUMBERS) | set(enumerations) | {"BSTR"}
    is_written_by_hand = method in {"SaveSettingsFile", "LoadSettingsFile"}
    return all(kind in simple for _, kind, _ in parameters) and not is_written_by_hand


def lines(layer, idl):
    enumerations = layer.read_enumerations(idl)
    yield "// Generated from the interface definitions. Include properties/facts.h instead."
    yield "#pragma once"
    yield ""
    yield "namespace Morquil::Properties {"
    for name in enumerations:
        yield ""
        yield "template <>"
        yield f"struct EnumerationFacts<morquil::{layer.enumeration_name(name)}> {{"
        yield f'    static constexpr std::string_view name = "{name}";'
        yield "};"
    for name, methods in layer.read_interfaces(idl).items():
        constant = layer.property_set(name, enumerations["_MorquilPropertySetId"])
        if not constant:
            continue
        cpp = layer.interface_name(name)
        owner = "morquil::DeviceCalls" if name == "IMorquilDevice" else f"morquil::features::{cpp}"
        yield ""
        yield "template <>"
        yield f"struct InterfaceFacts<{owner}> {{"
        yield f'    static constexpr std::string_view name = "{name}";'
        yield f"    static constexpr auto propertySet = static_cast<morquil::PropertySet>({constant});"
        yield f'    static constexpr std::string_view propertySetName = "{constant}";'
        yield "};"
        for method, parameters in methods:
            if has_function(layer, enumerations, method, parameters):
                yield "template <>"
                yield f"struct MethodFacts<&{owner}::{method}> {{"
                yield f'    static constexpr std::string_view name = "{cpp}::{method}";'
                yield f"    static constexpr auto raw = &{name}::{method};"
                yield "};"
    yield ""
    yield "}  // namespace Morquil::Properties"


def main():
    generator, definitions, target = sys.argv[1:]
    layer = load(generator)
    idl = layer.without_comments(open(definitions, encoding="utf-8").read())
    with open(target, "w", encoding="utf-8") as header:
        header.write("\n".join(lines(layer, idl)) + "\n")


if __name__ == "__main__":
    main()
