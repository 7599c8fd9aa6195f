"""What all tests of the Python package share."""

import ctypes
import gc
import os
import sys
import threading
from typing import Any, Callable, Iterator

import pytest

pytest_plugins = ["morquil.testing"]


def traced(function: Callable[..., Any]) -> Callable[..., Any]:
    """Has the lines counted that run on the library's threads, which Python has not started."""

    def call(*arguments: Any) -> Any:
        trace = getattr(threading, "_trace_hook", None)
        if trace is not None and sys.gettrace() is None:
            sys.settrace(trace)
        return function(*arguments)

    return call


def counting(make_type: Callable[..., Any]) -> Callable[..., Any]:
    def make(*types: Any) -> Any:
        kind = make_type(*types)

        def function(target: Any) -> Any:
            return kind(traced(target) if callable(target) else target)

        return function

    return make


# Before the package is imported.
if "coverage" in sys.modules:
    ctypes.CFUNCTYPE = counting(ctypes.CFUNCTYPE)

from morquil import Device  # noqa: E402
from morquil._host_object import objects_alive  # noqa: E402
from morquil.simulated_device import SimulatedDevice  # noqa: E402


def pytest_addoption(parser: pytest.Parser) -> None:
    parser.addoption("--checks", action="store_true", help='print "ok" or "FAILED" for each test')


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "long: takes minutes; runs when MORQUIL_LONG is set")
    config.addinivalue_line("markers", "cost: measures time or memory, and must not run while lines are counted")
    for kind in ("PytestUnhandledThreadExceptionWarning", "PytestUnraisableExceptionWarning"):
        config.addinivalue_line("filterwarnings", f"error::pytest.{kind}")
    if config.getoption("--checks"):
        config.pluginmanager.register(Checks(config))


class Checks:
    """Prints the result of each test as scripts/count-tests.py counts it."""

    def __init__(self, config: pytest.Config) -> None:
        self._config = config

    def _say(self, result: str, report: pytest.TestReport) -> None:
        self._config.get_terminal_writer().line(f"\n  {result}{report.nodeid}")

    def pytest_runtest_logreport(self, report: pytest.TestReport) -> None:
        if report.failed:
            self._say("FAILED  ", report)
        elif report.when == "call" and report.passed:
            self._say("ok      ", report)


def pytest_runtest_setup(item: pytest.Item) -> None:
    if item.get_closest_marker("long") and not os.environ.get("MORQUIL_LONG"):
        pytest.skip("long")


@pytest.fixture
def unanswered_device(simulated_device: SimulatedDevice) -> "Iterator[Device]":
    """A connection to a simulated device that acknowledges nothing any more."""
    with Device.connect(simulated_device.address) as device:
        with device.changes("proc-amp.hue", timeout=20) as changes:
            simulated_device.command("ack off")
            simulated_device.command("set VIDEO PROC AMP Hue 5")
            next(changes)  # so the command before it has been carried out, too
        yield device


@pytest.fixture(autouse=True)
def _nothing_is_left_over() -> Iterator[None]:
    """After every test the library has released every observer."""
    before = objects_alive()
    yield
    if objects_alive() > before:
        gc.collect()
    assert objects_alive() <= before
