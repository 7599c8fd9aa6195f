"""The most similar of several texts."""

from typing import List, Sequence, TypeVar

S = TypeVar("S", bound=str)

__all__ = ["edit_distance", "nearest", "nearest_first"]


def edit_distance(left: str, right: str) -> int:
    """How many letters must be inserted, removed or replaced to turn one text into the other, ignoring case."""
    left, right = left.lower(), right.lower()
    row = list(range(len(right) + 1))
    for letter in left:
        diagonal, row[0] = row[0], row[0] + 1
        for at, other in enumerate(right):
            replaced = diagonal + (letter != other)
            diagonal = row[at + 1]
            row[at + 1] = min(replaced, diagonal + 1, row[at] + 1)
    return row[-1]


def nearest(text: str, candidates: Sequence[str]) -> str:
    """The most similar candidate, or an empty text if none is similar."""
    similar = [(edit_distance(text, each), at) for at, each in enumerate(candidates)]
    similar = [(edits, at) for edits, at in similar if 2 * edits <= max(len(text), len(candidates[at]))]
    return candidates[min(similar)[1]] if similar else ""


def _shared_beginning(left: str, right: str) -> int:
    length = 0
    while left[length : length + 1].lower() == right[length : length + 1].lower() != "":
        length += 1
    return length


def nearest_first(text: str, candidates: Sequence[S], most: int) -> List[S]:
    """At most `most` candidates, the most similar first; of equally similar ones, those that begin like `text`."""
    rank = {each: (edit_distance(text, each), -_shared_beginning(text, each)) for each in candidates}
    return sorted(candidates, key=rank.__getitem__)[:most]
