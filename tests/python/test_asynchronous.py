"""Devices and sessions on an event loop."""

import asyncio
import time
from typing import Any, Awaitable, Callable, List

import pytest

import morquil
from morquil import AsyncDevice, AsyncSession, Change
from morquil.testing import SimulatedDevice


def run(function: Callable[[], Awaitable[None]]) -> None:
    async def limited() -> None:
        await asyncio.wait_for(function(), 60)

    asyncio.run(limited(), debug=False)


def test_a_change_is_confirmed(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        async with await AsyncDevice.connect(simulated_device.address) as device:
            assert (await device.set("proc-amp.gain", 12)).is_applied
            assert (await device.update({"color.red": 1, "color.blue": 2})).is_applied
            assert device.get("proc-amp.gain") == 12 and device.video_proc_amp.get_gain() == 12
            with pytest.raises(morquil.InvalidValue):
                await device.set("proc-amp.gain", 99)
            with pytest.raises(morquil.Refused):
                await device.apply(lambda: device.video_proc_amp.set_gain(99))
        assert not device.is_connected

    run(body)


def test_many_changes_are_under_way_at_once(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        async with await AsyncDevice.connect(simulated_device.address) as device:
            names = ["color.red", "proc-amp.gain", "audio.gain", "noise-reduction.bias"]
            offers = [device.offered(name) for name in names]
            known = [name for name, offer in zip(names, offers) if offer is not None]
            outcomes = await asyncio.gather(*(device.set(name, 1) for name in known))
            assert all(outcome.acknowledged for outcome in outcomes)

    run(body)


def test_an_attempt_fails_with_its_reason() -> None:
    async def body() -> None:
        with pytest.raises(morquil.ConnectError):
            await AsyncDevice.connect("127.250.250.250")
        with SimulatedDevice("--silent") as silent, pytest.raises(morquil.Timeout):
            await AsyncDevice.connect(silent.address, timeout=0.2)

    run(body)


def test_changes_are_iterated(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        async with await AsyncDevice.connect(simulated_device.address) as device:
            changes = device.changes("proc-amp", timeout=20)
            simulated_device.command("set VIDEO PROC AMP Gain 12")
            assert await changes.__anext__() == Change("proc-amp.gain", 0, 12, False)
            with pytest.raises(morquil.Timeout):
                await device.changes(timeout=0.05).__anext__()

    run(body)


def test_a_loss_is_raised_within_a_second(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        async with await AsyncDevice.connect(simulated_device.address) as device:
            changes = device.changes()
            lost_at: "asyncio.Queue[float]" = asyncio.Queue()
            device.on_end(lambda _: lost_at.put_nowait(time.monotonic()))
            simulated_device.command("drop")
            with pytest.raises(morquil.Lost):
                async for _ in changes:
                    pass
            raised_at = time.monotonic()
            assert raised_at - await lost_at.get() < 1

    run(body)


def test_closing_ends_the_iteration(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        device = await AsyncDevice.connect(simulated_device.address)
        changes = device.changes()
        asyncio.get_running_loop().call_later(0.05, lambda: asyncio.ensure_future(device.close()))
        assert [change async for change in changes] == []
        await device.close()

    run(body)


async def stop_acknowledging(simulated_device: SimulatedDevice, device: AsyncDevice) -> None:
    changes = device.changes("proc-amp.hue", timeout=20)
    simulated_device.command("ack off")
    simulated_device.command("set VIDEO PROC AMP Hue 5")
    await changes.__anext__()


def test_a_loss_ends_the_wait_for_a_change(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        async with await AsyncDevice.connect(simulated_device.address) as device:
            await stop_acknowledging(simulated_device, device)
            asyncio.get_running_loop().call_later(0.2, simulated_device.command, "drop")
            with pytest.raises(morquil.Lost):
                await device.set("proc-amp.gain", 1, timeout=50)

    run(body)


def test_a_wait_can_be_cancelled(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        async with await AsyncDevice.connect(simulated_device.address) as device:
            await stop_acknowledging(simulated_device, device)
            with pytest.raises(morquil.Timeout):
                await device.set("proc-amp.gain", 1, timeout=0.1)
            task = asyncio.ensure_future(device.set("proc-amp.gain", 2, timeout=None))
            await asyncio.sleep(0)
            task.cancel()
            with pytest.raises(asyncio.CancelledError):
                await task
            assert not device._connection.receipts.receipts

    run(body)


def test_handlers_run_on_the_loop_and_their_exceptions_are_reported_by_it(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        loop = asyncio.get_running_loop()
        reported: "asyncio.Queue[Any]" = asyncio.Queue()
        loop.set_exception_handler(lambda _, context: reported.put_nowait(context["exception"]))

        def fail(change: Change) -> None:
            assert asyncio.get_running_loop() is loop
            raise KeyError(change.name)

        async with await AsyncDevice.connect(simulated_device.address) as device:
            device.on_change(fail)
            await device.set("proc-amp.gain", 1)
            assert isinstance(await reported.get(), KeyError)

    run(body)


def test_settings_are_loaded(simulated_device: SimulatedDevice, tmp_path: Any) -> None:
    async def body() -> None:
        async with await AsyncDevice.connect(simulated_device.address) as device:
            await device.set("proc-amp.gain", 21)
            device.save_settings(str(tmp_path / "settings.txt"))
            await device.set("proc-amp.gain", 0)
            changes = device.changes("proc-amp.gain", timeout=20)
            assert (await device.load_settings(str(tmp_path / "settings.txt"))).acknowledged > 5
            assert (await changes.__anext__()).new == 21

    run(body)


def test_a_session_reconnects_after_a_loss(simulated_device: SimulatedDevice) -> None:
    async def body() -> None:
        seen: List[AsyncDevice] = []
        events: List[Any] = []
        async with AsyncSession(simulated_device.address, on_connected=events.append, on_lost=events.append,
                                first_pause=0.01) as session:
            async for device in session:
                seen.append(device)
                assert session.current is device
                if len(seen) == 3:
                    break
                simulated_device.command("drop")
        assert len(set(map(id, seen))) == 3 and not seen[-1].is_connected
        assert [type(event).__name__ for event in events] == ["AsyncDevice", "Lost"] * 2 + ["AsyncDevice"]
        with pytest.raises(morquil.Lost):
            await session.wait()
        assert [device async for device in session] == []

    run(body)


def test_a_session_reports_failed_attempts_and_survives_its_handlers() -> None:
    async def body() -> None:
        failed = asyncio.Event()
        reported: List[Any] = []
        asyncio.get_running_loop().set_exception_handler(lambda _, context: reported.append(context))

        def fail(error: morquil.Error, pause: float) -> None:
            assert isinstance(error, morquil.ConnectError) and pause > 0
            failed.set()
            raise KeyError

        async with AsyncSession("127.250.250.250", on_failed=fail, first_pause=0.01) as session:
            with pytest.raises(morquil.Timeout):
                await session.wait(0.05)
            await failed.wait()
        assert reported

    run(body)


def test_a_loop_that_is_closed_is_not_called(simulated_device: SimulatedDevice) -> None:
    devices: List[AsyncDevice] = []

    async def body() -> None:
        device = await AsyncDevice.connect(simulated_device.address)
        device.on_change(lambda _: None)
        devices.append(device)

    run(body)
    simulated_device.command("set VIDEO PROC AMP Gain 12")
    simulated_device.command("drop")
    assert devices[0]._connection.link.ended.wait(20)
    devices[0]._connection.close()
