"""What the library prints, and what Python prints."""

import subprocess
import sys
import threading
from typing import List

import morquil
from morquil.testing import SimulatedDevice

PROGRAM = """
import sys, morquil
{before}
with morquil.Device.connect(sys.argv[1]) as device:
    device.set("proc-amp.gain", 1)
print("done")
"""


def printed(simulated_device: SimulatedDevice, before: str) -> "subprocess.CompletedProcess[str]":
    program = PROGRAM.format(before=before)
    return subprocess.run([sys.executable, "-c", program, simulated_device.address], capture_output=True, text=True,
                          timeout=120)


def test_standard_output_belongs_to_the_program(simulated_device: SimulatedDevice) -> None:
    result = printed(simulated_device, "")
    assert (result.stdout, result.stderr, result.returncode) == ("done\n", "", 0)


def test_the_library_prints_when_it_is_asked_to(simulated_device: SimulatedDevice) -> None:
    result = printed(simulated_device, "morquil.restore_library_output()")
    assert "VIDEO PROC AMP:" in result.stdout and result.stdout != "done\n"


def test_lines_can_be_taken_one_by_one(simulated_device: SimulatedDevice) -> None:
    lines: List[str] = []
    has_come = threading.Event()

    def take(line: str) -> None:
        lines.append(line)
        if line == "Gain: 1":
            has_come.set()

    morquil.set_library_output(take)
    try:
        with morquil.Device.connect(simulated_device.address) as device:
            device.set("proc-amp.gain", 1)
            assert has_come.wait(20)
    finally:
        morquil.silence_library()
    assert "VIDEO PROC AMP:" in lines
    before = len(lines)
    with morquil.Device.connect(simulated_device.address):
        pass
    assert len(lines) == before
