"""Objects that the library calls.

An object lives as long as it has references: one of its maker, and those of the library. An exception in one of its
methods is passed to `sys.unraisablehook` by ctypes, and never reaches the library.
"""

from ctypes import c_char, c_void_p, cast, sizeof, string_at
from threading import get_ident
from typing import Any, Callable, ClassVar, Dict, List, Set

from ._com import E_NOINTERFACE, E_POINTER, S_OK, UNKNOWN, Contract, prototype
from .errors import WouldDeadlock

_alive: "Dict[int, HostObject]" = {}
_threads_in_callbacks: Set[int] = set()


def expect_no_callback(call: str) -> None:
    """For calls that wait for the library's thread."""
    if get_ident() in _threads_in_callbacks:
        raise WouldDeadlock(
            f"{call}: it waits for the library's thread, and this handler runs on it: give the handler an executor"
        )


def objects_alive() -> int:
    """How many objects have references."""
    return len(_alive)


def _query_interface(this: int, identifier: int, found: int) -> int:
    if not found:
        return E_POINTER
    host_object = _alive[this]
    known = string_at(identifier, 16) in (UNKNOWN, host_object.contract.identifier)
    c_void_p.from_address(found).value = this if known else None
    return host_object.add_reference() and S_OK if known else E_NOINTERFACE


def _add_ref(this: int) -> int:
    return _alive[this].add_reference()


def _release(this: int) -> int:
    return _alive[this].release()


def _forward(method: "Callable[..., None]") -> "Callable[..., int]":
    def call(this: int, *arguments: Any) -> int:
        thread = get_ident()
        is_outermost = thread not in _threads_in_callbacks
        _threads_in_callbacks.add(thread)
        try:
            method(_alive[this], *arguments)
        finally:
            if is_outermost:
                _threads_in_callbacks.discard(thread)
        return S_OK

    return call


class HostObject:
    """The base of observers. A subclass has the methods of its contract, which return nothing."""

    contract: ClassVar[Contract]
    _functions: "ClassVar[List[Any]]"
    _table: ClassVar[Any]
    __slots__ = ("_memory", "_references", "address")

    def __init_subclass__(cls) -> None:
        methods = [_query_interface, _add_ref, _release]
        methods += [_forward(getattr(cls, name)) for name, _ in cls.contract.methods]
        cls._functions = [prototype(each)(method) for each, method in zip(cls.contract.signatures, methods)]
        cls._table = (c_void_p * len(methods))(*(cast(function, c_void_p).value for function in cls._functions))

    def __init__(self) -> None:
        self._memory = c_void_p(cast(self._table, c_void_p).value)
        self.address: int = cast((c_char * sizeof(self._memory)).from_buffer(self._memory), c_void_p).value or 0
        # Its length is the number of references: unlike a number, a list changes in one step on any thread.
        self._references: List[None] = [None]
        _alive[self.address] = self

    def add_reference(self) -> int:
        """Returns how many there are."""
        self._references.append(None)
        return len(self._references)

    def release(self) -> int:
        """Returns how many references are left."""
        self._references.pop()
        if not self._references:
            _alive.pop(self.address, None)
        return len(self._references)
