"""The device without hardware."""

import pytest

import morquil
from morquil import simulated_device as module
from morquil.testing import SimulatedDevice


def test_devices_have_addresses_of_their_own() -> None:
    with SimulatedDevice() as one, SimulatedDevice() as other:
        assert one.address != other.address


def test_what_it_says_is_kept(simulated_device: SimulatedDevice) -> None:
    with morquil.Device.connect(simulated_device.address) as device, device.changes(timeout=20) as changes:
        simulated_device.command("set VIDEO PROC AMP Gain 61")
        simulated_device.command("set VIDEO PROC AMP Gain 12")
        next(changes)
    simulated_device.stop()
    assert any("does not offer" in line for line in simulated_device.messages)


def test_a_bad_option_is_an_error() -> None:
    with pytest.raises(morquil.Error, match="--nonsense"):
        SimulatedDevice("--nonsense")


def test_a_missing_program_is_an_error(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.delenv("MORQUIL_SIM", raising=False)
    monkeypatch.setenv("PATH", "")
    with pytest.raises(morquil.Error, match="MORQUIL_SIM"):
        module.find_program()
