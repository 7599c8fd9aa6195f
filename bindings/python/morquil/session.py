"""A connection that is restored after a loss, for programs with threads."""

from threading import Condition, RLock, Thread, current_thread
from typing import Callable, Iterator, Optional, Union
from weakref import WeakSet

from ._backoff import Backoff
from ._changes import Executor, at_once
from ._connection import Connection
from ._host_object import expect_no_callback
from ._library import at_exit, library
from .device import Device
from .enumerations import ConnectFailure
from .errors import ConnectError, Error, Lost, Timeout

__all__ = ["Session"]

_sessions: "WeakSet[Session]" = WeakSet()
_is_registered = False


class Session:
    """Keeps a device connected: connects, and reconnects after every loss, until it is stopped. On leaving a `with`
    block it is.

    `on_connected` gets the device, a new object after each loss; `on_lost` the reason; `on_failed` the reason of an
    attempt and the seconds until the next one. They are called one after the other, through `executor` if there is one,
    else on the session's own thread."""

    def __init__(
        self,
        address: str,
        *,
        on_connected: Optional[Callable[[Device], object]] = None,
        on_lost: Optional[Callable[[Lost], object]] = None,
        on_failed: Optional[Callable[[Error, float], object]] = None,
        executor: Optional[Executor] = None,
        first_pause: float = 0.25,
        longest_pause: float = 5.0,
    ) -> None:
        library()
        self.address = address
        self._on_connected = on_connected
        self._on_lost = on_lost
        self._on_failed = on_failed
        self._executor = executor or at_once
        self._backoff = Backoff(first_pause, longest_pause)
        self._changed = Condition(RLock())
        self._is_stopped = False
        self._current: Optional[Device] = None
        self._thread = Thread(target=self._run, name=f"morquil {address}", daemon=True)
        _register(self)
        self._thread.start()

    @property
    def current(self) -> Optional[Device]:
        """The device, while it is connected."""
        return self._current

    def wait(self, timeout: Optional[float] = None) -> Device:
        """The device; waits until it is connected. Raises Timeout; Lost when the session is stopped."""
        expect_no_callback("wait")
        return self._wait_for_other(None, timeout)

    def __iter__(self) -> Iterator[Device]:
        """The device, again after each loss, until the session is stopped."""
        device: Optional[Device] = None
        while True:
            try:
                device = self._wait_for_other(device, None)
            except Lost:
                return
            yield device

    def _wait_for_other(self, before: Optional[Device], timeout: Optional[float]) -> Device:
        def is_ready() -> bool:
            return self._is_stopped or self._current not in (None, before)

        with self._changed:
            if not self._changed.wait_for(is_ready, timeout):
                raise Timeout(f"{self.address}: not connected within {timeout} s")
            if self._is_stopped or self._current is None:
                raise _stopped(self.address)
            return self._current

    def stop(self) -> None:
        """Ends the connection and all attempts; no handler starts afterwards.
        Threads: any, also inside a handler."""
        with self._changed:
            self._is_stopped = True
            self._changed.notify_all()
        if current_thread() is not self._thread:
            self._thread.join()

    def __enter__(self) -> "Session":
        return self

    def __exit__(self, *_: object) -> None:
        self.stop()

    # ---- The session's thread

    def _run(self) -> None:
        while not self._is_stopped:
            failure = self._serve()
            pause = self._backoff.pause()
            if failure is not None:
                self._notify(self._on_failed, failure, pause)
            with self._changed:
                self._changed.wait_for(lambda: self._is_stopped, pause)

    def _serve(self) -> Optional[Error]:
        """One connection, from its beginning to its end. Returns why an attempt has failed."""
        attempt = _Attempt(self.address, self._wake)
        try:
            self._wait_until(lambda: attempt.is_over)
            if self._is_stopped:
                return None
            device = attempt.device()
            self._backoff.reset()
            self._set_current(device)
            self._notify(self._on_connected, device)
            self._wait_until(lambda: not device.is_connected)
            self._set_current(None)
            if not self._is_stopped:
                self._notify(self._on_lost, attempt.loss())
            return None
        except ConnectError as error:
            return error
        finally:
            self._set_current(None)
            attempt.close()

    def _wake(self) -> None:
        with self._changed:
            self._changed.notify_all()

    def _wait_until(self, condition: Callable[[], bool]) -> None:
        with self._changed:
            self._changed.wait_for(lambda: self._is_stopped or condition())

    def _set_current(self, device: Optional[Device]) -> None:
        with self._changed:
            self._current = device
            self._changed.notify_all()

    def _notify(self, handler: Optional[Callable[..., object]], *arguments: Union[Device, Error, float]) -> None:
        if handler is not None:
            call = handler
            self._executor(lambda: None if self._is_stopped else call(*arguments))


def _stopped(address: str) -> Lost:
    return Lost(f"{address}: the session was stopped", ConnectFailure.NO_RESPONSE)


class _Attempt:
    """A connection that has begun."""

    def __init__(self, address: str, wake: Callable[[], None]) -> None:
        self._connection = Connection(address)
        self._connection.link.begun.then(lambda _: wake())
        self._connection.link.ended.then(lambda _: wake())

    @property
    def is_over(self) -> bool:
        return self._connection.link.begun.is_set

    def device(self) -> Device:
        failure = self._connection.failure()
        if failure is not None:
            raise failure
        return Device(self._connection)

    def loss(self) -> Lost:
        return self._connection.link.loss()

    def close(self) -> None:
        self._connection.close()


def _register(session: Session) -> None:
    global _is_registered
    if not _is_registered:
        _is_registered = True
        at_exit(_stop_all)
    _sessions.add(session)


def _stop_all() -> None:
    for session in list(_sessions):
        session.stop()
