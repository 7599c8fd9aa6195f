"""Control of Morquil video converters over the network.

    with morquil.Device.connect("192.168.1.10") as device:
        print(device.get("proc-amp.gain"), device.offered("proc-amp.gain"))
        device.set("proc-amp.gain", 12)
"""

from typing import TYPE_CHECKING, Any

from ._changes import Change, Executor, Subscription
from ._controls import properties
from ._library import restore_library_output, set_library_output, silence_library
from ._offer import Offer
from ._property import Property, Value
from ._range import Range
from ._word import Word
from .device import Device
from .errors import (
    ConnectError,
    Error,
    InvalidValue,
    LibraryNotFound,
    Lost,
    NoSuchProperty,
    NotKnown,
    NotOffered,
    ReadOnly,
    Refused,
    Timeout,
    WouldDeadlock,
)
from .outcome import Outcome

if TYPE_CHECKING:
    from .asynchronous import AsyncDevice, AsyncSession
    from .session import Session

__all__ = [
    "AsyncDevice",
    "AsyncSession",
    "Change",
    "ConnectError",
    "Device",
    "Error",
    "Executor",
    "InvalidValue",
    "LibraryNotFound",
    "Lost",
    "NoSuchProperty",
    "NotKnown",
    "NotOffered",
    "Offer",
    "Outcome",
    "Property",
    "Range",
    "ReadOnly",
    "Refused",
    "Session",
    "Subscription",
    "Timeout",
    "Value",
    "Word",
    "WouldDeadlock",
    "properties",
    "restore_library_output",
    "set_library_output",
    "silence_library",
]

# asyncio takes longer to import than all the rest: only programs that use it do.
_LATER = {"AsyncDevice": "asynchronous", "AsyncSession": "asynchronous", "Session": "session"}


def __getattr__(name: str) -> Any:
    if name not in _LATER:
        raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
    from importlib import import_module

    value = getattr(import_module(f".{_LATER[name]}", __name__), name)
    globals()[name] = value
    return value
