"""A value that arrives once."""

from _thread import allocate_lock
from typing import Callable, Generic, List, Optional, TypeVar

T = TypeVar("T")


class Once(Generic[T]):
    """A value that one thread sets and others wait for."""

    __slots__ = ("_arrived", "_callbacks", "_lock", "value")

    def __init__(self) -> None:
        self.value: Optional[T] = None
        self._lock = allocate_lock()
        self._callbacks: Optional[List[Callable[[T], object]]] = []
        self._arrived = allocate_lock()
        self._arrived.acquire()

    @property
    def is_set(self) -> bool:
        """Whether the value has arrived."""
        return self._callbacks is None

    def set(self, value: T) -> bool:
        """Sets the value and calls the callbacks. Only the first call counts; returns whether this was it."""
        with self._lock:
            callbacks = self._callbacks
            if callbacks is None:
                return False
            self.value = value
            self._callbacks = None
        self._arrived.release()
        for callback in callbacks:
            callback(value)
        return True

    def then(self, callback: "Callable[[T], object]") -> None:
        """Calls `callback` when the value arrives, on the thread that sets it; at once if it is here."""
        with self._lock:
            if self._callbacks is not None:
                self._callbacks.append(callback)
                return
        callback(self.value)  # type: ignore[arg-type]

    def forget(self, callback: "Callable[[T], object]") -> None:
        """`callback` is not called, if it has not been yet."""
        with self._lock:
            if self._callbacks is not None and callback in self._callbacks:
                self._callbacks.remove(callback)

    def wait(self, seconds: Optional[float]) -> bool:
        """Waits for the value; None waits without a limit. Returns whether it has arrived."""
        if self._arrived.acquire(True, -1 if seconds is None else max(0.0, min(seconds, 4e6))):
            self._arrived.release()
            return True
        return False
