"""Notices of changes."""

import gc
import queue
import sys
import threading
import time
import weakref
from collections import deque
from typing import Any, List

import pytest
from hypothesis import given
from hypothesis import strategies as st

import morquil
from morquil import Change
from morquil._changes import MOST_PENDING, Pending, merged
from morquil.testing import SimulatedDevice


def test_a_change_has_the_old_and_the_new_value(connected_device: morquil.Device,
                                                simulated_device: SimulatedDevice) -> None:
    with connected_device.changes(timeout=20) as changes:
        simulated_device.command("set VIDEO PROC AMP Gain 12")
        assert next(changes) == Change("proc-amp.gain", 0, 12, is_echo=False)
        connected_device.set("proc-amp.gain", 13)
        assert next(changes) == Change("proc-amp.gain", 12, 13, is_echo=True)


def test_a_pattern_selects_changes(connected_device: morquil.Device) -> None:
    with connected_device.changes("color", timeout=20) as changes:
        connected_device.update({"proc-amp.gain": 1, "color.red": 2, "color.blue": 3})
        assert {next(changes).name, next(changes).name} == {"color.red", "color.blue"}


def test_a_loss_is_raised_within_a_second(simulated_device: SimulatedDevice) -> None:
    with morquil.Device.connect(simulated_device.address) as device:
        changes = device.changes()
        simulated_device.command("set VIDEO PROC AMP Gain 1")
        assert next(changes).new == 1
        lost_at: List[float] = []
        with device.on_end(lambda _: lost_at.append(time.monotonic())):
            simulated_device.command("drop")
            with pytest.raises(morquil.Lost):
                next(changes)
            assert time.monotonic() - lost_at[0] < 1


def test_closing_ends_the_iteration(simulated_device: SimulatedDevice) -> None:
    device = morquil.Device.connect(simulated_device.address)
    changes = device.changes()
    threading.Timer(0.1, device.close).start()
    assert list(changes) == []
    device.close()


def test_a_stream_that_is_closed_ends(connected_device: morquil.Device) -> None:
    changes = connected_device.changes()
    threading.Timer(0.1, changes.close).start()
    assert list(changes) == []


def test_a_stream_without_changes_times_out(connected_device: morquil.Device) -> None:
    with pytest.raises(morquil.Timeout):
        next(connected_device.changes(timeout=0.05))


def test_a_stream_that_is_dropped_leaves_nothing(connected_device: morquil.Device) -> None:
    connected_device.set("proc-amp.gain", 1)
    changes = weakref.ref(connected_device.changes())
    assert changes() is None
    connected_device.set("proc-amp.gain", 2)


def test_handlers_run_where_the_host_wants(connected_device: morquil.Device) -> None:
    jobs: "queue.SimpleQueue[Any]" = queue.SimpleQueue()
    threads: List[int] = []
    with connected_device.on_change(lambda _: threads.append(threading.get_ident()), "proc-amp", jobs.put):
        connected_device.set("proc-amp.gain", 1)
        assert not threads
        jobs.get(timeout=20)()
    assert threads == [threading.get_ident()]


def test_a_cancelled_handler_does_not_start(connected_device: morquil.Device) -> None:
    jobs: "queue.SimpleQueue[Any]" = queue.SimpleQueue()
    called: List[Change] = []
    subscription = connected_device.on_change(called.append, executor=jobs.put)
    connected_device.set("proc-amp.gain", 1)
    job = jobs.get(timeout=20)
    subscription.cancel()
    job()
    connected_device.set("proc-amp.gain", 2)
    assert not called and jobs.empty()


def test_an_exception_in_a_handler_is_reported_and_goes_no_further(
    connected_device: morquil.Device, monkeypatch: pytest.MonkeyPatch
) -> None:
    reported: List[Any] = []

    def report(unraisable: Any) -> None:
        reported.append(unraisable.exc_type)

    monkeypatch.setattr(sys, "unraisablehook", report)

    def fail(_: Change) -> None:
        raise KeyError("mine")

    with connected_device.on_change(fail):
        assert connected_device.set("proc-amp.gain", 1).is_applied
    assert reported == [KeyError]
    assert connected_device.set("proc-amp.gain", 2).is_applied


def test_the_end_is_reported_once(simulated_device: SimulatedDevice) -> None:
    device = morquil.Device.connect(simulated_device.address)
    ends: "queue.SimpleQueue[morquil.Lost]" = queue.SimpleQueue()
    device.on_end(ends.put)
    device.on_end(ends.put).cancel()
    simulated_device.command("drop")
    assert "the connection has ended" in str(ends.get(timeout=20))
    device.close()
    assert ends.empty()


def test_a_device_may_be_closed_in_a_handler(simulated_device: SimulatedDevice) -> None:
    device = morquil.Device.connect(simulated_device.address)
    with device.on_change(lambda _: device.close()):
        simulated_device.command("set VIDEO PROC AMP Gain 1")
        assert device._connection.link.ended.wait(20)
    device.close()


def test_a_device_that_is_dropped_is_closed(simulated_device: SimulatedDevice) -> None:
    device = morquil.Device.connect(simulated_device.address)
    device.on_change(lambda _: None)
    assert device.video_proc_amp.get_gain() == 0
    link = device._connection.link
    del device
    gc.collect()
    assert link.is_closed


changes_of_one = st.lists(st.tuples(st.sampled_from("abc"), st.integers(0, 3)), max_size=30)


@given(changes_of_one)
def test_merged_changes_lead_to_the_same_values(steps: "list[tuple[str, int]]") -> None:
    values = {"a": 0, "b": 0, "c": 0}
    history: "deque[Change]" = deque()
    for name, new in steps:
        history.append(Change(name, values[name], new, False))
        values[name] = new
    result = {"a": 0, "b": 0, "c": 0}
    for change in merged(history):
        assert change.old == result[change.name] != change.new
        result[change.name] = change.new  # type: ignore[assignment]
    assert result == values


def test_a_slow_reader_gets_merged_changes() -> None:
    pending = Pending()
    for value in range(MOST_PENDING + 1):
        pending.add(Change("proc-amp.gain", value, value + 1, False))
    assert list(pending.changes) == [Change("proc-amp.gain", 0, MOST_PENDING + 1, False)]
