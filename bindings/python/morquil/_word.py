"""Values of the interfaces: words, and numbers that fit."""

import sys
from enum import Enum
from typing import Dict, Optional, Type, TypeVar

from .errors import Error, InvalidValue

W = TypeVar("W", bound="Word")

_by_number: "Dict[type, Dict[int, Word]]" = {}
_by_word: "Dict[type, Dict[str, Word]]" = {}


class Word(str, Enum):
    """A value of an enumeration. It is the word that devices and people use, and equals it: VideoMode.PAL == "625i50 PAL".
    `number` is what the interfaces call it."""

    number: int

    def __new__(cls: Type[W], word: str, number: int) -> W:
        member = str.__new__(cls, word)
        member._value_ = word
        member.number = number
        _by_number.setdefault(cls, {})[number] = member
        _by_word.setdefault(cls, {})[word.lower()] = member
        return member

    def __str__(self) -> str:
        return str.__str__(self)

    def __format__(self, specification: str) -> str:
        return str.__format__(self, specification)

    @classmethod
    def of(cls: Type[W], number: int) -> W:
        """The member with this number."""
        try:
            return _by_number[cls][number]  # type: ignore[return-value]
        except KeyError:
            raise Error(f"{cls.__name__} has no value {number}") from None


    @classmethod
    def named(cls: Type[W], word: str) -> Optional[W]:
        """The member with this word, ignoring case."""
        return _by_word[cls].get(word.lower())  # type: ignore[return-value]


def number_of(kind: Type[Word], value: str) -> int:
    """The number of a member, or of its word."""
    if type(value) is kind:
        return value.number
    # A word of another enumeration may be spelt the same.
    found = kind.named(value) if type(value) is str else None
    if found is None:
        raise InvalidValue(f"{value!r} is not one of {kind.__name__}: {', '.join(kind)}", tuple(kind))
    return found.number


def whole(value: object, smallest: int, largest: int) -> int:
    """A whole number within limits."""
    if not isinstance(value, int) or isinstance(value, bool):
        raise InvalidValue(f"{value!r} is not a whole number")
    if not smallest <= value <= largest:
        nearest = smallest if value < smallest else largest
        raise InvalidValue(f"{value} is outside {smallest} to {largest}", (nearest,))
    return value


def int32(value: object) -> int:
    """A number that a method takes as `int`."""
    return whole(value, -0x80000000, 0x7FFFFFFF)


def uint32(value: object) -> int:
    """A number that a method takes as `unsigned int`."""
    return whole(value, 0, 0xFFFFFFFF)


def decimal(value: object) -> float:
    """A number that a method takes as `double`."""
    if isinstance(value, (int, float)) and not isinstance(value, bool) and abs(value) <= sys.float_info.max:
        return float(value)
    raise InvalidValue(f"{value!r} is not a number such as 1.25")


def yes_or_no(value: object) -> int:
    """What a method takes as `long`."""
    if isinstance(value, bool):
        return int(value)
    raise InvalidValue(f"{value!r} is neither True nor False")
