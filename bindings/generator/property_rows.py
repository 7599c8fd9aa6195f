"""Reads the table of properties as text, for the writers of headers: those are also made where no program of this tree
can run, so they cannot ask one for the description.

The table is `tools/properties/properties_*.cpp`, kinds and limits of values follow from the interfaces. A row that is
not understood is an error. A test compares the result with the table itself.
"""

import re
from typing import NamedTuple, Optional

from .definitions import NOT_OF_THE_DEVICE, interface_name

# Limits in rows, and where each is defined.
CONSTANTS = {
    "nameBytes": r"receivedTextLimit = (\d+);",
    "presetNames": r"std::array<.*, (\d+)> presetName;",
    "PresetChangeSet::namelessPresets": r"namelessPresets = (\d+);",
    "PresetChangeSet::recallablePresets": r"recallablePresets = (\d+);",
    "morquilAudioMaxOutputChannels": r"morquilAudioMaxOutputChannels\s*= (\d+)",
    "morquilAudioMaxPairs": r"morquilAudioMaxPairs\s*= (\d+)",
}

KINDS = {"int": "Number", "unsigned int": "Number", "double": "Decimal", "long": "YesNo", "BSTR": "Text"}
LIMITS = {"int": (-(2**31), 2**31 - 1), "unsigned int": (0, 2**32 - 1)}

ROW = re.compile(r"rows\.(Setting|Settings|Reading|Command)(?=<)")
MODIFIERS = r"\.(As|In|AtMost|ChangingModes)\(([\w:]*)\)"


class Row(NamedTuple):
    name: str
    summary: str
    interface: str
    raw_type: Optional[str]  # of the value, as the interfaces have it; None for a command without one
    kind: str
    unit: str
    getter: str  # "GetGain"; empty if there is none
    setter: str
    offer: str  # the table's own expression, without its class: "RangeOfHeight<GetLineRange, InputMode>"
    item: int  # counted from 0, if there are several; otherwise -1
    limits: tuple
    most_bytes: int
    exists: str  # the name of a condition


def enclosed(text, begin):
    """The end of what the bracket at `begin` encloses."""
    opening, closing = text[begin], {"<": ">", "(": ")"}[text[begin]]
    depth = 0
    quoted = False
    for at in range(begin, len(text)):
        quoted ^= text[at] == '"'
        depth += 0 if quoted else (text[at] == opening) - (text[at] == closing)
        if depth == 0:
            return at
    raise ValueError(f"no {closing} after: {text[begin:begin + 60]}")


def split(text):
    """The parts between the outermost commas."""
    parts = re.split(r",(?![^<]*>)\s*(?=(?:[^\"]*\"[^\"]*\")*[^\"]*$)", text)
    return [part.strip() for part in parts]


class Reader:
    def __init__(self, interfaces, sources):
        self.methods = {name: dict(methods) for name, methods in interfaces.items()}
        self.owners = {interface_name(name): name for name in interfaces if name not in NOT_OF_THE_DEVICE}
        self.owners["DeviceCalls"] = "IMorquilDevice"
        self.constants = {name: self.constant(pattern, sources) for name, pattern in CONSTANTS.items()}

    @staticmethod
    def constant(pattern, sources):
        found = {number for text in sources for number in re.findall(pattern, text)}
        if len(found) != 1:
            raise ValueError(f"{pattern} stands for {sorted(found)}, not for one number")
        return int(found.pop())

    def number(self, text):
        return self.constants[text] if text in self.constants else int(text)

    def value_type(self, interface, getter, setter):
        parameters = self.methods[interface][getter or setter]
        return parameters[-1][1] if parameters else None

    def rows(self, text):
        """The rows of one source, in its order."""
        text = re.sub(r"//[^\n]*", "", text)
        parts = re.split(r"using F = morquil::(?:features::)?(\w+);\s*FeatureRows<F> rows\(all, \"([\w-]+)\"[\w:, ]*\);", text)
        if len(ROW.findall(parts[0])):
            raise ValueError("a row before the beginning of its feature")
        for owner, beginning, body in zip(parts[1::3], parts[2::3], parts[3::3]):
            for match in ROW.finditer(body):
                yield from self.statement(self.owners[owner], beginning, body, match)
            if body.count("rows.") != len(ROW.findall(body)):
                raise ValueError(f"{beginning}: a row of an unknown kind")

    def statement(self, interface, beginning, body, match):
        end_of_calls = enclosed(body, match.end())
        end_of_words = enclosed(body, end_of_calls + 1)
        calls = split(body[match.end() + 1:end_of_calls])
        words = split(body[end_of_calls + 2:end_of_words])
        yield from self.numbered(interface, beginning, match[1], calls, words, self.rest(body, end_of_words + 1))

    @staticmethod
    def rest(body, begin):
        """What is said of a row besides: to the end of its statement, or in the loop that goes through several."""
        loop = re.match(r"\)\s*\{\s*name((?:\.\w+\(\w+\))*)(\.exists = &\w+)?;\s*\}", body[begin:])
        plain = re.match(rf"((?:\s*{MODIFIERS})*);", body[begin:])
        if not loop and not plain:
            raise ValueError(f"not understood: {body[begin:begin + 60]}")
        return loop[1] + (loop[2] or "") if loop else plain[1]

    def numbered(self, interface, beginning, verb, calls, words, rest):
        count = self.number(words.pop(0)) if verb == "Settings" else 0
        name, summary = (word.strip('"') for word in words)
        getter = "" if verb == "Command" else calls.pop(0).removeprefix("&F::")
        setter = "" if verb == "Reading" else calls.pop(0).removeprefix("&F::")
        offer = re.sub(r"&F::|\{\}$", "", calls.pop()) if calls else ""
        offer = re.sub(r"\w+::\w+", lambda name: str(self.number(name[0])), offer)
        raw_type = self.value_type(interface, getter, setter)
        said = dict(re.findall(MODIFIERS, rest))
        kind = said.get("As", "").removeprefix("Kind::") or KINDS.get(raw_type, "Word" if raw_type else "Nothing")
        unit = re.sub(r"(?<=[a-z])(?=[A-Z])", " ", said.get("In", "").removeprefix("Unit::")).lower()
        exists = re.search(r"exists = &(\w+)", rest)
        for item in range(count) if count else [-1]:
            yield Row(f"{beginning}.{name}" + (f".{item + 1}" if count else ""), summary, interface, raw_type, kind, unit,
                      getter, setter, offer, item, LIMITS.get(raw_type, (0, 0)),
                      self.number(said["AtMost"]) if "AtMost" in said else 0, exists[1] if exists else "")


def read_properties(interfaces, table, order, sources):
    """The rows of the whole table. `table`: the texts of its parts; `order`: the text that puts them together;
    `sources`: where the limits in rows are defined."""
    reader = Reader(interfaces, sources)
    for part in re.findall(r"^    (Add\w+Rows)\(all\);", order, re.M):
        texts = [text for text in table if f"void {part}(" in text]
        if len(texts) != 1:
            raise ValueError(f"{part} is defined {len(texts)} times")
        yield from reader.rows(texts[0])
