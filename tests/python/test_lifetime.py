"""How long everything lives: no leak, and a clean end of the interpreter."""

import gc
import os
import subprocess
import sys
import threading
from ctypes import byref, c_void_p
from typing import Any, List

import pytest

import morquil
from morquil import _contract
from morquil._host_object import HostObject, objects_alive
from morquil.testing import SimulatedDevice

IS_LONG = bool(os.environ.get("MORQUIL_LONG"))


def resident_kilobytes() -> int:
    with open("/proc/self/statm", encoding="ascii") as status:
        return int(status.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024


def thread_count() -> int:
    return len(os.listdir("/proc/self/task"))


def reference_count(device: morquil.Device) -> int:
    this = device.calls.address
    device.calls._calls[1](this)
    return device.calls._calls[2](this)


def test_references_are_counted_exactly(connected_device: morquil.Device) -> None:
    before = reference_count(connected_device)
    amp = connected_device.video_proc_amp
    assert connected_device.video_proc_amp is amp
    assert reference_count(connected_device) == before + 1
    connected_device._forget_features()
    assert reference_count(connected_device) == before + 1
    del amp
    assert reference_count(connected_device) == before


def connect_and_use(address: str) -> None:
    with morquil.Device.connect(address) as device:
        device.on_change(lambda _: None)
        device.video_proc_amp.get_gain()
        device.get("device.name")


@pytest.mark.cost
def test_connections_leave_nothing(simulated_device: SimulatedDevice) -> None:
    for _ in range(20):
        connect_and_use(simulated_device.address)
    before = resident_kilobytes(), thread_count(), len(os.listdir("/proc/self/fd")), objects_alive()
    count = 10_000 if IS_LONG else 100
    for _ in range(count):
        connect_and_use(simulated_device.address)
    gc.collect()
    assert objects_alive() == before[3]
    assert thread_count() <= before[1] and len(os.listdir("/proc/self/fd")) <= before[2]
    assert resident_kilobytes() - before[0] < 4096


class CountingObserver(HostObject):
    contract = _contract.ReportObserver
    __slots__ = ("count", "done", "wanted")

    def __init__(self, wanted: int) -> None:
        super().__init__()
        self.count = 0
        self.wanted = wanted
        self.done = threading.Event()

    def block_reported(self, property_set: int, kind: int, origin: int) -> None:
        self.count += 1
        if self.count == self.wanted:
            self.done.set()


@pytest.mark.cost
def test_events_leave_nothing() -> None:
    with SimulatedDevice("--flood") as simulated, morquil.Device.connect(simulated.address) as device:
        delivery = device._connection.delivery
        sizes: List[int] = []
        for wanted in (10_000, 1_000_000 if IS_LONG else 20_000):
            observer = CountingObserver(wanted)
            delivery.call("add_report_observer", observer.address)
            simulated.command("set VIDEO PROC AMP Gain 1")
            assert observer.done.wait(1200)
            delivery.call("remove_report_observer", observer.address)
            assert observer.release() == 0
            gc.collect()
            sizes.append(resident_kilobytes())
        assert sizes[1] - sizes[0] < 4096


@pytest.mark.long
def test_a_thousand_restarts_of_a_device(simulated_device: SimulatedDevice) -> None:
    restarts = 0
    with morquil.Session(simulated_device.address, first_pause=0.01, longest_pause=0.05) as session:
        for device in session:
            assert device.get("proc-amp.gain") == 0
            restarts += 1
            if restarts == 1000:
                break
            simulated_device.restart()


@pytest.mark.parametrize("count", [20, pytest.param(1000, marks=pytest.mark.long)])
def test_recoveries_leave_nothing(simulated_device: SimulatedDevice, count: int) -> None:
    recovered = 0
    with morquil.Session(simulated_device.address, first_pause=0.001, longest_pause=0.01) as session:
        for device in session:
            assert device.set("proc-amp.gain", recovered % 50).acknowledged == 1
            recovered += 1
            if recovered == count:
                break
            simulated_device.command("drop")


ENDINGS = {
    "a live connection": "device = morquil.Device.connect(address)",
    "a live connection with callbacks": "device = morquil.Device.connect(address)\n"
    "device.on_change(print)\ndevice.on_end(print)\nstream = device.changes()\nprint(len(device.values()) > 100)",
    "a callback that runs": "import time\ndevice = morquil.Device.connect(address)\n"
    "device.on_change(lambda _: time.sleep(0.3))\ndevice.video_proc_amp.set_gain(5)\ntime.sleep(0.1)",
    "an attempt": "from morquil._connection import Connection\nkept = Connection('127.250.250.250')",
    "a session": "session = morquil.Session(address)\nsession.wait(20)",
    "a session that waits": "session = morquil.Session('127.250.250.250')",
    "a thread that waits": "import threading\ndevice = morquil.Device.connect(address)\n"
    "threading.Thread(target=lambda: list(device.changes()), daemon=True).start()",
    "an output handler": "device = morquil.Device.connect(address)\nmorquil.set_library_output(lambda line: None)",
    "an exception": "device = morquil.Device.connect(address)\nraise SystemExit(0)",
    "a reference cycle": "device = morquil.Device.connect(address)\ndevice.on_change(lambda _: device)\n"
    "device.itself = device",
}


@pytest.mark.parametrize("state", ENDINGS)
@pytest.mark.parametrize("flood", [False, True], ids=["calm", "flooded"])
def test_the_interpreter_ends_cleanly_with(state: str, flood: bool) -> None:
    program = f"import sys, morquil\naddress = sys.argv[1]\n{ENDINGS[state]}\n"
    with SimulatedDevice(*(["--flood"] if flood else [])) as simulated:
        for _ in range(20 if IS_LONG else 1):
            result = subprocess.run([sys.executable, "-X", "dev", "-c", program, simulated.address],
                                    capture_output=True, text=True, timeout=120)
            assert (result.returncode, result.stderr) == (0, ""), state


def test_host_objects_answer_as_com_objects_do() -> None:
    observer: Any = CountingObserver(1)
    functions = observer._functions
    found = c_void_p()
    unknown = bytes.fromhex("0000000000000000c000000000000046")
    for identifier, result in ((unknown, 0), (_contract.ReportObserver.identifier, 0), (bytes(16), -0x7FFFBFFE)):
        assert functions[0](observer.address, identifier, byref(found)) == result
        assert found.value == (observer.address if result == 0 else None)
    assert functions[0](observer.address, unknown, None) == -0x7FFFBFFD
    assert [functions[2](observer.address) for _ in range(2)] == [2, 1]
    assert observer.release() == 0
