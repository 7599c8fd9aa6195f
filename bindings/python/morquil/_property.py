"""The properties of a device by name: what each is, and its values."""

from typing import Callable, Dict, List, NamedTuple, Optional, Tuple, Type, Union

from ._library import check_text
from ._word import Word, decimal, whole, yes_or_no
from .errors import InvalidValue, NoSuchProperty
from ._suggestion import nearest, nearest_first

#: A word, a whole number, a decimal, a yes or no, a text, a timecode "10:00:00:00" or an address "192.168.1.10".
Value = Union[bool, int, float, str]


class Property(NamedTuple):
    """One row of the table."""

    name: str  # "proc-amp.gain"
    kind: str  # "number", "bits", "decimal", "yes/no", "word", "text", "timecode", "address", or "none" for a command
    summary: str
    access: str  # "read", "read/write" or "command"
    feature: str
    property_set: int
    getter: str = ""
    setter: str = ""
    range_getter: str = ""
    offer_follows: Tuple[str, ...] = ()
    item: int = -1  # the number of its channel, pair or preset, counted from 0, if there are several
    smallest: int = 0
    largest: int = 0
    most_bytes: int = 0
    unit: str = ""
    words: Optional[Type[Word]] = None

    @property
    def is_readable(self) -> bool:
        """Whether it has a value."""
        return bool(self.getter)

    @property
    def is_writable(self) -> bool:
        """Whether it can be set."""
        return bool(self.setter)


def format_timecode(packed: int) -> str:
    """Two decimal digits are in each byte."""
    return ":".join(f"{packed >> shift & 0xFF:02x}" for shift in (24, 16, 8, 0))


def parse_timecode(text: object) -> int:
    """The opposite; any of : ; . separates."""
    parts = text.replace(";", ":").replace(".", ":").split(":") if isinstance(text, str) else []
    beyond = (24, 60, 60, 60)
    packed = 0
    good = len(parts) == len(beyond)
    for part, limit in zip(parts, beyond):
        good = good and len(part) == 2 and part.isascii() and part.isdigit() and int(part) < limit
        packed = packed << 8 | (int(part, 16) if good else 0)
    if not good:
        raise InvalidValue(f"{text!r} is not a timecode such as 01:02:03:04")
    return packed


def format_address(packed: int) -> str:
    """The first number is in the top byte."""
    return ".".join(str(packed >> shift & 0xFF) for shift in (24, 16, 8, 0))




_FORMATS: "Dict[str, Callable[[int], Value]]" = {"timecode": format_timecode, "address": format_address}


def from_raw(row: Property) -> "Optional[Callable[[int], Value]]":
    """What turns a getter's answer into a value; None if that is one."""
    return _FORMATS.get(row.kind)


def _number(row: Property, value: Value) -> Value:
    return whole(value, row.smallest, row.largest)


def _truth(row: Property, value: Value) -> Value:
    return bool(yes_or_no(value))


def _word(row: Property, value: Value) -> Value:
    assert row.words is not None
    found = row.words.named(value) if isinstance(value, str) else None
    if found is not None:
        return found
    known = tuple(row.words)
    given = str(value)
    best = nearest(given, known)
    similar = tuple(nearest_first(given, known, 3)) if best else ()
    hint = f"nearest: {best}" if best else f"there are {', '.join(known[:8])}" + (" and others" if len(known) > 8 else "")
    raise InvalidValue(f"{value!r} is not a word of {row.name}; {hint}", similar)


def _text(row: Property, value: Value) -> Value:
    check_text(value)
    length = len(str(value).encode())
    if row.most_bytes and length > row.most_bytes:
        raise InvalidValue(f"the text has {length} bytes, and at most {row.most_bytes} are kept")
    return value


def _nothing(row: Property, value: Value) -> Value:
    raise InvalidValue(f"{row.name} is a command without a value")


_CHECKS: "Dict[str, Callable[[Property, Value], Value]]" = {
    "number": _number,
    "bits": _number,
    "decimal": lambda row, value: decimal(value),
    "yes/no": _truth,
    "word": _word,
    "text": _text,
    "timecode": lambda row, value: parse_timecode(value),
    "none": _nothing,
}


def to_raw(row: Property, value: Optional[Value]) -> Value:
    """What the setter takes for a value. Raises InvalidValue unless it is one of the property."""
    if value is None:
        raise InvalidValue(f"{row.name} needs a value")
    try:
        return _CHECKS[row.kind](row, value)
    except InvalidValue as error:
        raise InvalidValue(f"{row.name}: {error}", error.nearest) from None


class Table:
    """The properties by name, by set and by pattern."""

    def __init__(self, rows: Tuple[Property, ...]) -> None:
        self.rows = rows
        self.by_name = {row.name: row for row in rows}
        self.by_set: Dict[int, List[Property]] = {}
        for row in rows:
            if row.is_readable:
                self.by_set.setdefault(row.property_set, []).append(row)

    def find(self, name: str) -> Property:
        """The property of this name, ignoring case."""
        row = self.by_name.get(name) or self.by_name.get(name.lower())
        if row is None:
            best = nearest(name, tuple(self.by_name))
            raise NoSuchProperty(f"there is no property {name!r}" + (f"; nearest: {best}" if best else ""), best)
        return row

    def matching(self, pattern: str) -> List[Property]:
        """Those that `pattern` means: a name, its part before a point, or a name with * and ? in it."""
        from fnmatch import fnmatchcase

        wanted = pattern.lower()
        found = [row for row in self.rows if row.name.startswith(wanted + ".") or fnmatchcase(row.name, wanted)]
        return found or [self.find(pattern)]
