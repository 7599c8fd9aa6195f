"""What can go wrong."""

from typing import TYPE_CHECKING, Any, Optional, Tuple

if TYPE_CHECKING:
    from .enumerations import ConnectFailure
    from .outcome import Outcome

__all__ = [
    "ConnectError",
    "Error",
    "InvalidValue",
    "LibraryNotFound",
    "Lost",
    "NoSuchProperty",
    "NotKnown",
    "NotOffered",
    "ReadOnly",
    "Refused",
    "Timeout",
    "WouldDeadlock",
]


class Error(Exception):
    """The base of all exceptions here."""


class LibraryNotFound(Error):
    """The library itself cannot be loaded."""


class ConnectError(Error):
    """A device that could not be connected; `reason` says why."""

    def __init__(self, text: str, reason: "ConnectFailure") -> None:
        super().__init__(text)
        self.reason = reason


class NotKnown(Error):
    """The device has not reported the value: not yet, or this model never does."""


class InvalidValue(Error, ValueError):
    """Not a value of the property: another type, outside its range, too long. Nothing was sent. `nearest` is what would
    be accepted, the most similar first."""

    def __init__(self, text: str, nearest: Tuple[Any, ...] = ()) -> None:
        super().__init__(text)
        self.nearest = nearest


class NotOffered(InvalidValue):
    """The device does not accept the value now; what it accepts depends on other settings. Nothing was sent."""


class ReadOnly(Error):
    """The property cannot be set."""


class NoSuchProperty(Error, LookupError):
    """There is no property of this name; `nearest` is the most similar one, or empty."""

    def __init__(self, text: str, nearest: str = "") -> None:
        super().__init__(text)
        self.nearest = nearest


class Refused(Error):
    """The device has refused the change; the values in it are as they were."""

    def __init__(self, text: str, outcome: "Outcome") -> None:
        super().__init__(text)
        self.outcome = outcome


class Lost(Error):
    """The connection has ended, or was closed. `outcome` says how much of a change was sent."""

    def __init__(self, text: str, reason: "ConnectFailure", outcome: "Optional[Outcome]" = None) -> None:
        super().__init__(text)
        self.reason = reason
        self.outcome = outcome


class Timeout(Error, TimeoutError):
    """The time was up. A change may still be carried out."""


class WouldDeadlock(Error):
    """A call that waits for the library's thread was made on it: in a handler that has no executor."""
