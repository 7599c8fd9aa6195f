"""The pauses between attempts to connect."""

import random


class Backoff:
    """Pauses start with `first` seconds and double up to `longest`; each is varied by up to a quarter, so that the hosts
    of a device that was switched off do not all reconnect at once."""

    def __init__(self, first: float, longest: float) -> None:
        self._first = first
        self._longest = longest
        self._next = first

    def reset(self) -> None:
        """A connection was established."""
        self._next = self._first

    def pause(self) -> float:
        """The next pause, in seconds."""
        pause = self._next * random.uniform(0.75, 1.25)
        self._next = min(2 * self._next, self._longest)
        return pause
