"""Ranges of values."""

from typing import Generic, Iterator, TypeVar

T = TypeVar("T", int, float, str)


class Range(Generic[T]):
    """From `min` to `max`; both are included."""

    __slots__ = ("max", "min")

    def __init__(self, min: T, max: T) -> None:
        self.min = min
        self.max = max

    def __contains__(self, value: T) -> bool:
        return self.min <= value <= self.max

    def __iter__(self) -> Iterator[T]:
        """For `smallest, largest = ...`."""
        return iter((self.min, self.max))

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Range) and tuple(self) == tuple(other)  # pyright: ignore[reportUnknownArgumentType]

    def __hash__(self) -> int:
        return hash(tuple(self))

    def __repr__(self) -> str:
        return f"Range({self.min!r}, {self.max!r})"

    def __str__(self) -> str:
        return f"{self.min} to {self.max}"
