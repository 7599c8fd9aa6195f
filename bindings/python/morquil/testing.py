"""Fixtures for pytest. In a conftest.py:

    pytest_plugins = ["morquil.testing"]

Then a test has a device of its own:

    def test_gain(simulated_device):
        with morquil.Device.connect(simulated_device.address) as device:
            device.set("proc-amp.gain", 12)
"""

from typing import Iterator

import pytest

from .device import Device
from .simulated_device import SimulatedDevice

__all__ = ["SimulatedDevice", "connected_device", "simulated_device"]


@pytest.fixture
def simulated_device() -> Iterator[SimulatedDevice]:
    """A running morquil-sim, with an address of its own."""
    with SimulatedDevice() as device:
        yield device


@pytest.fixture
def connected_device(simulated_device: SimulatedDevice) -> Iterator[Device]:
    """A connection to it."""
    with Device.connect(simulated_device.address) as device:
        yield device
