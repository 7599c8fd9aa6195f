"""What synchronous and asynchronous devices share: everything that does not wait."""

from contextlib import contextmanager
from typing import Any, Callable, Dict, Generator, List, Mapping, Optional, Tuple, Type

from ._changes import Change, Executor, Subscription, Tracker
from ._connection import Connection, F, Receipt
from ._offer import Offer, check_offered, exists, offered
from ._property import Property, Table, Value, from_raw, to_raw
from ._property_table import ROWS
from ._settings_file import save_settings
from .enumerations import ConnectFailure
from .errors import Lost, NotKnown, NotOffered, ReadOnly, Refused, Timeout
from .features import DeviceCalls, DeviceFeatures
from .outcome import Outcome

TABLE = Table(ROWS)


def properties(pattern: str = "*") -> List[Property]:
    """The properties that `pattern` means: a name, its part before a point, or a name with * and ? in it."""
    return TABLE.matching(pattern)


def _converted(convert: Callable[[int], Value], method: Callable[[], int]) -> Callable[[], Value]:
    return lambda: convert(method())


class Controls(DeviceFeatures):
    """A connected device. A getter never waits: it answers what the device has last reported."""

    def __init__(self, connection: Connection, executor: Executor) -> None:
        self._connection = connection
        self._executor = executor
        self._getters: Dict[str, Callable[[], Value]] = {}
        self._tracker: Optional[Tracker] = None

    def __repr__(self) -> str:
        state = "connected" if self.is_connected else "not connected"
        return f"<{type(self).__name__} {self.address}, {state}>"

    @property
    def address(self) -> str:
        """As it was given."""
        return self._connection.link.address

    @property
    def is_connected(self) -> bool:
        """Whether the connection is up."""
        return not self._connection.link.ended.is_set

    @property
    def calls(self) -> DeviceCalls:
        """The device's own methods."""
        return self._connection.device

    @property
    def silence(self) -> float:
        """For how many seconds the device has sent nothing. One that answers is never silent for much longer than 9;
        one that is silent for 18 does not answer."""
        if not self.is_connected:
            raise self._connection.link.loss()
        return self._connection.delivery.silence()

    def _feature(self, kind: Type[F]) -> F:
        return self._connection.feature(kind)

    def feature_of(self, row: Property) -> Any:
        """The feature that a property belongs to."""
        return self.calls if row.feature == "device" else getattr(self, row.feature)

    # ---- Reading

    def get(self, name: str) -> Value:
        """The value of a property, as the device has last reported it. Raises NotKnown if it has not, and Lost once the
        connection has ended."""
        getter = self._getters.get(name)
        if getter is None:
            getter = self._getters[name] = self._getter(TABLE.find(name))
        return getter()

    def _getter(self, row: Property) -> Callable[[], Value]:
        if not row.is_readable:
            raise NotKnown(f"{row.name} is a command, and has no value")
        method = getattr(self.feature_of(row), row.getter)
        convert = from_raw(row)
        if convert is not None:
            return _converted(convert, method)
        return method if row.item < 0 else lambda: method(row.item)  # type: ignore[no-any-return]

    def _value_of(self, row: Property) -> Optional[Value]:
        if not exists(self, row):
            return None
        try:
            return self.get(row.name)
        except NotKnown:
            return None

    def values(self, pattern: str = "*") -> Dict[str, Value]:
        """The values of all properties that `pattern` means, as far as they are known."""
        known = {row.name: self._value_of(row) for row in properties(pattern) if row.is_readable}
        return {name: value for name, value in known.items() if value is not None}

    def offered(self, name: str) -> Offer:
        """What the device accepts now for a property: a Range or a tuple of words; None if it has not reported it."""
        return offered(self, TABLE.find(name))

    # ---- Setting

    def check(self, name: str, value: Optional[Value] = None) -> None:
        """Raises what `set` would raise without sending anything: NoSuchProperty, ReadOnly, InvalidValue, NotOffered."""
        self._prepare(name, value)

    def _prepare(self, name: str, value: Optional[Value]) -> Callable[[], object]:
        """Checks a change. Returns what queues it."""
        row = TABLE.find(name)
        if not row.is_writable:
            raise ReadOnly(f"{row.name} can only be read")
        if not exists(self, row):
            raise NotOffered(f"{row.name}: this device does not have it")
        setter = getattr(self.feature_of(row), row.setter)
        if row.kind == "none" and value is None:
            return setter  # type: ignore[no-any-return]
        raw = to_raw(row, value)
        check_offered(row, offered(self, row), raw)
        return (lambda: setter(raw)) if row.item < 0 else (lambda: setter(row.item, raw))

    def _prepare_all(self, values: Mapping[str, Optional[Value]]) -> Callable[[], None]:
        changes = [self._prepare(name, value) for name, value in values.items()]

        def queue() -> None:
            for change in changes:
                change()

        return queue

    @contextmanager
    def _receipt(self) -> "Generator[Tuple[int, Receipt], None, None]":
        """A receipt for what this thread sets; cancelled unless it ends."""
        connection = self._connection
        observer = connection.receipts
        number = 0 if connection.link.ended.is_set else connection.delivery.open_receipt(observer)
        if number == 0:
            raise connection.link.loss(Outcome())
        receipt = observer.receipt(number)
        try:
            yield number, receipt
        finally:
            if not receipt.ended.is_set:
                connection.delivery.cancel_receipt(number)
            observer.receipts.pop(number, None)

    def _queue(self, number: int, function: Callable[[], object]) -> None:
        function()
        self._connection.delivery.mark_receipt(number)

    def _judge(self, receipt: Receipt) -> Outcome:
        """The outcome of a receipt that has ended, or an exception."""
        if receipt.is_lost:
            raise self._connection.link.loss(receipt.outcome)
        outcome = receipt.outcome
        if outcome.refused:
            total = outcome.acknowledged + outcome.refused
            raise Refused(f"{self.address}: the device has refused {outcome.refused} of {total} messages", outcome)
        return outcome

    def _timeout(self, seconds: Optional[float], receipt: Receipt) -> Timeout:
        answered = "accepted the change, but not reported it" if receipt.outcome.acknowledged else "not answered"
        return Timeout(f"{self.address}: the device has {answered} within {seconds} s")

    def save_settings(self, path: str) -> None:
        """Saves the device's settings in a file. It is replaced as a whole, and only if everything is known."""
        if not self.is_connected:
            raise self._connection.link.loss()
        save_settings(self.calls, path)
        if not self.is_connected:
            raise self._connection.link.loss()

    # ---- Notices

    def _changes(self) -> Tracker:
        if not self.is_connected:
            raise self._connection.link.loss()
        if self._tracker is None:
            self._tracker = Tracker(self, TABLE)
            self._connection.at_close(self._tracker.close)
        return self._tracker

    def on_change(
        self,
        handler: Callable[[Change], object],
        pattern: str = "*",
        executor: Optional[Executor] = None,
    ) -> Subscription:
        """Calls `handler` for every change of a property that `pattern` means, as long as the subscription is kept: also
        of changes that this host has made. `executor` runs it where the host wants it to run, such as
        `queue.SimpleQueue().put`, `ThreadPoolExecutor().submit` or `loop.call_soon_threadsafe`."""
        return self._changes().subscribe(handler, pattern, executor or self._executor)

    def on_end(self, handler: Callable[[Lost], object], executor: Optional[Executor] = None) -> Subscription:
        """Calls `handler` when the connection has ended."""
        run = executor or self._executor
        link = self._connection.link

        def ended(_: ConnectFailure) -> None:
            run(lambda: subscription.is_active and handler(link.loss()))

        subscription = Subscription(lambda: link.ended.forget(ended))
        link.ended.then(ended)
        return subscription
