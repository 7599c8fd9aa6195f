#!/usr/bin/env python3
"""Makes the part of the C++ layer that follows from the interfaces: identifiers, enumerations, their words, and one class
per interface with one function per method.

    generate.py interfaces.hpp MorquilAPI.idl MorquilDelivery.idl VOCABULARY.h...

The interfaces come from the IDLs, the words of the enumerations from the tables that the library itself reads and
writes them with, so neither is stated a second time.
"""

import pathlib
import re
import sys

sys.dont_write_bytecode = True  # the sources may be read-only
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))

from generator.definitions import (  # noqa: E402
    HAND_WRITTEN_INTERFACES,
    HAND_WRITTEN_METHODS,
    NOT_OF_THE_DEVICE,
    enumeration_name,
    enumerator_names,
    interface_name,
    property_set,  # noqa: F401  for the facts of the property table
    read_enumerations,
    read_identifiers,
    read_interfaces,
    read_words,
    without_comments,
)

NUMBERS = {"int": "int", "unsigned int": "unsigned int", "double": "double", "long": "bool"}  # every long is a yes or no

# What the layer chooses itself.
NO_ENUMERATIONS = {"_MorquilReceiptScope", "_MorquilConsoleMode"}


class Writer:
    def __init__(self, enumerations, words):
        self.enumerations = enumerations
        self.words = words
        self.lines = []

    def write(self, text=""):
        self.lines.append(text)

    def is_simple(self, kind):
        return kind in NUMBERS or kind in self.enumerations or kind == "BSTR"

    def in_type(self, kind):
        return "std::string_view" if kind == "BSTR" else self.out_type(kind)

    def out_type(self, kind):
        if kind == "BSTR":
            return "std::string"
        # Qualified, because a feature class has the same name as an enumeration.
        return "morquil::" + enumeration_name(kind) if kind in self.enumerations else NUMBERS[kind]

    def enumeration(self, name, constants):
        cpp = enumeration_name(name)
        self.write(f"enum class {cpp} : int {{")
        for own, constant in zip(enumerator_names(name, constants), constants):
            self.write(f"    {own} = {constant},")
        self.write("};")
        if name in self.words:
            self.write("/// The protocol's word for each value.")
            self.write("template <>")
            self.write(f"struct Words<{cpp}> {{")
            self.write(f'    static constexpr std::string_view name = "{cpp}";')
            self.write(f"    static constexpr Word<{cpp}> all[] = {{")
            for word, constant in self.words[name]:
                self.write(f'        {{"{word}", static_cast<{cpp}>({constant})}},')
            self.write("    };")
            self.write("};")
        self.write()

    def method(self, interface, method, parameters):
        ins = [p for p in parameters if p[0] == "in"]
        outs = [p for p in parameters if p[0] == "out"]
        signature = ", ".join(f"{self.in_type(kind)} {name}" for _, kind, name in ins)
        result = "void" if not outs else self.out_type(outs[0][1])
        if len(outs) == 2:
            result = f"Range<{result}>"
        self.write(f"    {result} {method}({signature}) const {{")
        arguments = []
        for direction, kind, name in parameters:
            if direction == "out":
                arguments.append(f"detail::Receive({name})")
                self.write(f"        detail::Out<{self.raw_type(kind)}> {name};")
            else:
                arguments.append(f"detail::Pass<{self.raw_type(kind)}>({name})")
        # Temporaries, such as an input text, live until the call is over.
        kind = "Get" if outs else "Set"
        self.write(f'        detail::Check("{interface_name(interface)}::{method}", '
                   f'Raw()->{method}({", ".join(arguments)}), detail::CallKind::{kind});')
        if len(outs) == 1:
            self.write(f"        return detail::Take<{result}>({outs[0][2]});")
        elif outs:
            inner = self.out_type(outs[0][1])
            self.write("        return {" + ", ".join(f"detail::Take<{inner}>({name})" for _, _, name in outs) + "};")
        self.write("    }")

    def raw_type(self, kind):
        return "LONG" if kind == "long" else kind

    def identifier(self, name, text):
        first, second, third, *rest = text.split("-")
        last = ", ".join(f"0x{byte}" for byte in re.findall("..", "".join(rest)))
        self.write("template <>")
        self.write(f"struct Identifier<{name}> {{")
        self.write(f"    static constexpr IID value = {{0x{first}, 0x{second}, 0x{third}, {{{last}}}}};")
        self.write("};")

    def interface(self, name, methods):
        cpp = interface_name(name)
        base = "DeviceCalls" if name == "IMorquilDevice" else cpp
        self.write(f"class {base} : public Interface<{name}> {{")
        self.write("public:")
        self.write(f"    using Interface<{name}>::Interface;")
        for method, parameters in methods:
            simple = all(self.is_simple(kind) for _, kind, _ in parameters)
            if simple and method not in HAND_WRITTEN_METHODS:
                self.method(name, method, parameters)
        if name == "IMorquilReference":
            self.write("    /// The method answers through its flag; its result means nothing.")
            self.write("    bool IsGenRefAvailable(morquil::GenReference genReference) const {")
            self.write("        detail::Out<LONG> isAvailable;")
            self.write("        const HRESULT result = Raw()->IsGenRefAvailable(")
            self.write("            detail::Pass<_MorquilAPIGenReference>(genReference), "
                       "detail::Receive(isAvailable));")
            self.write("        if (result != E_FAIL) {")
            self.write('            detail::Check("Reference::IsGenRefAvailable", result, detail::CallKind::Get);')
            self.write("        }")
            self.write("        return detail::Take<bool>(isAvailable);")
            self.write("    }")
        self.write("};")
        self.write()


def main():
    idl = "".join(without_comments(open(path, encoding="utf-8").read()) for path in sys.argv[2:4])
    enumerations = {name: found for name, found in read_enumerations(idl).items() if name not in NO_ENUMERATIONS}
    words = read_words(open(path, encoding="utf-8").read() for path in sys.argv[4:])
    interfaces = read_interfaces(idl)
    writer = Writer(enumerations, words)
    writer.write("// Generated from the interface definitions. Include morquil.hpp instead.")
    writer.write("#pragma once")
    writer.write()
    writer.write('#include "morquil/call.hpp"')
    writer.write()
    writer.write("namespace morquil {")
    writer.write()
    for name, constants in enumerations.items():
        writer.enumeration(name, constants)
    shown = {n: m for n, m in interfaces.items() if n not in HAND_WRITTEN_INTERFACES}
    writer.write("namespace detail {")
    for name, text in read_identifiers(idl).items():
        writer.identifier(name, text)
    writer.write("}  // namespace detail")
    writer.write()
    writer.write("/// The feature interfaces, method by method. MorquilAPI.idl describes each method.")
    writer.write("namespace features {")
    writer.write()
    for name, methods in shown.items():
        if name != "IMorquilDevice":
            writer.interface(name, methods)
    writer.write("}  // namespace features")
    writer.write()
    writer.interface("IMorquilDevice", shown["IMorquilDevice"])
    writer.write("/// The features of a device.")
    writer.write("class DeviceFeatures : public DeviceCalls {")
    writer.write("public:")
    writer.write("    using DeviceCalls::DeviceCalls;")
    for name in shown:
        if name not in NOT_OF_THE_DEVICE:
            cpp = interface_name(name)
            writer.write(f"    features::{cpp} {cpp}() const {{ return Ask<features::{cpp}>(); }}")
    writer.write("};")
    writer.write()
    writer.write("}  // namespace morquil")
    with open(sys.argv[1], "w", encoding="utf-8") as header:
        header.write("\n".join(writer.lines) + "\n")


if __name__ == "__main__":
    main()
