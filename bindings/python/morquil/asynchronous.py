"""Devices and sessions for asyncio. Handlers without an executor run on the event loop."""

import asyncio
from collections.abc import AsyncIterator
from typing import Any, Callable, Mapping, Optional, TypeVar

from ._backoff import Backoff
from ._changes import Change, Executor, Pending, weak
from ._connection import Connection, Receipt
from ._controls import Controls
from ._once import Once
from ._property import Value
from ._settings_file import load_settings
from .enumerations import ConnectFailure
from .errors import ConnectError, Error, Lost, Timeout
from .outcome import Outcome

__all__ = ["AsyncChangeStream", "AsyncDevice", "AsyncSession"]

T = TypeVar("T")


def _on_loop(loop: asyncio.AbstractEventLoop) -> Executor:
    """Runs handlers on a loop. An exception is passed to the loop's exception handler. A loop that is closed runs
    nothing."""

    def run(handler: Callable[[], object]) -> None:
        try:
            loop.call_soon_threadsafe(handler)
        except RuntimeError:
            if not loop.is_closed():
                raise

    return run


async def _arrival(once: "Once[T]", timeout: Optional[float]) -> bool:
    """Waits for a value. Returns whether it has arrived in time."""
    run = _on_loop(asyncio.get_running_loop())
    event = asyncio.Event()

    def arrived(_: T) -> None:
        run(event.set)

    once.then(arrived)
    try:
        await asyncio.wait_for(event.wait(), timeout)
    except asyncio.TimeoutError:
        return once.is_set
    finally:
        once.forget(arrived)
    return True


async def _in_thread(call: Callable[[], T]) -> T:
    """For calls that wait for the library's thread, which may wait for the interpreter's lock."""
    return await asyncio.get_running_loop().run_in_executor(None, call)


class AsyncDevice(Controls):
    """One connection to one device, for asyncio. Getters are as those of `Device`: they never wait. On leaving an
    `async with` block it is closed."""

    def __init__(self, connection: Connection, loop: asyncio.AbstractEventLoop) -> None:
        super().__init__(connection, _on_loop(loop))

    @classmethod
    async def connect(cls, address: str, *, timeout: Optional[float] = None) -> "AsyncDevice":
        """Connects and waits until the device's complete state has arrived. Raises ConnectError with the reason;
        Timeout."""
        connection = Connection(address)
        try:
            if not await _arrival(connection.link.begun, timeout):
                raise Timeout(f"{address}: not connected within {timeout} s")
            failure = connection.failure()
            if failure is not None:
                raise failure
        except BaseException:
            await _in_thread(connection.close)
            raise
        return cls(connection, asyncio.get_running_loop())

    async def set(self, name: str, value: Optional[Value] = None, *, timeout: Optional[float] = 10.0) -> Outcome:
        """Sets a property, and waits until the device has confirmed it; see `Device.set`."""
        return await self.apply(self._prepare(name, value), timeout=timeout)

    async def update(self, values: Mapping[str, Optional[Value]], *, timeout: Optional[float] = 10.0) -> Outcome:
        """Sets several properties at once; see `Device.update`."""
        return await self.apply(self._prepare_all(values), timeout=timeout)

    async def apply(self, function: Callable[[], object], *, timeout: Optional[float] = 10.0) -> Outcome:
        """Runs `function`, which calls setters of features, and waits until the device has confirmed what was set in it;
        see `Device.apply`."""
        with self._receipt() as (number, receipt):
            self._queue(number, function)
            return await self._await(receipt, timeout)

    async def _await(self, receipt: Receipt, timeout: Optional[float]) -> Outcome:
        if not await _arrival(receipt.ended, timeout):
            raise self._timeout(timeout, receipt)
        return self._judge(receipt)

    async def load_settings(self, path: str, *, timeout: Optional[float] = 30.0) -> Outcome:
        """Sends the settings in a file, and waits until the device has accepted or refused them; see
        `Device.load_settings`."""
        with self._receipt() as (number, receipt):
            receipt.is_answer_enough = True
            self._queue(number, lambda: load_settings(self.calls, path))
            return await self._await(receipt, timeout)

    def changes(self, pattern: str = "*", *, timeout: Optional[float] = None) -> "AsyncChangeStream":
        """The changes of the properties that `pattern` means, from now on; see `Device.changes`."""
        return AsyncChangeStream(self, pattern, timeout)

    async def close(self) -> None:
        """Ends the connection."""
        await _in_thread(self._connection.close)
        self._forget_features()
        self._getters.clear()

    async def __aenter__(self) -> "AsyncDevice":
        return self

    async def __aexit__(self, *_: object) -> None:
        await self.close()


class AsyncChangeStream(AsyncIterator[Change]):
    """The changes of a device, from now on. It ends when the device is closed, and raises Lost within a second when the
    connection is lost."""

    def __init__(self, device: AsyncDevice, pattern: str, timeout: Optional[float]) -> None:
        self._device = device
        self._link = device._connection.link  # pyright: ignore[reportPrivateUsage]
        self._timeout = timeout
        self._run = _on_loop(asyncio.get_running_loop())
        self._pending = Pending()
        self._event = asyncio.Event()
        receive, self._ended = weak(self, AsyncChangeStream._receive), weak(self, AsyncChangeStream._wake)
        self._subscription = device._changes().add(pattern, receive)  # pyright: ignore[reportPrivateUsage]
        self._link.ended.then(self._ended)

    def __del__(self) -> None:
        if hasattr(self, "_subscription"):
            self.close()
            self._link.ended.forget(self._ended)

    def _receive(self, change: Change) -> None:
        add = weak(self, AsyncChangeStream._add)
        self._run(lambda: add(change))

    def _wake(self, _: Any) -> None:
        self._run(self._event.set)

    def _add(self, change: Change) -> None:
        self._pending.add(change)
        self._event.set()

    async def __anext__(self) -> Change:
        while not self._pending.changes:
            if self._link.is_closed or not self._subscription.is_active:
                raise StopAsyncIteration
            if self._link.ended.is_set:
                raise self._link.loss()
            self._event.clear()
            try:
                await asyncio.wait_for(self._event.wait(), self._timeout)
            except asyncio.TimeoutError:
                raise Timeout(f"{self._link.address}: no change within {self._timeout} s") from None
        return self._pending.changes.popleft()

    def close(self) -> None:
        """Ends the stream early."""
        self._subscription.cancel()
        self._wake(None)


class AsyncSession(AsyncIterator[AsyncDevice]):
    """Keeps a device connected, for asyncio: connects, and reconnects after every loss, inside an `async with` block.

        async with AsyncSession(address) as session:
            async for device in session:
                ...

    `on_failed` gets the reason of a failed attempt and the seconds until the next one, on the event loop."""

    def __init__(
        self,
        address: str,
        *,
        on_connected: Optional[Callable[[AsyncDevice], object]] = None,
        on_lost: Optional[Callable[[Lost], object]] = None,
        on_failed: Optional[Callable[[Error, float], object]] = None,
        first_pause: float = 0.25,
        longest_pause: float = 5.0,
    ) -> None:
        self.address = address
        self._on_connected = on_connected
        self._on_lost = on_lost
        self._on_failed = on_failed
        self._backoff = Backoff(first_pause, longest_pause)
        self._current: Optional[AsyncDevice] = None
        self._given: Optional[AsyncDevice] = None
        self._changed = asyncio.Event()
        self._task: "Optional[asyncio.Task[None]]" = None

    @property
    def current(self) -> Optional[AsyncDevice]:
        """The device, while it is connected."""
        return self._current

    async def __aenter__(self) -> "AsyncSession":
        self._task = asyncio.get_running_loop().create_task(self._run())
        return self

    async def __aexit__(self, *_: object) -> None:
        await self.stop()

    async def stop(self) -> None:
        """Ends the connection and all attempts."""
        task, self._task = self._task, None
        if task is not None:
            task.cancel()
            await asyncio.wait([task])
        self._set_current(None)

    async def wait(self, timeout: Optional[float] = None) -> AsyncDevice:
        """The device; waits until it is connected. Raises Timeout; Lost when the session is stopped."""
        try:
            return await asyncio.wait_for(self._other_than(None), timeout)
        except asyncio.TimeoutError:
            raise Timeout(f"{self.address}: not connected within {timeout} s") from None

    async def __anext__(self) -> AsyncDevice:
        """The device, again after each loss, until the session is stopped."""
        try:
            self._given = await self._other_than(self._given)
        except Lost:
            raise StopAsyncIteration from None
        return self._given

    async def _other_than(self, before: Optional[AsyncDevice]) -> AsyncDevice:
        while self._current is None or self._current is before:
            if self._task is None:
                raise Lost(f"{self.address}: the session was stopped", ConnectFailure.NO_RESPONSE)
            self._changed.clear()
            await self._changed.wait()
        return self._current

    def _set_current(self, device: Optional[AsyncDevice]) -> None:
        self._current = device
        self._changed.set()

    async def _run(self) -> None:
        while True:
            try:
                device = await AsyncDevice.connect(self.address)
            except ConnectError as error:
                pause = self._backoff.pause()
                _call(self._on_failed, error, pause)
            else:
                await self._serve(device)
                pause = self._backoff.pause()
            await asyncio.sleep(pause)

    async def _serve(self, device: AsyncDevice) -> None:
        """One connection, until it ends."""
        async with device:
            link = device._connection.link  # pyright: ignore[reportPrivateUsage]
            self._backoff.reset()
            self._set_current(device)
            _call(self._on_connected, device)
            try:
                await _arrival(link.ended, None)
            finally:
                self._set_current(None)
            _call(self._on_lost, link.loss())


def _call(handler: Optional[Callable[..., object]], *arguments: Any) -> None:
    """Calls a handler; what it raises is reported, and does not end the session."""
    if handler is None:
        return
    try:
        handler(*arguments)
    except Exception as error:
        context = {"message": f"exception in {handler!r}", "exception": error}
        asyncio.get_running_loop().call_exception_handler(context)
