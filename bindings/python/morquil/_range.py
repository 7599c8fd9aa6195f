"""Ranges of values."""

from typing import Any, Generic, Iterator, Tuple, TypeVar, Union

T = TypeVar("T", bound=Union[int, float, str])


class Range(Generic[T]):
    """From `min` to `max`; both are included."""

    __slots__ = ("max", "min")

    def __init__(self, min: T, max: T) -> None:
        self.min: T = min
        self.max: T = max

    def __contains__(self, value: Any) -> bool:
        return bool(self.min <= value <= self.max)

    def __iter__(self) -> Iterator[T]:
        """For `smallest, largest = ...`."""
        return iter((self.min, self.max))

    def __eq__(self, other: object) -> bool:
        ends: Tuple[object, ...] = tuple(other) if isinstance(other, Range) else ()  # pyright: ignore
        return tuple(self) == ends

    def __hash__(self) -> int:
        return hash(tuple(self))

    def __repr__(self) -> str:
        return f"Range({self.min!r}, {self.max!r})"

    def __str__(self) -> str:
        return f"{self.min} to {self.max}"
