"""One connection to one device."""

from _thread import allocate_lock
from ctypes import byref, c_uint32, c_uint64
from typing import Callable, Dict, List, Optional, Type, TypeVar
from weakref import WeakSet

from . import _contract
from ._com import E_FAIL, Interface, check
from ._feature import REASONS, Feature, Link
from ._host_object import HostObject, expect_no_callback
from ._library import at_exit, library
from ._once import Once
from .enumerations import ConnectFailure, ReceiptScope
from .errors import ConnectError, Error, NotKnown, Timeout
from .features import DeviceCalls
from .outcome import Outcome

F = TypeVar("F", bound=Feature)

_connections: "WeakSet[Connection]" = WeakSet()
_is_registered = False


class ConnectionObserver(HostObject):
    """Records the beginning and the end of a connection."""

    contract = _contract.ConnectionObserver
    __slots__ = ("_link",)

    def __init__(self, link: Link) -> None:
        super().__init__()
        self._link = link

    def connected(self) -> None:
        self._link.begun.set(None)

    def disconnected(self, reason: int) -> None:
        failure = ConnectFailure(reason)
        self._link.ended.set(failure)
        self._link.begun.set(failure)


class Receipt:
    """What has been reported of the changes of one call."""

    __slots__ = ("ended", "is_answer_enough", "is_lost", "outcome")

    def __init__(self) -> None:
        #: Whether it ends when the device has answered, and does not wait for its reports.
        self.is_answer_enough = False
        self.outcome = Outcome()
        self.is_lost = False
        self.ended: Once[Outcome] = Once()


class ReceiptObserver(HostObject):
    """Collects what the library reports about all receipts of a connection."""

    contract = _contract.ReceiptObserver
    __slots__ = ("receipts",)

    def __init__(self) -> None:
        super().__init__()
        self.receipts: Dict[int, Receipt] = {}

    def receipt(self, number: int) -> Receipt:
        """A loss may be reported before the number is known here, so either side may be the first to ask."""
        return self.receipts.setdefault(number, Receipt())

    def answered(self, number: int, acknowledged: int, refused: int, kept: int) -> None:
        receipt = self.receipt(number)
        receipt.outcome = Outcome(acknowledged, refused, kept)
        if receipt.is_answer_enough:
            receipt.ended.set(receipt.outcome)

    def settled(self, number: int, confirmed: int, adjusted: int) -> None:
        receipt = self.receipt(number)
        outcome = receipt.outcome
        receipt.outcome = Outcome(outcome.acknowledged, outcome.refused, outcome.kept, confirmed, adjusted)
        receipt.ended.set(receipt.outcome)

    def lost(self, number: int, acknowledged: int, refused: int, unanswered: int, unsent: int) -> None:
        receipt = self.receipt(number)
        kept = receipt.outcome.kept
        receipt.outcome = Outcome(acknowledged, refused, kept, unanswered=unanswered, unsent=unsent)
        receipt.is_lost = True
        receipt.ended.set(receipt.outcome)


class Delivery(Interface):
    """What a connection delivers."""

    contract = _contract.Delivery
    __slots__ = ("_mark", "_open")

    def __init__(self, this: int) -> None:
        super().__init__(this)
        self._open = self._calls[self.contract.slots["open_receipt"]]
        self._mark = self._calls[self.contract.slots["mark_receipt"]]

    def open_receipt(self, observer: ReceiptObserver) -> int:
        """Collects from here on the changes of this thread. 0: the device is not connected."""
        number = c_uint64()
        result = self._open(self._this, observer.address, ReceiptScope.THIS_THREAD, byref(number))
        if result != E_FAIL:
            check("open_receipt", result)
        return number.value

    def mark_receipt(self, number: int) -> None:
        """Everything that is to be covered has been queued."""
        check("mark_receipt", self._mark(self._this, number))

    def cancel_receipt(self, number: int) -> None:
        """Outside a callback, nothing is reported any more when this returns."""
        self.call("cancel_receipt", number)

    def silence(self) -> float:
        """For how many seconds the device has sent nothing."""
        milliseconds = c_uint32()
        result = self.call("get_silence", byref(milliseconds))
        if result == E_FAIL:
            raise NotKnown("the device is not connected")
        check("get_silence", result)
        return milliseconds.value / 1000


class Connection:
    """Ends when it is closed, or when nothing refers to it any more."""

    def __init__(self, address: str) -> None:
        self.link = Link(address)
        # Held by the one who closes.
        self._closing = allocate_lock()
        self._at_close: List[Callable[[], object]] = []
        self._discovery = library().discovery
        self._observer = ConnectionObserver(self.link)
        self.receipts = ReceiptObserver()
        try:
            this = self._discovery.connect_async(address, self._observer)
        except BaseException:
            self._observer.release()
            self.receipts.release()
            raise
        self.device = DeviceCalls(this, self.link)
        self.delivery = self.device.ask(Delivery)
        _register(self)

    def __del__(self) -> None:
        if hasattr(self, "device"):
            self.close()

    def feature(self, kind: Type[F]) -> F:
        """A feature of the device."""
        if self.link.ended.is_set:
            raise self.link.loss()
        return kind(self.device.query(kind.contract), self.link)

    def at_close(self, call: Callable[[], object]) -> None:
        """Has `call` called when the connection is closed."""
        self._at_close.append(call)

    def close(self) -> None:
        """Ends the connection. Outside a callback no observer is called any more when this returns.
        Threads: any, also inside a callback."""
        if not self._closing.acquire(False):
            return
        self.link.is_closed = not self.link.ended.is_set
        self._discovery.disconnect(self.device)
        self.device.call("remove_connection_observer", self._observer.address)
        self.link.ended.set(ConnectFailure.NO_RESPONSE)
        self.link.begun.set(ConnectFailure.NO_RESPONSE)
        for call in self._at_close:
            call()
        self._observer.release()
        self.receipts.release()

    def failure(self) -> Optional[Error]:
        """Why there is no connection, once the attempt is over."""
        reason = self.link.begun.value
        if reason is None:
            return None
        return ConnectError(f"{self.link.address}: {REASONS.get(reason, reason.name)}", reason)


def _register(connection: Connection) -> None:
    global _is_registered
    if not _is_registered:
        _is_registered = True
        at_exit(_close_all)
    _connections.add(connection)


def _close_all() -> None:
    for connection in list(_connections):
        connection.close()


def open_connection(address: str, timeout: Optional[float]) -> Connection:
    """Connects and waits until the device's complete state has arrived."""
    expect_no_callback("connect")
    connection = Connection(address)
    try:
        if not connection.link.begun.wait(timeout):
            raise Timeout(f"{address}: not connected within {timeout} s")
        failure = connection.failure()
        if failure:
            raise failure
    except BaseException:
        connection.close()
        raise
    return connection
