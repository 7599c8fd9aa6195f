"""Objects of the library: their methods and their references.

Every object is a pointer to a pointer to a table of functions, on every system. The first three are QueryInterface,
AddRef and Release. ctypes releases the interpreter's lock while a function runs.
"""

import sys
from ctypes import CFUNCTYPE, byref, c_char, c_double, c_int32, c_uint32, c_uint64, c_void_p
from typing import Any, Callable, ClassVar, Dict, NoReturn, Tuple, Type, TypeVar

from .errors import Error

if sys.platform == "win32":
    from ctypes import WINFUNCTYPE as FUNCTION
else:
    FUNCTION = CFUNCTYPE

S_OK = 0
E_FAIL = -0x7FFFBFFB
E_INVALIDARG = -0x7FF8FFA9
E_NOINTERFACE = -0x7FFFBFFE
E_OUTOFMEMORY = -0x7FF8FFF2
E_POINTER = -0x7FFFBFFD

UNKNOWN = bytes.fromhex("0000000000000000c000000000000046")
QUERY_INTERFACE, ADD_REF, RELEASE = range(3)

_REASONS = {
    E_FAIL: "not accepted: the library's thread cannot be woken",
    E_INVALIDARG: "the value is outside its bounds",
    E_NOINTERFACE: "the library is too old: it has no such interface",
    E_POINTER: "a pointer is null",
}

TYPES: Dict[str, Any] = {"d": c_double, "i": c_int32, "p": c_void_p, "q": c_uint64, "u": c_uint32}
Call = Callable[..., int]
I = TypeVar("I", bound="Interface")  # noqa: E741


class Contract:
    """What an interface is: its identifier, and its methods with the letters of their parameters."""

    __slots__ = ("identifier", "methods", "name", "slots")

    def __init__(self, name: str, identifier: bytes, methods: Tuple[Tuple[str, str], ...]) -> None:
        self.name = name
        self.identifier = identifier
        self.methods = methods
        self.slots = {method: slot for slot, (method, _) in enumerate(methods, start=3)}

    @property
    def signatures(self) -> Tuple[str, ...]:
        """Of all slots."""
        return ("pp", "", "", *(signature for _, signature in self.methods))


def prototype(signature: str) -> Any:
    """The type of a method's function. ctypes keeps one of each."""
    return FUNCTION(c_int32, c_void_p, *(TYPES[letter] for letter in signature))


_calls: Dict[Tuple[int, str], Tuple[Call, ...]] = {}


def calls_of(this: int, contract: Contract) -> Tuple[Call, ...]:
    """The functions of an object. The library stays loaded, so its tables stay where they are."""
    table = c_void_p.from_address(this).value or 0
    key = (table, contract.name)
    if key not in _calls:
        signatures = contract.signatures
        addresses = (c_void_p * len(signatures)).from_address(table)
        _calls[key] = tuple(prototype(each)(address) for each, address in zip(signatures, addresses))
    return _calls[key]


def check(call: str, result: int) -> None:
    """Raises unless a call has succeeded."""
    if result < 0:
        fail(call, result)


def fail(call: str, result: int) -> NoReturn:
    """Raises what a failed call means."""
    if result == E_OUTOFMEMORY:
        raise MemoryError(call)
    raise Error(f"{call}: {_REASONS.get(result) or f'result {result & 0xFFFFFFFF:#010x}'}")


class Interface:
    """One reference to an object of the library. It is released with this object, and not earlier: a call on another
    thread may still be using it."""

    contract: ClassVar[Contract]
    __slots__ = ("__weakref__", "_calls", "_this")

    def __init__(self, this: int) -> None:
        self._calls = calls_of(this, self.contract)
        self._this = this

    def __del__(self) -> None:
        self._calls[RELEASE](self._this)

    @property
    def address(self) -> int:
        """The object, to pass to a method."""
        return self._this

    def query(self, contract: Contract) -> int:
        """The address of another interface of the same object, with a reference of its own."""
        found = c_void_p()
        identifier = (c_char * 16).from_buffer_copy(contract.identifier)
        check(contract.name, self._calls[QUERY_INTERFACE](self._this, byref(identifier), byref(found)))
        return found.value or 0

    def ask(self, kind: Type[I]) -> I:
        """Another interface of the same object."""
        return kind(self.query(kind.contract))

    def call(self, method: str, *arguments: Any) -> int:
        """Calls a method by name, for those that need not be fast."""
        return self._calls[self.contract.slots[method]](self._this, *arguments)
