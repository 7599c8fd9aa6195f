"""The command: python -m morquil."""

import pytest

from morquil.__main__ import main
from morquil.testing import SimulatedDevice


def test_it_shows_a_device(simulated_device: SimulatedDevice, capsys: pytest.CaptureFixture[str]) -> None:
    assert main([simulated_device.address]) == 0
    assert "proc-amp.gain" in capsys.readouterr().out
    assert main([simulated_device.address, "proc-amp.gain", "input.signal-present", "--offered"]) == 0
    assert capsys.readouterr().out == "proc-amp.gain         0  (-60 to 60)\ninput.signal-present  true\n"


def test_it_says_what_is_wrong(capsys: pytest.CaptureFixture[str]) -> None:
    assert main(["127.0.0.1", "proc-amp.gian"]) == 1
    assert capsys.readouterr().err == "morquil: there is no property 'proc-amp.gian'; nearest: proc-amp.gain\n"
    assert main(["127.250.250.250"]) == 1
    assert "no answer from a device" in capsys.readouterr().err
