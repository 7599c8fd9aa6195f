"""What the generated features stand on."""

from typing import Optional, Type, TypeVar

from ._com import E_FAIL, E_OUTOFMEMORY, Interface, fail
from ._once import Once
from .enumerations import ConnectFailure
from .errors import Lost, NotKnown

REASONS = {
    ConnectFailure.NO_RESPONSE: "no answer from a device",
    ConnectFailure.INCOMPATIBLE_FIRMWARE: "the device's firmware speaks another version of the protocol",
    ConnectFailure.INCOMPATIBLE_UPDATE_SUPPORTED: "the device's firmware speaks another version of the protocol, and can "
    "be updated over the network",
    ConnectFailure.REMOTE_LOCK: "the device is locked against remote control",
}


class Link:
    """What is known of a connection, for everything that depends on it."""

    __slots__ = ("__weakref__", "address", "begun", "ended", "is_closed")

    def __init__(self, address: str) -> None:
        self.address = address
        #: None when the device is connected, else why the attempt has failed.
        self.begun: Once[Optional[ConnectFailure]] = Once()
        self.ended: Once[ConnectFailure] = Once()
        #: Whether this host has ended it, before anything else did.
        self.is_closed = False

    def loss(self, outcome: "Optional[object]" = None) -> Lost:
        """The exception for a connection that has ended."""
        if self.is_closed:
            return Lost(f"{self.address}: the connection was closed", ConnectFailure.NO_RESPONSE, outcome)  # type: ignore[arg-type]
        reason = self.ended.value or ConnectFailure.NO_RESPONSE
        text = f"{self.address}: the connection has ended: {REASONS[reason]}"
        return Lost(text, reason, outcome)  # type: ignore[arg-type]


class Feature(Interface):
    """An interface of a device."""

    __slots__ = ("_link",)

    def __init__(self, this: int, link: Link) -> None:
        super().__init__(this)
        self._link = link

    def _failure(self, call: str, result: int, is_getter: bool) -> Exception:
        if result == E_OUTOFMEMORY or not is_getter or result != E_FAIL:
            fail(call, result)
        if self._link.ended.is_set:
            return self._link.loss()
        return NotKnown(f"{call}: the device has not reported the value")


F = TypeVar("F", bound=Feature)


class FeatureOwner:
    """Keeps the features that were asked for."""

    def _feature(self, kind: Type[F]) -> F:
        raise NotImplementedError

    def _forget_features(self) -> None:
        for name in [name for name, value in vars(self).items() if isinstance(value, Feature)]:
            del vars(self)[name]
