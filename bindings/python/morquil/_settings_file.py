"""How a settings file is saved without risk to an existing one."""

import os
from typing import TYPE_CHECKING

from ._com import check
from ._library import text_in
from .errors import Error, NotKnown

if TYPE_CHECKING:
    from .features import DeviceCalls

SAVED = 1  # S_FALSE; S_OK means that the file could not be opened


def save_settings(device: "DeviceCalls", path: str) -> None:
    """Saves into a temporary file in the same folder, which then replaces the old one."""
    _check_state(device)
    target = os.path.realpath(path)
    temporary = os.path.join(os.path.dirname(target), f".morquil-{os.getpid()}-{id(device):x}.tmp")
    try:
        if os.path.exists(target):
            with open(target, "ab"):  # a read-only file could be replaced, but must not be
                pass
        if _call(device, "save_settings_file", temporary) != SAVED:
            raise Error(f"{path} cannot be written")
        _check_state(device)
        if os.path.exists(target):
            os.chmod(temporary, os.stat(target).st_mode)
        os.replace(temporary, target)
    except OSError as error:
        raise Error(f"{path} cannot be written: {error.strerror}") from error
    finally:
        if os.path.exists(temporary):
            os.unlink(temporary)


def load_settings(device: "DeviceCalls", path: str) -> None:
    """Queues the settings of a file. The library reports nothing about an unreadable one."""
    with open(path, "rb"):
        pass
    _call(device, "load_settings_file", path)


def _call(device: "DeviceCalls", method: str, path: str) -> int:
    with text_in(path) as text:
        result = device.call(method, text)
    check(method, result)
    return result


def _check_state(device: "DeviceCalls") -> None:
    """While a device is connected, at least one of the values that every device reports is known."""
    for getter in (device.get_device_name, device.get_software_version, device.get_panel_lock):
        try:
            getter()
            return
        except NotKnown:
            continue
    raise NotKnown("the device has not reported its complete state")
