"""A device without hardware, for tests: the program morquil-sim."""

import os
import shutil
import subprocess
import sys
from itertools import count
from threading import Thread
from typing import IO, List, Optional

from .errors import Error

__all__ = ["SimulatedDevice"]

_numbers = count()


def unused_address() -> str:
    """Devices listen on port 9800, so several of them need several addresses. On Windows there is only one."""
    if sys.platform == "win32":
        return "127.0.0.1"
    process = os.getpid()
    return f"127.{process >> 8 & 0x7F | 0x80}.{process & 0xFF}.{next(_numbers) % 254 + 1}"


def find_program() -> str:
    """The path of morquil-sim: from the environment variable MORQUIL_SIM, or else from PATH."""
    program = os.environ.get("MORQUIL_SIM") or shutil.which("morquil-sim")
    if program is None:
        raise Error("morquil-sim is neither on the path nor in the environment variable MORQUIL_SIM")
    return program


class SimulatedDevice:
    """A running morquil-sim. On leaving a `with` block it is stopped. `options` are those of its command line."""

    def __init__(self, *options: str, address: Optional[str] = None) -> None:
        self.address = address or unused_address()
        self.options = options
        self._program = find_program()
        #: What it has said on standard error.
        self.messages: List[str] = []
        self._process = self._start()

    def _start(self) -> "subprocess.Popen[str]":
        arguments = [self._program, "--address", self.address, *self.options]
        pipe = subprocess.PIPE
        process = subprocess.Popen(arguments, stdin=pipe, stdout=pipe, stderr=pipe, text=True, encoding="utf-8")
        assert process.stdout and process.stderr
        line = process.stdout.readline()
        if not line.startswith("listening on "):
            process.kill()
            raise Error(f"{' '.join(arguments)}: {process.communicate()[1].strip()}")
        for stream in (process.stdout, process.stderr):
            Thread(target=self._collect, args=(stream,), daemon=True).start()
        return process

    def _collect(self, stream: "IO[str]") -> None:
        for line in stream:
            self.messages.append(line.rstrip("\n"))

    def command(self, line: str) -> None:
        """Acts on the device: "set VIDEO PROC AMP Gain 12", "drop", "silent"; `morquil-sim --help` lists all."""
        assert self._process.stdin
        self._process.stdin.write(line + "\n")
        self._process.stdin.flush()

    def restart(self) -> None:
        """Switches the device off and on."""
        self.stop()
        self._process = self._start()

    def stop(self) -> None:
        """Switches the device off."""
        self._process.terminate()
        assert self._process.stdin
        try:
            self._process.stdin.close()
        except OSError:
            pass
        self._process.wait()

    def __enter__(self) -> "SimulatedDevice":
        return self

    def __exit__(self, *_: object) -> None:
        self.stop()
