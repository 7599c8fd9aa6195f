#!/usr/bin/env python3
"""Makes the part of the Python package that follows from the interfaces and from the property table.

    generate.py FOLDER morquilapi.json MorquilAPI.idl MorquilDelivery.idl VOCABULARY.h...

FOLDER receives `enumerations.py`, `features.py`, `_contract.py` and `_property_table.py`.
"""

import json
import pathlib
import re
import sys
import uuid

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
    shared_prefix,
    without_comments,
)

HEADER = '"""{}\n\nGenerated from the interface definitions: do not edit.\n"""\n'

# The letter of each type in a signature, as `_com.py` reads it; pointers and outputs are "p".
LETTERS = {"int": "i", "unsigned int": "u", "double": "d", "long": "i", "unsigned __int64": "q"}
RAW_TYPES = {"i": "c_int32", "u": "c_uint32", "d": "c_double"}
ANNOTATIONS = {"int": "int", "unsigned int": "int", "double": "float", "long": "bool", "BSTR": "str"}
CHECKS = {"int": "int32({})", "unsigned int": "uint32({})", "double": "decimal({})", "long": "yes_or_no({})"}


def snake(name):
    """`IsSDIModeAvailable` becomes `is_sdi_mode_available`."""
    boundaries = r"(?<=[a-z])(?=[A-Z])|(?<=[A-Z0-9])(?=[A-Z][a-z]{2})|(?<=[a-z]{2})(?=[0-9])|(?<=3D)(?=[A-Z])"
    return re.sub(boundaries, "_", name).lower()


def enumerator(name):
    return snake(name).upper()


def letter(direction, kind):
    return "p" if direction == "out" or kind == "BSTR" or kind.endswith("*") else LETTERS.get(kind, "i")


def signature(parameters):
    return "".join(letter(direction, kind) for direction, kind, _ in parameters)


def write_enumerations(enumerations, words, numbers):
    yield HEADER.format("The words that devices and people use for values, and the numbers of everything else.")
    yield "from enum import IntEnum\n\nfrom ._word import Word\n"
    names = [enumeration_name(name) for name in enumerations]
    yield "__all__ = [" + ", ".join(f'"{name}"' for name in sorted(names)) + "]"
    for name, constants in enumerations.items():
        yield f"\n\nclass {enumeration_name(name)}({'Word' if name in words else 'IntEnum'}):"
        own_names = dict(zip(constants, enumerator_names(name, constants)))
        if name not in words:
            for constant in constants:
                yield f"    {enumerator(own_names[constant])} = {numbers[constant]:#x}"
            continue
        prefix = shared_prefix([word for word, _ in words[name]])
        for word, constant in words[name]:
            own = own_names.get(constant, word[len(prefix):])
            number = numbers[constant] if constant in numbers else int(constant)
            yield f'    {enumerator(own)} = "{word}", {number}'


def in_memory(identifier):
    """The bytes of an identifier, as hexadecimal digits."""
    return uuid.UUID(identifier).bytes_le.hex()


def write_contract(interfaces, identifiers):
    yield HEADER.format("The interfaces: their identifiers and their methods, in the order of the slots.")
    yield "from ._com import Contract\n"
    yield f'DISCOVERY_CLASS = bytes.fromhex("{in_memory(identifiers["CMorquilDiscovery"])}")\n'
    for name, methods in interfaces.items():
        yield f"{interface_name(name)} = Contract("
        yield f'    "{name}",'
        yield f'    bytes.fromhex("{in_memory(identifiers[name])}"),'
        rows = "".join(f'\n        ("{snake(method)}", "{signature(parameters)}"),' for method, parameters in methods)
        yield f"    ({rows}{chr(10) + '    ' if rows else ''}),"
        yield ")"


def class_name(interface):
    """`Device` is the name of a class that is written by hand."""
    return "DeviceCalls" if interface == "IMorquilDevice" else interface_name(interface)


class FeatureWriter:
    def __init__(self, enumerations):
        self.enumerations = enumerations

    def is_simple(self, kind):
        return kind in ANNOTATIONS or kind in self.enumerations

    def annotation(self, kind):
        return f"words.{enumeration_name(kind)}" if kind in self.enumerations else ANNOTATIONS[kind]

    def pass_in(self, kind, name):
        if kind in self.enumerations:
            return f"number_of(words.{enumeration_name(kind)}, {name})"
        return CHECKS[kind].format(name)

    def take_out(self, kind, variable):
        if kind in self.enumerations:
            return f"words.{enumeration_name(kind)}.of({variable}.value)"
        if kind == "BSTR":
            return f"take_text({variable})"
        return f"{variable}.value != 0" if kind == "long" else f"{variable}.value"

    def raw_type(self, kind):
        return "c_void_p" if kind == "BSTR" else RAW_TYPES[letter("in", kind)]

    def method(self, slot, owner, method, parameters):
        ins = [(kind, snake(name)) for direction, kind, name in parameters if direction == "in"]
        outs = [(kind, snake(name)) for direction, kind, name in parameters if direction == "out"]
        own = snake(method)
        inputs = "".join(f", {name}: {self.annotation(kind)}" for kind, name in ins)
        result = self.annotation(outs[0][0]) if outs else "None"
        result = f"Range[{result}]" if len(outs) == 2 else result
        yield f"    def {own}(self{inputs}) -> {result}:"
        for kind, name in outs:
            yield f"        {name}_out = {self.raw_type(kind)}()"
        texts = [name for kind, name in ins if kind == "BSTR"]
        arguments = [f"byref({snake(name)}_out)" if direction == "out" else
                     f"{snake(name)}_text" if kind == "BSTR" else self.pass_in(kind, snake(name))
                     for direction, kind, name in parameters]
        call = f"self._calls[{slot}]({', '.join(['self._this', *arguments])})"
        indent = "        "
        for name in texts:
            yield f"{indent}with text_in({name}) as {name}_text:"
            indent += "    "
        yield f"{indent}result = {call}"
        # This one answers through its flag; its result means nothing.
        condition = "result < 0 and result != E_FAIL" if method == "IsGenRefAvailable" else "result < 0"
        yield f"        if {condition}:"
        yield f'            raise self._failure("{owner}.{own}", result, {bool(outs)})'
        values = [self.take_out(kind, f"{name}_out") for kind, name in outs]
        if len(outs) == 1:
            yield f"        return {values[0]}"
        elif outs:
            yield f"        return Range({', '.join(values)})"
        yield ""

    def feature(self, name, methods, what):
        owner = interface_name(name)
        yield f"\nclass {class_name(name)}(Feature):"
        yield f'    """{what}. MorquilAPI.idl describes each method of {name}."""\n'
        yield "    __slots__ = ()"
        yield f"    contract = _contract.{owner}\n"
        for slot, (method, parameters) in enumerate(methods, start=3):
            own_way = method in HAND_WRITTEN_METHODS and method != "IsGenRefAvailable"
            if all(self.is_simple(kind) for _, kind, _ in parameters) and not own_way:
                yield from self.method(slot, owner, method, parameters)


def write_features(enumerations, interfaces, help_texts):
    shown = {name: methods for name, methods in interfaces.items()
             if name not in HAND_WRITTEN_INTERFACES and name != "IMorquilAlign"}
    features = [name for name in shown if name not in NOT_OF_THE_DEVICE]
    yield HEADER.format("The feature interfaces, method by method.\n\nA getter answers from what the device last "
                        "reported, and a setter returns when the change is queued: `Device.apply`\nwaits for what "
                        "became of it.")
    yield "from ctypes import byref, c_double, c_int32, c_uint32, c_void_p"
    yield "from functools import cached_property\n"
    yield "from . import _contract"
    yield "from . import enumerations as words"
    yield "from ._com import E_FAIL"
    yield "from ._feature import Feature, FeatureOwner"
    yield "from ._library import take_text, text_in"
    yield "from ._range import Range"
    yield "from ._word import decimal, int32, number_of, uint32, yes_or_no"
    public = sorted(["DeviceFeatures", *map(class_name, shown)])
    yield "\n__all__ = [\n    " + ",\n    ".join(f'"{name}"' for name in public) + ",\n]\n"
    writer = FeatureWriter(enumerations)
    for name, methods in shown.items():
        yield from writer.feature(name, methods, help_texts[name])
    yield "\nclass DeviceFeatures(FeatureOwner):"
    yield '    """The features of a device."""\n'
    for name in features:
        yield "    @cached_property"
        yield f"    def {snake(interface_name(name))}(self) -> {interface_name(name)}:"
        yield f"        return self._feature({interface_name(name)})\n"


def function_name(call):
    """`VideoProcAmp::GetGain` becomes `get_gain`."""
    return snake(call.partition("::")[2])


def feature_name(interface):
    return "device" if interface == "IMorquilDevice" else snake(interface_name(interface))


def write_property(row, numbers):
    values = {
        "name": row["name"], "kind": row["kind"], "summary": row["summary"], "access": row["access"],
        "unit": row.get("unit", ""), "feature": feature_name(row["interface"]),
        "property_set": numbers[row["propertySet"]], "getter": function_name(row.get("getter", "")),
        "setter": function_name(row.get("setter", "")), "range_getter": function_name(row.get("range", "")),
        "offer_follows": tuple(row.get("offerFollows", ())), "item": row.get("index", -1),
        "smallest": row.get("min", 0), "largest": row.get("max", 0), "most_bytes": row.get("mostBytes", 0),
    }
    # What is not said has a default.
    given = {key: value for key, value in values.items() if value not in ("", (), 0, -1) or (key, value) == ("item", 0)}
    text = ", ".join(f"{key}={json.dumps(value) if isinstance(value, str) else value}" for key, value in given.items())
    words = f", words=words.{enumeration_name(row['enumeration'])}" if "enumeration" in row else ""
    return f"    Property({text}{words}),"


def write_property_table(properties, numbers):
    yield HEADER.format("The properties of a device by name.")
    yield "from . import enumerations as words"
    yield "from ._property import Property\n"
    yield "ROWS = ("
    for row in properties:
        yield write_property(row, numbers)
    yield ")"


def save(path, lines):
    text = re.sub(r"\n{3,}(?=    )", "\n\n", "\n".join(lines).rstrip() + "\n")
    path.write_text(text, encoding="utf-8")


def main():
    folder, description, *definitions = map(pathlib.Path, sys.argv[1:])
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
    save(folder / "enumerations.py", write_enumerations(enumerations, words, numbers))
    save(folder / "_contract.py", write_contract(interfaces, identifiers))
    save(folder / "features.py", write_features(read_enumerations(texts[0]), own, help_texts))
    save(folder / "_property_table.py", write_property_table(properties, numbers))


if __name__ == "__main__":
    main()
