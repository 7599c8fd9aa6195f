"""What becomes of changes."""

import threading
import time

import pytest

import morquil
from morquil.testing import SimulatedDevice


def test_a_change_is_confirmed_when_set_returns(connected_device: morquil.Device) -> None:
    outcome = connected_device.set("proc-amp.gain", 12)
    assert outcome == morquil.Outcome(acknowledged=1, confirmed=1)
    assert outcome.is_applied
    assert connected_device.get("proc-amp.gain") == 12


def test_everything_that_a_function_sets_is_waited_for(connected_device: morquil.Device) -> None:
    def change() -> None:
        connected_device.video_proc_amp.set_gain(3)
        connected_device.color_correction.set_red(4)

    assert connected_device.apply(change).acknowledged == 2
    assert (connected_device.get("proc-amp.gain"), connected_device.get("color.red")) == (3, 4)


def test_a_function_that_sets_nothing_is_applied(connected_device: morquil.Device) -> None:
    assert connected_device.apply(lambda: None) == morquil.Outcome()


def test_a_refusal_is_an_exception(connected_device: morquil.Device) -> None:
    with pytest.raises(morquil.Refused, match="refused 1 of 1") as refused:
        connected_device.apply(lambda: connected_device.video_proc_amp.set_gain(61))
    assert refused.value.outcome.refused == 1
    assert connected_device.get("proc-amp.gain") == 0


def test_the_exception_of_a_function_is_passed_on(connected_device: morquil.Device) -> None:
    def fail() -> None:
        raise KeyError("mine")

    with pytest.raises(KeyError):
        connected_device.apply(fail)
    assert connected_device.set("proc-amp.gain", 1).is_applied


def test_a_device_that_does_not_answer_is_a_timeout(unanswered_device: morquil.Device) -> None:
    started = time.monotonic()
    with pytest.raises(morquil.Timeout, match="not answered within 0.2 s"):
        unanswered_device.set("proc-amp.gain", 1, timeout=0.2)
    assert time.monotonic() - started < 10


def test_a_loss_ends_the_wait(unanswered_device: morquil.Device, simulated_device: SimulatedDevice) -> None:
    def change() -> None:
        unanswered_device.video_proc_amp.set_gain(1)
        simulated_device.command("drop")

    with pytest.raises(morquil.Lost) as lost:
        unanswered_device.apply(change, timeout=60)
    assert lost.value.outcome is not None
    assert lost.value.outcome.unanswered + lost.value.outcome.unsent == 1
    with pytest.raises(morquil.Lost):
        unanswered_device.set("proc-amp.gain", 2)


def test_closing_ends_the_wait_of_another_thread(unanswered_device: morquil.Device) -> None:
    threading.Timer(0.2, unanswered_device.close).start()
    with pytest.raises(morquil.Lost):
        unanswered_device.set("proc-amp.gain", 1, timeout=60)


def test_receipts_of_several_threads_are_their_own(connected_device: morquil.Device) -> None:
    outcomes: "list[morquil.Outcome]" = []

    def work(name: str) -> None:
        for value in range(20):
            outcomes.append(connected_device.set(name, value))

    threads = [threading.Thread(target=work, args=(f"color.{name}",)) for name in ("red", "green", "blue")]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(outcomes) == 60
    assert all(outcome.acknowledged == 1 for outcome in outcomes)


def test_waiting_on_the_librarys_thread_is_refused(connected_device: morquil.Device,
                                                   simulated_device: SimulatedDevice) -> None:
    caught: "list[BaseException]" = []
    done = threading.Event()

    def handler(_: morquil.Change) -> None:
        try:
            connected_device.set("proc-amp.hue", 1)
        except morquil.Error as error:
            caught.append(error)
        done.set()

    with connected_device.on_change(handler):
        simulated_device.command("set VIDEO PROC AMP Gain 5")
        assert done.wait(20)
    assert isinstance(caught[0], morquil.WouldDeadlock)


def test_a_handler_may_queue_changes(connected_device: morquil.Device, simulated_device: SimulatedDevice) -> None:
    with connected_device.on_change(lambda _: connected_device.color_correction.set_red(9), "proc-amp.gain"):
        with connected_device.changes("color.red", timeout=20) as changes:
            simulated_device.command("set VIDEO PROC AMP Gain 5")
            assert next(changes).new == 9


def test_no_receipt_is_kept(connected_device: morquil.Device) -> None:
    for value in range(10):
        connected_device.set("proc-amp.gain", value)
    assert not connected_device._connection.receipts.receipts
