"""Notices of changes, with old and new value."""

from collections import deque
from threading import Condition, RLock
from typing import TYPE_CHECKING, Any, Callable, Deque, Dict, Iterator, List, NamedTuple, Optional, Tuple, TypeVar
from weakref import ref

from . import _contract
from ._com import check
from ._host_object import HostObject, expect_no_callback
from ._property import Property, Table, Value
from .enumerations import ReportKind, ReportOrigin
from .errors import Lost, Timeout

if TYPE_CHECKING:
    from ._controls import Controls

T = TypeVar("T")

#: Runs a handler where the host wants it to run.
Executor = Callable[[Callable[[], object]], object]

#: So many changes wait for a slow reader; then those of the same property are merged.
MOST_PENDING = 1000


class Change(NamedTuple):
    """A property has another value than before; None is a value that is not known."""

    name: str
    old: Optional[Value]
    new: Optional[Value]
    #: Whether the device repeats exactly what this connection has set.
    is_echo: bool


def at_once(handler: Callable[[], object]) -> None:
    """Runs a handler on the library's thread. It should return quickly: it holds up the connection."""
    handler()


class Subscription:
    """A handler is called as long as this is not cancelled. On leaving a `with` block it is."""

    __slots__ = ("_cancel", "is_active")

    def __init__(self, cancel: Callable[[], object] = lambda: None) -> None:
        self.is_active = True
        self._cancel = cancel

    def cancel(self) -> None:
        """No call starts any more; one that is running on another thread is not waited for."""
        self.is_active = False
        self._cancel()

    def __enter__(self) -> "Subscription":
        return self

    def __exit__(self, *_: object) -> None:
        self.cancel()


def merged(changes: "Deque[Change]") -> "Deque[Change]":
    """At most one change for each property, from its first old to its last new value."""
    first: Dict[str, Optional[Value]] = {}
    last: Dict[str, Change] = {}
    for change in changes:
        first.setdefault(change.name, change.old)
        last.pop(change.name, None)
        last[change.name] = change
    kept = (change._replace(old=first[name]) for name, change in last.items())
    return deque(change for change in kept if change.old != change.new)


class ReportObserver(HostObject):
    """Passes on what the device reports."""

    contract = _contract.ReportObserver
    __slots__ = ("_tracker",)

    def __init__(self, tracker: "Tracker") -> None:
        super().__init__()
        self._tracker = ref(tracker)

    def block_reported(self, property_set: int, kind: int, origin: int) -> None:
        tracker = self._tracker()
        if tracker is not None and kind == ReportKind.SETTINGS:
            tracker.report(property_set, origin == ReportOrigin.ECHO)


class Tracker:
    """Compares what the device reports with what was known before, on the connection's thread: the mirror does not
    change meanwhile."""

    def __init__(self, device: "Controls", table: Table) -> None:
        self._device = ref(device)
        self._table = table
        self._lock = RLock()
        self._receivers: Tuple[Tuple[Subscription, frozenset[str], Callable[[Change], object]], ...] = ()
        self._delivery = device._connection.delivery  # pyright: ignore[reportPrivateUsage]
        self._observer = ReportObserver(self)
        # What is reported meanwhile waits for the lock.
        with self._lock:
            check("on_change", self._delivery.call("add_report_observer", self._observer.address))
            self._values = {row.name: self._read(device, row) for row in table.rows if row.is_readable}

    @staticmethod
    def _read(device: "Controls", row: Property) -> Optional[Value]:
        try:
            return device._value_of(row)  # pyright: ignore[reportPrivateUsage]
        except Lost:
            return None

    def report(self, property_set: int, is_echo: bool) -> None:
        """Notifies of what is different in a set."""
        device = self._device()
        if device is None:
            return
        with self._lock:
            changes = list(self._differences(device, property_set, is_echo))
            receivers = self._receivers
        for change in changes:
            for subscription, names, receive in receivers:
                if change.name in names and subscription.is_active:
                    receive(change)

    def _differences(self, device: "Controls", property_set: int, is_echo: bool) -> Iterator[Change]:
        for row in self._table.by_set.get(property_set, ()):
            old, new = self._values[row.name], self._read(device, row)
            if old != new:
                self._values[row.name] = new
                yield Change(row.name, old, new, is_echo)

    def add(self, pattern: str, receive: Callable[[Change], object]) -> Subscription:
        """Calls `receive` on the connection's thread."""
        names = frozenset(row.name for row in self._table.matching(pattern))
        entry: List[Any] = []
        subscription = Subscription(lambda: self._remove(entry[0]))
        entry.append((subscription, names, receive))
        with self._lock:
            self._receivers += (entry[0],)
        return subscription

    def _remove(self, entry: Any) -> None:
        with self._lock:
            self._receivers = tuple(each for each in self._receivers if each is not entry)

    def subscribe(self, handler: Callable[[Change], object], pattern: str, executor: Executor) -> Subscription:
        """Calls `handler` through an executor."""

        def receive(change: Change) -> None:
            executor(lambda: subscription.is_active and handler(change))

        subscription = self.add(pattern, receive)
        return subscription

    def close(self) -> None:
        """The connection has ended."""
        self._delivery.call("remove_report_observer", self._observer.address)
        self._observer.release()


def weak(owner: T, method: Callable[[T, Any], object]) -> Callable[[Any], None]:
    """Calls a method as long as its object exists."""
    reference = ref(owner)

    def call(argument: Any) -> None:
        alive = reference()
        if alive is not None:
            method(alive, argument)

    return call


class Pending:
    """Changes that wait for a reader."""

    def __init__(self) -> None:
        self.changes: Deque[Change] = deque()

    def add(self, change: Change) -> None:
        """Merges when there are too many."""
        self.changes.append(change)
        if len(self.changes) > MOST_PENDING:
            self.changes = merged(self.changes)


class ChangeStream:
    """The changes of a device, from now on. It ends when the device is closed, and raises Lost within a second when the
    connection is lost."""

    def __init__(self, device: "Controls", pattern: str, timeout: Optional[float]) -> None:
        self._device = device
        self._link = device._connection.link  # pyright: ignore[reportPrivateUsage]
        self._timeout = timeout
        self._pending = Pending()
        self._condition = Condition(RLock())
        # A stream that was dropped must not be kept by what it waits for.
        receive, self._ended = weak(self, ChangeStream._receive), weak(self, ChangeStream._wake)
        self._subscription = device._changes().add(pattern, receive)  # pyright: ignore[reportPrivateUsage]
        self._link.ended.then(self._ended)

    def __del__(self) -> None:
        if hasattr(self, "_subscription"):
            self._subscription.cancel()
            self._link.ended.forget(self._ended)

    def _receive(self, change: Change) -> None:
        with self._condition:
            self._pending.add(change)
            self._condition.notify()

    def _wake(self, _: object) -> None:
        with self._condition:
            self._condition.notify_all()

    def __iter__(self) -> "ChangeStream":
        return self

    def __next__(self) -> Change:
        expect_no_callback("changes")
        with self._condition:
            is_ready = self._condition.wait_for(self._is_ready, self._timeout)
            if self._pending.changes:
                return self._pending.changes.popleft()
        if not is_ready:
            raise Timeout(f"{self._link.address}: no change within {self._timeout} s")
        if self._link.is_closed or not self._subscription.is_active:
            raise StopIteration
        raise self._link.loss()

    def _is_ready(self) -> bool:
        return bool(self._pending.changes) or self._link.ended.is_set or not self._subscription.is_active

    def close(self) -> None:
        """Ends the stream early."""
        self._subscription.cancel()
        self._wake(None)

    def __enter__(self) -> "ChangeStream":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()
