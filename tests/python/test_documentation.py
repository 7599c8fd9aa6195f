"""The programs on the pages: each is run, and the quick start is followed to the letter."""

import os
import pathlib
import re
import subprocess
import sys
from typing import List, Tuple

import pytest

from morquil.simulated_device import unused_address
from morquil.testing import SimulatedDevice

ROOT = pathlib.Path(__file__).resolve().parents[2]
GUIDE = "docs/guides/python.md"
QUICK_START = "docs/getting-started/python.md"
BLOCK = re.compile(r"(?:^<!-- (?P<note>[^\n]*) -->\n)?^```(?P<language>\w*)\n(?P<text>.*?)^```$", re.M | re.S)


def blocks(page: str) -> List[Tuple[str, str, str]]:
    """(note, language, text)"""
    text = (ROOT / page).read_text(encoding="utf-8")
    return [(match["note"] or "", match["language"], match["text"]) for match in BLOCK.finditer(text)]


PROGRAMS = [text for note, language, text in blocks(GUIDE) if language == "python" and not note]


@pytest.mark.parametrize("program", PROGRAMS, ids=range(len(PROGRAMS)))
def test_a_program_of_the_guide_runs(program: str, simulated_device: SimulatedDevice) -> None:
    text = f"address = {simulated_device.address!r}\n{program}"
    result = subprocess.run([sys.executable, "-X", "dev", "-W", "error", "-c", text], capture_output=True, text=True,
                            timeout=120)
    assert (result.returncode, result.stderr) == (0, "")


def test_the_tests_of_the_guide_pass(tmp_path: pathlib.Path) -> None:
    for note, _, text in blocks(GUIDE):
        if note.startswith("file: "):
            (tmp_path / note[6:]).write_text(text, encoding="utf-8")
    result = subprocess.run([sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider", str(tmp_path)],
                            capture_output=True, text=True, timeout=120)
    assert result.returncode == 0 and "1 passed" in result.stdout, result.stdout


def test_the_quick_start_prints_what_it_shows(tmp_path: pathlib.Path) -> None:
    """As installed, less the installation: morquil-sim and python3 are found on the path. The device has an address that
    no other test uses."""
    address = unused_address()
    python, simulator = tmp_path / "bin" / "python3", tmp_path / "bin" / "morquil-sim"
    python.parent.mkdir()
    python.symlink_to(sys.executable)
    simulator.symlink_to(os.environ["MORQUIL_SIM"])
    environment = {**os.environ, "PATH": f"{python.parent}{os.pathsep}{os.environ['PATH']}"}
    shown: List[str] = []
    printed: List[str] = []
    running: "List[subprocess.Popen[str]]" = []
    try:
        for note, language, shown_text in blocks(QUICK_START):
            text = shown_text.replace("127.0.0.1", address)
            if note.startswith("by hand"):
                continue
            if note.startswith("file: "):
                (tmp_path / note[6:]).write_text(text, encoding="utf-8")
            elif note.startswith("in the background"):
                pipe = subprocess.PIPE
                process = subprocess.Popen([*text.split(), "--address", address], stdin=pipe, stdout=pipe, text=True,
                                           env=environment)
                running.append(process)
                assert process.stdout
                printed.append(process.stdout.readline())
            elif language == "sh":
                result = subprocess.run(text, shell=True, cwd=tmp_path, env=environment, capture_output=True, text=True,
                                        timeout=120)
                assert (result.returncode, result.stderr) == (0, "")
                printed.append(result.stdout)
            elif not language:
                shown.append(text)
    finally:
        for process in running:
            process.communicate("quit\n", timeout=20)
    assert printed == shown and len(shown) == 3
