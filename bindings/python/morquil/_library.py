"""The library: where it is, its texts, its output, and the object from which all others come."""

import atexit
import os
import sys
from contextlib import contextmanager
from ctypes import CDLL, byref, c_char_p, c_uint, c_void_p, string_at
from threading import Lock
from typing import Any, Callable, Generator, Iterator, List, Optional

from . import _contract
from ._com import Interface, check
from ._host_object import HostObject
from .enumerations import ConsoleMode
from .errors import InvalidValue, LibraryNotFound

_lock = Lock()
_library: "Optional[Library]" = None
_exit_calls: List[Callable[[], None]] = []


class Discovery(Interface):
    """Makes device objects."""

    __slots__ = ()
    contract = _contract.Discovery

    def connect_async(self, address: str, observer: HostObject) -> int:
        """Returns the address of a device object, with a reference, whose connection has begun."""
        device = c_void_p()
        with text_in(address) as text:
            check("connect", self.call("connect_async", text, byref(device), observer.address))
        return device.value or 0

    def disconnect(self, device: Interface) -> None:
        """Ends a connection. Outside a callback no observer is called any more when this returns."""
        self.call("disconnect", device.address)


class Console(Interface):
    """Where the library's text goes."""

    __slots__ = ()
    contract = _contract.Console

    def set_output(self, mode: ConsoleMode, observer: "Optional[ConsoleObserver]") -> None:
        """For all devices of the process."""
        check("set_output", self.call("set_output", mode, observer.address if observer else None))


class ConsoleObserver(HostObject):
    """Receives what the library prints."""

    contract = _contract.ConsoleObserver
    __slots__ = ("_handler",)

    def __init__(self, handler: Callable[[str], object]) -> None:
        super().__init__()
        self._handler = handler

    def line(self, text: int) -> None:
        self._handler(text_at(text))


class Library:
    """The loaded library, and the functions of texts."""

    def __init__(self, path: str) -> None:
        self._dll = CDLL(path)
        entry = self._dll.GetMorquilDiscoveryInstance_0000
        entry.restype = c_void_p
        # On Windows texts belong to the system, elsewhere to the library.
        texts = CDLL("oleaut32") if sys.platform == "win32" else self._dll
        self.allocate: Any = texts.SysAllocStringLen
        self.allocate.restype, self.allocate.argtypes = c_void_p, [c_char_p, c_uint]
        self.length: Any = texts.SysStringLen
        self.length.restype, self.length.argtypes = c_uint, [c_void_p]
        self.free: Any = texts.SysFreeString
        self.free.restype, self.free.argtypes = None, [c_void_p]
        discovery = entry()
        if not discovery:
            raise MemoryError("GetMorquilDiscoveryInstance_0000")
        self.discovery = Discovery(discovery)
        self.console = self.discovery.ask(Console)


def candidates() -> Iterator[str]:
    """Where the library may be, the most specific place first."""
    name = "MorquilAPI.dll" if sys.platform == "win32" else "libMorquilAPI.so.1"
    chosen = os.environ.get("MORQUIL_LIBRARY")
    if chosen:
        yield chosen
        return
    beside = os.path.join(os.path.dirname(os.path.abspath(__file__)), name)
    if os.path.exists(beside):
        yield beside
    yield from registered()
    yield name


def registered() -> List[str]:
    """The DLL that is registered with Windows."""
    if sys.platform != "win32":
        return []
    import uuid
    import winreg

    key = f"CLSID\\{{{uuid.UUID(bytes_le=_contract.DISCOVERY_CLASS)}}}\\InprocServer32"
    try:
        return [winreg.QueryValue(winreg.HKEY_CLASSES_ROOT, key)]
    except OSError:
        return []


def _load() -> Library:
    reasons: List[str] = []
    for path in candidates():
        try:
            return Library(path)
        except (OSError, AttributeError) as error:
            reasons.append(str(error))
    raise LibraryNotFound(
        "the library cannot be loaded; install it, or put its path into the environment variable MORQUIL_LIBRARY ("
        + "; ".join(reasons) + ")"
    )


def library() -> Library:
    """The library. The first call loads it and silences it: standard output belongs to the program."""
    global _library
    if _library is None:
        with _lock:
            if _library is None:
                loaded = _load()
                loaded.console.set_output(ConsoleMode.SILENT, None)
                # While the interpreter ends, no thread of the library may call into it.
                atexit.register(_end)
                _library = loaded
    return _library


def at_exit(call: Callable[[], None]) -> None:
    """Has `call` called when the interpreter ends, before everything that was given earlier."""
    _exit_calls.append(call)


def _end() -> None:
    for call in reversed(_exit_calls):
        call()
    silence_library()


def text_at(text: Optional[int]) -> str:
    """Reads a text of the library. An unpaired surrogate becomes U+FFFD."""
    if not text:
        return ""
    return string_at(text, 2 * library().length(text)).decode("utf-16-le", "replace")


def take_text(text: c_void_p) -> str:
    """Reads and frees a text that a method has returned."""
    try:
        return text_at(text.value)
    finally:
        library().free(text)


def check_text(text: object) -> bytes:
    """A text as the interfaces take it."""
    if not isinstance(text, str):
        raise InvalidValue(f"{text!r} is not a text")
    if not text.isprintable() and any(character in text for character in "\n\r\0"):
        raise InvalidValue("a text has neither line ends nor zero characters in it")
    try:
        return text.encode("utf-16-le")
    except UnicodeEncodeError:
        raise InvalidValue(f"{text!r} has half a character in it") from None


@contextmanager
def text_in(text: object) -> "Generator[int, None, None]":
    """A text that is passed to the library; freed afterwards."""
    units = check_text(text)
    allocated = library().allocate(units, len(units) // 2)
    if not allocated:
        raise MemoryError("SysAllocStringLen")
    try:
        yield allocated
    finally:
        library().free(allocated)


def silence_library() -> None:
    """The library prints nothing, as long as nothing else is chosen. Like the two functions below, this is for all
    devices of the process."""
    library().console.set_output(ConsoleMode.SILENT, None)


def set_library_output(handler: Callable[[str], object]) -> None:
    """Passes what the library prints, and everything that devices send, to `handler`, line by line. It is called on the
    library's threads, possibly on several at once, until another output is chosen."""
    observer = ConsoleObserver(handler)
    try:
        library().console.set_output(ConsoleMode.OBSERVER, observer)
    finally:
        observer.release()


def restore_library_output() -> None:
    """The library prints to standard output, as it does for hosts that choose nothing."""
    library().console.set_output(ConsoleMode.STANDARD_OUTPUT, None)
