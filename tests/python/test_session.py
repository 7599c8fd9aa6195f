"""Sessions: connections that are restored."""

import queue
import threading
import time
from typing import Any, List

import pytest

import morquil
from morquil._backoff import Backoff
from morquil.testing import SimulatedDevice


def test_pauses_double_up_to_the_longest_and_vary_by_a_quarter() -> None:
    backoff = Backoff(1.0, 5.0)
    for middle in (1, 2, 4, 5, 5):
        assert 0.75 * middle <= backoff.pause() <= 1.25 * middle
    backoff.reset()
    assert backoff.pause() <= 1.25


def test_a_session_reconnects_after_a_loss(simulated_device: SimulatedDevice) -> None:
    events: "queue.SimpleQueue[Any]" = queue.SimpleQueue()
    with morquil.Session(simulated_device.address, on_connected=events.put, on_lost=events.put,
                         first_pause=0.01) as session:
        first = events.get(timeout=20)
        assert isinstance(first, morquil.Device) and session.wait(20) is first
        simulated_device.command("drop")
        assert isinstance(events.get(timeout=20), morquil.Lost)
        second = events.get(timeout=20)
        assert isinstance(second, morquil.Device) and second is not first
        assert second.set("proc-amp.gain", 1).is_applied
    assert session.current is None and not second.is_connected


def test_a_session_survives_a_restart_of_the_device(simulated_device: SimulatedDevice) -> None:
    failures: List[morquil.Error] = []
    with morquil.Session(simulated_device.address, on_failed=lambda error, _: failures.append(error), first_pause=0.01,
                         longest_pause=0.05) as session:
        session.wait(20)
        simulated_device.stop()
        deadline = time.monotonic() + 20
        while not failures and time.monotonic() < deadline:
            threading.Event().wait(0.01)
        simulated_device.restart()
        assert session.wait(20).get("proc-amp.gain") == 0
    assert isinstance(failures[0], morquil.ConnectError)


def test_iterating_gives_every_connection(simulated_device: SimulatedDevice) -> None:
    seen: List[morquil.Device] = []
    with morquil.Session(simulated_device.address, first_pause=0.01) as session:
        for device in session:
            seen.append(device)
            if len(seen) == 3:
                break
            simulated_device.command("drop")
    assert len(set(map(id, seen))) == 3


def test_changes_continue_after_a_loss(simulated_device: SimulatedDevice) -> None:
    values: List[Any] = []
    with morquil.Session(simulated_device.address, first_pause=0.01) as session:
        for device in session:
            try:
                with device.changes("proc-amp.gain") as changes:
                    simulated_device.command(f"set VIDEO PROC AMP Gain {len(values) + 1}")
                    values.append(next(changes).new)
                    if len(values) == 3:
                        break
                    simulated_device.command("drop")
                    next(changes)
            except morquil.Lost:
                continue
    assert values == [1, 2, 3]


def test_stopping_ends_the_wait() -> None:
    session = morquil.Session("127.250.250.250", first_pause=60)
    threading.Timer(0.1, session.stop).start()
    with pytest.raises(morquil.Lost, match="stopped"):
        session.wait()
    assert list(session) == []
    session.stop()


def test_waiting_can_have_a_limit() -> None:
    with morquil.Session("127.250.250.250") as session, pytest.raises(morquil.Timeout):
        session.wait(0.05)


def test_a_session_may_be_stopped_by_its_own_handler(simulated_device: SimulatedDevice) -> None:
    done = threading.Event()
    sessions: "queue.SimpleQueue[morquil.Session]" = queue.SimpleQueue()

    def stop(_: morquil.Device) -> None:
        sessions.get(timeout=20).stop()
        done.set()

    session = morquil.Session(simulated_device.address, on_connected=stop)
    sessions.put(session)
    assert done.wait(20)
    session.stop()


def test_handlers_of_a_session_run_where_the_host_wants(simulated_device: SimulatedDevice) -> None:
    jobs: "queue.SimpleQueue[Any]" = queue.SimpleQueue()
    threads: List[int] = []
    with morquil.Session(simulated_device.address, executor=jobs.put,
                         on_connected=lambda _: threads.append(threading.get_ident())):
        jobs.get(timeout=20)()
    assert threads == [threading.get_ident()]
