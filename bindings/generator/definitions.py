"""Reads the interface definitions and the vocabularies, for the writers of all languages.

The interfaces come from the IDLs, the words of the enumerations from the tables that the library itself reads and
writes them with, so neither is stated a second time. Names are those of the interfaces without their prefixes, such as
`VideoProcAmp` and `Mode1080i50`; each writer turns them into its language's form.
"""

import re

# Two limits, not a choice.
NO_ENUMERATIONS = {"_MorquilAPIAudioMaxChannels"}

# What makes or watches objects, and what has unusual results, is written by hand in every language.
HAND_WRITTEN_INTERFACES = {"IMorquilConnectionObserver", "IMorquilPropertyObserver", "IMorquilDiscovery",
                           "IMorquilIterator", "IMorquilReportObserver", "IMorquilReceiptObserver", "IMorquilDelivery",
                           "IMorquilConsoleObserver", "IMorquilConsole"}
HAND_WRITTEN_METHODS = {"SaveSettingsFile", "LoadSettingsFile", "IsGenRefAvailable"}

# The device object is not its own feature, and does not hand out the alignment.
NOT_OF_THE_DEVICE = {"IMorquilDevice", "IMorquilAlign"}


def without_comments(text):
    return re.sub(r"/\*.*?\*/", "", text, flags=re.S)


def identifier_of(name):
    """`3dMode` becomes `Mode3d`: names do not start with a digit."""
    return re.sub(r"^3d(.+)$", r"\g<1>3d", name)


def enumeration_name(name):
    return {"_MorquilConnectToFailure": "ConnectFailure", "_MorquilPropertySetId": "PropertySet"}.get(
        name, identifier_of(re.sub(r"^_Morquil(API)?", "", name)))


def interface_name(name):
    return identifier_of(name.removeprefix("IMorquil"))


def property_set(interface, constants):
    """The set that notifies of an interface's changes. A device's own set has a name of its own."""
    feature = {"IMorquilDevice": "DeviceControl"}.get(interface, interface.removeprefix("IMorquil"))
    constant = f"morquil{feature}PropertySetId"
    return constant if constant in constants else ""


def last_word(name):
    return re.findall(r"[A-Z][a-z]+|[A-Z]+(?![a-z])", name.removesuffix("3d"))[-1]


def shared_prefix(names):
    """What all names start with, up to the beginning of a word."""
    first, last = min(names), max(names)
    length = next((i for i, (a, b) in enumerate(zip(first, last)) if a != b), len(first))
    starts = [i for i in range(1, length + 1) if first[i - 1].islower() and not first[i : i + 1].islower()]
    return first[: max(starts, default=0)]


def enumerator_names(enumeration, names):
    if enumeration == "_MorquilPropertySetId":
        return [identifier_of(n.removeprefix("morquil").removesuffix("PropertySetId")) for n in names]
    if enumeration == "_MorquilConnectToFailure":
        return [n.removeprefix("morquilConnect").removeprefix("ToFailure") for n in names]
    own = "morquilAPI" + enumeration.removeprefix("_MorquilAPI")
    prefix = own if all(n.startswith(own) for n in names) else shared_prefix(names)
    word = last_word(enumeration_name(enumeration))
    rests = [n.removeprefix(prefix).lstrip("_") for n in names]
    return [word + r if r[0].isdigit() or len(r) == 1 else r for r in rests]


def read_enumerations(idl):
    found = {}
    for name, body in re.findall(r"typedef \[v1_enum\] enum (\w+)\s*\{(.*?)\}", idl, flags=re.S):
        if name not in NO_ENUMERATIONS:
            found[name] = re.findall(r"(\w+)\s*=", body)
    return found


def read_words(texts):
    """Enumeration -> [(word, enumerator or number)], in the order of the table."""
    words = {}
    for text in texts:
        for value, body in re.findall(r"struct \w+ \{\s*using Value = (_\w+);(.*?)\n\};", text, flags=re.S):
            rows = re.findall(r'\{"([^"]+)",\s*(?:static_cast<Value>\((\d+)\)|(\w+))', body)
            words[value] = [(word, number or enumerator) for word, number, enumerator in rows]
    return words


def read_interfaces(idl):
    interfaces = {}
    for name, body in re.findall(r"interface (\w+) : IUnknown\s*\{(.*?)\};", idl, flags=re.S):
        methods = re.findall(r"HRESULT (\w+)\((.*?)\);", body, flags=re.S)
        interfaces[name] = [(method, read_parameters(text)) for method, text in methods]
    return interfaces


def read_identifiers(idl):
    """Interface or class -> its identifier."""
    found = re.findall(r"uuid\(([0-9A-F-]+)\)[^]]*\]\s*(?:interface|coclass) (\w+)", idl)
    return {name: identifier for identifier, name in found}


def read_parameters(text):
    parameters = []
    for direction, kind, name in re.findall(r"\[(in|out)\] ([\w ]+?[*]*) ?(\w+)(?:,|$)", " ".join(text.split())):
        parameters.append((direction, kind.strip().removesuffix("*") if direction == "out" else kind.strip(), name))
    return parameters


def read_constants(idl):
    """Constant -> number, of all enumerations."""
    return {name: int(number, 0) for name, number in re.findall(r"(\w+)\s*=\s*(0x[0-9A-Fa-f]+|\d+)", idl)}


def read_help(idl):
    """Interface -> what it is, in a few words."""
    return {name: text for text, name in re.findall(r'helpstring\("([^"]+)"\) \]\s*interface (\w+)', idl)}
