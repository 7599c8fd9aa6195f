"""A device, for programs with threads."""

from typing import Callable, Mapping, Optional

from ._changes import ChangeStream, at_once
from ._connection import Connection, Receipt, open_connection
from ._controls import Controls
from ._host_object import expect_no_callback
from ._property import Value
from ._settings_file import load_settings
from .outcome import Outcome

__all__ = ["Device"]


class Device(Controls):
    """One connection to one device: its features (`device.video_proc_amp`), its properties by name, its changes. On
    leaving a `with` block it is closed. A connection is used only once: see `Session` for one that reconnects.

    Handlers without an executor run on the library's threads."""

    def __init__(self, connection: Connection) -> None:
        super().__init__(connection, at_once)

    @classmethod
    def connect(cls, address: str, *, timeout: Optional[float] = None) -> "Device":
        """Connects and waits until the device's complete state has arrived: without a limit of your own, 2 seconds for
        the connection and 2 minutes for the state. `address` is a host name or a numeric address.
        Raises ConnectError with the reason; Timeout."""
        return cls(open_connection(address, timeout))

    def set(self, name: str, value: Optional[Value] = None, *, timeout: Optional[float] = 10.0) -> Outcome:
        """Sets a property, and waits until the device has confirmed it. A command may have no value.
        Raises, without sending anything, what `check` raises; then Refused, Lost or Timeout."""
        return self.apply(self._prepare(name, value), timeout=timeout)

    def update(self, values: Mapping[str, Optional[Value]], *, timeout: Optional[float] = 10.0) -> Outcome:
        """Sets several properties at once, as `set` does. All are checked before anything is sent."""
        return self.apply(self._prepare_all(values), timeout=timeout)

    def apply(self, function: Callable[[], object], *, timeout: Optional[float] = 10.0) -> Outcome:
        """Runs `function`, which calls setters of features, and waits until the device has confirmed what was set in it.
        What `function` raises is raised here; what it has set before is still sent.
        Raises Refused, Lost or Timeout; WouldDeadlock on the library's own threads."""
        expect_no_callback("apply")
        with self._receipt() as (number, receipt):
            self._queue(number, function)
            return self._await(receipt, timeout)

    def _await(self, receipt: Receipt, timeout: Optional[float]) -> Outcome:
        if not receipt.ended.wait(timeout):
            raise self._timeout(timeout, receipt)
        return self._judge(receipt)

    def load_settings(self, path: str, *, timeout: Optional[float] = 30.0) -> Outcome:
        """Sends the settings in a file, and waits until the device has accepted or refused them. What it accepts it
        reports a little later. `kept` counts the settings that are never sent."""
        with self._receipt() as (number, receipt):
            receipt.is_answer_enough = True
            self._queue(number, lambda: load_settings(self.calls, path))
            return self._await(receipt, timeout)

    def changes(self, pattern: str = "*", *, timeout: Optional[float] = None) -> ChangeStream:
        """The changes of the properties that `pattern` means, from now on, as an iterator that waits. It ends when the
        device is closed, raises Lost when the connection is lost, and Timeout after that many seconds without one."""
        return ChangeStream(self, pattern, timeout)

    def close(self) -> None:
        """Ends the connection.
        Threads: any, also inside a handler."""
        self._connection.close()
        self._forget_features()
        self._getters.clear()

    def __enter__(self) -> "Device":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()
