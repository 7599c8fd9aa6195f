#!/usr/bin/env python3
"""Makes the part of the C# binding that follows from the interfaces and from the property table.

    generate.py FOLDER morquilapi.json MorquilAPI.idl MorquilDelivery.idl VOCABULARY.h...

FOLDER receives `MorquilAPI.cs` and `MorquilAPI.SourceGenerated.cs`, the interfaces for the runtime's own COM support
and for the one of .NET 8, and `Slots.cs`, `Features.cs`, `WordTable.cs` and `PropertyTable.cs` for the layer over them.
"""

import json
import pathlib
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
    read_constants,
    read_enumerations,
    read_help,
    read_identifiers,
    read_interfaces,
    read_words,
    without_comments,
)

HEADER = "// Generated from the interface definitions: do not edit.\n"
TYPES = {"int": "int", "unsigned int": "uint", "double": "double", "long": "int", "unsigned __int64": "ulong"}
KEYWORDS = {"lock"}
HIDING = {"GetType": "new "}  # every object has a method of this name

# The API accepts some numbers above the range of presets that devices report.
PRESETS_ABOVE = {"preset.save": 1, "preset.recall": 2}


def variable(name):
    return f"@{name}" if name in KEYWORDS else name


def member(enumeration, name, constants):
    return dict(zip(constants, enumerator_names(enumeration, constants)))[name]


def interface_type(kind):
    """The type of a parameter in an interface."""
    pointee = kind.rstrip("*")
    if pointee == "BSTR":
        return "string"
    return TYPES.get(pointee) or (pointee if pointee.startswith("IMorquil") else enumeration_name(pointee))


# ---- The interfaces


def write_enumerations(enumerations, numbers):
    yield "namespace Morquil"
    yield "{"
    for name, constants in enumerations.items():
        yield f"    public enum {enumeration_name(name)}"
        yield "    {"
        for constant, own in zip(constants, enumerator_names(name, constants)):
            number = numbers[constant]
            yield f"        {own} = {number if number < 1000 else hex(number)},"
        yield "    }\n"
    yield "}"


def write_parameter(parameter, text_attribute):
    direction, kind, name = parameter
    attribute = f"[{text_attribute}] " if kind == "BSTR" else ""
    return f"{attribute}{'out ' if direction == 'out' else ''}{interface_type(kind)} {variable(name)}"


def write_interfaces(interfaces, identifiers, help_texts, attributes, modifiers, text_attribute):
    yield "namespace Morquil"
    yield "{"
    for name, methods in interfaces.items():
        yield f"    /// <summary>{help_texts[name]}.</summary>"
        yield f'    [{attributes}, Guid("{identifiers[name]}")]'
        yield f"    public {modifiers}interface {name}"
        yield "    {"
        for method, parameters in methods:
            text = ", ".join(write_parameter(each, text_attribute) for each in parameters)
            yield f"        [PreserveSig] int {method}({text});"
        yield "    }\n"


def write_contract(enumerations, numbers, interfaces, identifiers, help_texts):
    yield HEADER
    yield "// MorquilAPI.idl and MorquilDelivery.idl describe each interface and method. No method throws."
    yield "#pragma warning disable 1591  // no comments here"
    yield from write_enumerations(enumerations, numbers)
    yield "\n#if !NET8_0_OR_GREATER  // MorquilAPI.SourceGenerated.cs has the same for .NET 8"
    yield "namespace Morquil"
    yield "{"
    yield "    using System.Runtime.InteropServices;\n"
    yield "    /// <summary>The class to create on Windows, where the library is registered.</summary>"
    yield f'    [ComImport, Guid("{identifiers["CMorquilDiscovery"]}"), ClassInterface(ClassInterfaceType.None)]'
    yield "    public class CMorquilDiscovery"
    yield "    {"
    yield "    }\n"
    yield from list(write_interfaces(interfaces, identifiers, help_texts,
                                     "ComImport, InterfaceType(ComInterfaceType.InterfaceIsIUnknown)", "",
                                     "MarshalAs(UnmanagedType.BStr)"))[2:]
    yield "}"
    yield "#endif"


def write_source_generated(interfaces, identifiers, help_texts):
    yield HEADER
    yield "#pragma warning disable 1591  // no comments here"
    yield "#if NET8_0_OR_GREATER"
    yield "using System.Runtime.InteropServices;"
    yield "using System.Runtime.InteropServices.Marshalling;"
    yield "using Morquil.Interop;\n"
    yield from write_interfaces(interfaces, identifiers, help_texts, "GeneratedComInterface", "partial ",
                                "MarshalUsing(typeof(TextMarshaller))")
    yield "}"
    yield "#endif"


# ---- Slots, and the types of the functions in them


def slot_type(direction, kind):
    """(name in the type of the function, type)"""
    if kind == "BSTR":
        return ("OutText", "out IntPtr") if direction == "out" else ("Text", "LibraryText")
    if kind.endswith("*"):
        return ("OutReference", "out IntPtr") if direction == "out" else ("Reference", "ComReference")
    own = TYPES.get(kind, "int")
    name = {"int": "Int32", "uint": "UInt32", "ulong": "UInt64", "double": "Double"}[own]
    return (f"Out{name}", f"out {own}") if direction == "out" else (name, own)


def function_type(parameters):
    return "Call" + "".join(slot_type(direction, kind)[0] for direction, kind, _ in parameters)


def write_slots(interfaces, identifiers):
    functions = {function_type(parameters): parameters for methods in interfaces.values() for _, parameters in methods}
    yield HEADER
    yield "using System;\n"
    yield "namespace Morquil.Interop"
    yield "{"
    for name, parameters in sorted(functions.items()):
        own = "".join(f", {slot_type(direction, kind)[1]} {chr(ord('a') + number)}"
                      for number, (direction, kind, _) in enumerate(parameters))
        yield f"    internal delegate int {name}(ComReference self{own});"
    yield "\n    /// <summary>The interfaces: their identifiers, and the numbers of their methods.</summary>"
    yield "    internal static class Slots"
    yield "    {"
    yield f'        internal static readonly Guid DiscoveryClass = new Guid("{identifiers["CMorquilDiscovery"]}");\n'
    for name, methods in interfaces.items():
        yield f"        internal static class {interface_name(name)}"
        yield "        {"
        yield f'            internal static readonly Guid Id = new Guid("{identifiers[name]}");'
        for slot, (method, _) in enumerate(methods, start=3):
            yield f"            internal {HIDING.get(method, '')}const int {method} = {slot};"
        yield "        }\n"
    yield "    }"
    yield "}"


# ---- Features


def class_name(interface):
    return "DeviceCalls" if interface == "IMorquilDevice" else interface_name(interface)


class FeatureWriter:
    def __init__(self, enumerations):
        self.enumerations = enumerations

    def is_simple(self, kind):
        return kind in TYPES or kind in self.enumerations or kind == "BSTR"

    def own_type(self, kind):
        # Qualified, because a feature class has the same name as an enumeration.
        if kind in self.enumerations:
            return f"Morquil.{enumeration_name(kind)}"
        return {"long": "bool", "BSTR": "string"}.get(kind) or TYPES[kind]

    def pass_in(self, kind, name):
        if kind in self.enumerations:
            return f"(int){variable(name)}"
        return {"long": f"{variable(name)} ? 1 : 0", "BSTR": f"{name}Text"}.get(kind, variable(name))

    def take_out(self, kind, name):
        if kind in self.enumerations:
            return f"({self.own_type(kind)}){name}Out"
        return {"long": f"{name}Out != 0", "BSTR": f"LibraryText.Take({name}Out)"}.get(kind, f"{name}Out")

    def method(self, owner, method, parameters):
        ins = [(kind, name) for direction, kind, name in parameters if direction == "in"]
        outs = [(kind, name) for direction, kind, name in parameters if direction == "out"]
        result = self.own_type(outs[0][0]) if outs else "void"
        result = f"Range<{result}>" if len(outs) == 2 else result
        inputs = ", ".join(f"{self.own_type(kind)} {variable(name)}" for kind, name in ins)
        arguments = []
        for direction, kind, name in parameters:
            out_type = slot_type(direction, kind)[1].removeprefix("out ")
            arguments.append(f"out {out_type} {name}Out" if direction == "out" else self.pass_in(kind, name))
        check = "CheckFlag" if method == "IsGenRefAvailable" else "CheckGetter" if outs else "CheckSetter"
        yield f"        public {HIDING.get(method, '')}{result} {method}({inputs})"
        yield "        {"
        indent = " " * 12
        for kind, name in ins:
            if kind == "BSTR":
                yield f"{indent}using (var {name}Text = new LibraryText({variable(name)}))"
                indent += "    "
        call = f"Function<{function_type(parameters)}>(Slots.{owner}.{method})({', '.join(['Self', *arguments])})"
        yield f'{indent}{check}("{owner}.{method}", {call});'
        values = [self.take_out(kind, name) for kind, name in outs]
        if len(outs) == 1:
            yield f"{indent}return {values[0]};"
        elif outs:
            yield f"{indent}return new {result}({', '.join(values)});"
        yield "        }\n"

    def feature(self, name, methods, what):
        own = class_name(name)
        yield f"    /// <summary>{what}. MorquilAPI.idl describes each method of {name}.</summary>"
        yield f"    public sealed partial class {own} : Feature"
        yield "    {"
        yield f"        internal {own}(ComReference self, MorquilDevice device) : base(self, device)"
        yield "        {"
        yield "        }\n"
        for method, parameters in methods:
            own_way = method in HAND_WRITTEN_METHODS and method != "IsGenRefAvailable"
            if all(self.is_simple(kind) for _, kind, _ in parameters) and not own_way:
                yield from self.method(interface_name(name), method, parameters)
        yield "    }\n"


def write_features(enumerations, interfaces, help_texts):
    shown = {name: methods for name, methods in interfaces.items()
             if name not in HAND_WRITTEN_INTERFACES and name != "IMorquilAlign"}
    yield HEADER
    yield "// A getter answers what the device has last reported. A setter returns when the change is queued:"
    yield "// MorquilDevice.Apply waits for what became of it."
    yield "#pragma warning disable 1591  // the interface definitions describe the methods"
    yield "using System;"
    yield "using Morquil.Interop;\n"
    yield "namespace Morquil.Features"
    yield "{"
    writer = FeatureWriter(enumerations)
    for name, methods in shown.items():
        yield from writer.feature(name, methods, help_texts[name])
    yield "}\n"
    yield "namespace Morquil"
    yield "{"
    yield "    public sealed partial class MorquilDevice"
    yield "    {"
    for name in shown:
        if name not in NOT_OF_THE_DEVICE:
            own = interface_name(name)
            field = own[0].lower() + own[1:]
            yield f"        private Features.{own} {field};\n"
            yield f"        public Features.{own} {own} => Feature(ref {field}, Slots.{own}.Id,"
            yield f"            (self, device) => new Features.{own}(self, device));\n"
    yield "    }"
    yield "}"


# ---- Words


def write_words(enumerations, words):
    yield HEADER
    yield "namespace Morquil.Interop"
    yield "{"
    yield "    internal static class WordTable"
    yield "    {"
    yield "        internal static readonly WordList[] All ="
    yield "        {"
    for name, rows in words.items():
        kind = enumeration_name(name)
        yield f"            new WordList(typeof({kind}), new[]"
        yield "            {"
        for word, constant in rows:
            own = None if constant.isdigit() else member(name, constant, enumerations[name])
            value = f"{kind}.{own}" if own else f"({kind}){constant}"
            yield f'                new Word("{word}", {value}),'
        yield "            }),"
    yield "        };"
    yield "    }"
    yield "}"


# ---- Properties


class PropertyWriter:
    def __init__(self, enumerations, interfaces):
        self.enumerations = enumerations
        self.methods = {interface: dict(methods) for interface, methods in interfaces.items()}

    def parameters(self, row, call):
        return self.methods[row["interface"]][call.partition("::")[2]]

    @staticmethod
    def call(row, call):
        feature = "Calls" if row["interface"] == "IMorquilDevice" else interface_name(row["interface"])
        return f"d.{feature}.{call.partition('::')[2]}"

    @staticmethod
    def followed(row):
        return [f'd.Get<VideoMode>("{name}")' for name in row.get("offerFollows", ())]

    def value_type(self, row):
        if "enumeration" in row:
            return enumeration_name(row["enumeration"])
        fixed = {"decimal": "double", "yes/no": "bool", "text": "string", "timecode": "string", "address": "string"}
        if row["kind"] in fixed or row["kind"] == "none":
            return fixed.get(row["kind"])
        parameters = self.parameters(row, row.get("getter") or row["setter"])
        return TYPES[parameters[-1][1]]

    def getter(self, row):
        index = str(row["index"]) if "index" in row else ""
        call = f"{self.call(row, row['getter'])}({index})"
        form = {"timecode": "Formats.Timecode({})", "address": "Formats.Address({})"}.get(row["kind"], "{}")
        return f"d => {form.format(call)}"

    def setter(self, row):
        if row["kind"] == "none":
            return f"(d, v) => {self.call(row, row['setter'])}()"
        index = f"{row['index']}, " if "index" in row else ""
        value = "Formats.ParseTimecode((string)v)" if row["kind"] == "timecode" else f"({self.value_type(row)})v"
        return f"(d, v) => {self.call(row, row['setter'])}({index}{value})"

    def offer(self, row):
        call, followed = self.call(row, row["range"]), self.followed(row)
        kind = self.value_type(row)
        if row["range"] == "Device::IsConversionSupported":
            conversion = "AspectRatios" if len(followed) == 2 else "VideoModes"
            return f"d => Offer.{conversion}({', '.join(['d.Calls', *followed])})"
        if "::Is" in row["range"]:
            return f"d => Offer.Words<{kind}>(w => {call}({', '.join([*followed, 'w'])}))"
        if followed and row["interface"] != "IMorquilReference":
            # Ranges of lines depend on the frame height, those of the reference on the mode itself.
            followed = [f"Formats.FrameHeight({followed[0]})"]
        answer = f"{call}({', '.join(followed)})"
        if "enumeration" in row:
            return f"d => Offer.Words({answer})"
        if row["name"] in PRESETS_ABOVE:
            return f"d => Offer.Range({answer}, above: {PRESETS_ABOVE[row['name']]})"
        return f"d => Offer.Range({answer})"

    def row(self, row):
        access = {"read": "Read", "read/write": "ReadWrite", "command": "Command"}[row["access"]]
        kind = {"yes/no": "YesNo", "none": "None"}.get(row["kind"], row["kind"].capitalize())
        set_name = member("_MorquilPropertySetId", row["propertySet"], self.enumerations["_MorquilPropertySetId"])
        yield f"            new Property(\"{row['name']}\", PropertyKind.{kind}, PropertyAccess.{access}, " \
              f"PropertySet.{set_name}, {json.dumps(row['summary'])})"
        yield "            {"
        value_type = self.value_type(row)
        if value_type:
            yield f"                ValueType = typeof({value_type}),"
        if "unit" in row:
            yield f"                Unit = {json.dumps(row['unit'])},"
        if value_type in ("int", "uint"):
            yield f"                Smallest = {row['min']}, Largest = {row['max']},"
        if "mostBytes" in row:
            yield f"                MostBytes = {row['mostBytes']},"
        if row["interface"] == "IMorquilPreset" and "index" in row:
            yield f"                Preset = {row['index'] + 1},"
        if "getter" in row:
            yield f"                Getter = {self.getter(row)},"
        if "setter" in row:
            yield f"                Setter = {self.setter(row)},"
        if "range" in row:
            yield f"                OfferGetter = {self.offer(row)},"
        yield "            },"


def write_properties(properties, enumerations, interfaces):
    yield HEADER
    yield "namespace Morquil.Interop"
    yield "{"
    yield "    internal static class PropertyRows"
    yield "    {"
    yield "        internal static readonly Property[] All ="
    yield "        {"
    writer = PropertyWriter(enumerations, interfaces)
    for row in properties:
        yield from writer.row(row)
    yield "        };"
    yield "    }"
    yield "}"


def save(path, lines):
    text = "\n".join(lines) + "\n"
    for end in ("    }", "}"):
        text = text.replace(f"\n\n{end}", f"\n{end}").replace(f"\n\n    {end}", f"\n    {end}")
    path.write_text(text, encoding="utf-8")


def main():
    folder, description, *definitions = map(pathlib.Path, sys.argv[1:])
    folder.mkdir(parents=True, exist_ok=True)
    texts = [without_comments(path.read_text(encoding="utf-8")) for path in definitions[:2]]
    enumerations, numbers, interfaces, identifiers, help_texts = {}, {}, {}, {}, {}
    for text in texts:
        enumerations.update(read_enumerations(text))
        numbers.update(read_constants(text))
        interfaces.update(read_interfaces(text))
        identifiers.update(read_identifiers(text))
        help_texts.update(read_help(text))
    words = read_words(path.read_text(encoding="utf-8") for path in definitions[2:])
    own = read_interfaces(texts[0])
    properties = json.loads(description.read_text(encoding="utf-8"))["properties"]
    save(folder / "MorquilAPI.cs", write_contract(enumerations, numbers, interfaces, identifiers, help_texts))
    save(folder / "MorquilAPI.SourceGenerated.cs", write_source_generated(interfaces, identifiers, help_texts))
    save(folder / "Slots.cs", write_slots(interfaces, identifiers))
    save(folder / "Features.cs", write_features(enumerations, own, help_texts))
    save(folder / "WordTable.cs", write_words(enumerations, words))
    save(folder / "PropertyTable.cs", write_properties(properties, enumerations, own))


if __name__ == "__main__":
    main()
