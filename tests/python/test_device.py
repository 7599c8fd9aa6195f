"""A device: reading, checking, setting."""

import os
import pathlib
import threading
from typing import Any, Dict

import pytest
from hypothesis import HealthCheck, given, settings
from hypothesis import strategies as st

import morquil
from morquil import _settings_file
from morquil._offer import frame_height
from morquil.enumerations import AspectRatio, ConnectFailure, GenReference, VideoMode
from morquil.testing import SimulatedDevice


def test_a_getter_answers_what_the_device_has_reported(connected_device: morquil.Device) -> None:
    assert connected_device.get("output.video-mode") is VideoMode.MODE_1080I50
    assert connected_device.get("output.video-mode") == "1080i50"
    assert connected_device.get("Timecode.Generate-Value") == "10:00:00:00"
    assert connected_device.get("device.name") == "Morquil Simulator"
    assert connected_device.get("audio.map.2") == "AudioIn2"
    assert connected_device.get("input.signal-present") is True


def test_features_have_every_method_of_their_interfaces(connected_device: morquil.Device) -> None:
    amp = connected_device.video_proc_amp
    assert amp.get_gain() == 0
    assert amp.get_gain_range() == morquil.Range(-60, 60)
    assert connected_device.calls.is_conversion_supported(VideoMode.PAL, VideoMode.PAL, AspectRatio.ANAMORPHIC) in (
        True,
        False,
    )
    assert connected_device.reference.is_gen_ref_available(GenReference.BLACKBURST)


def test_what_is_offered_follows_other_settings(connected_device: morquil.Device) -> None:
    before = connected_device.offered("reference.line-offset")
    connected_device.set("output.video-mode", "625i50 PAL")
    assert connected_device.offered("reference.line-offset") != before
    assert connected_device.offered("timecode.output-line") is not None


@pytest.mark.parametrize("name", [row.name for row in morquil.properties()])
def test_every_property_can_be_asked_what_it_is(name: str, shared_device: morquil.Device) -> None:
    (row,) = morquil.properties(name)
    offer = shared_device.offered(row.name)
    if row.is_readable:
        value = shared_device.values(row.name).get(row.name)
        assert value is not None or offer is None or not row.is_writable or row.feature == "preset"


@pytest.mark.parametrize("name", [row.name for row in morquil.properties() if row.access == "read/write"])
def test_every_property_accepts_its_own_value(name: str, shared_device: morquil.Device) -> None:
    (row,) = morquil.properties(name)
    value = shared_device.values(row.name).get(row.name)
    offer = shared_device.offered(row.name)
    if value is None or (isinstance(offer, tuple) and value not in offer):
        return  # a device need not offer what it has
    assert shared_device.set(row.name, value).acknowledged == 1
    assert shared_device.get(row.name) == value


@pytest.fixture(scope="module")
def shared_device() -> Any:
    with SimulatedDevice() as simulated, morquil.Device.connect(simulated.address) as device:
        yield device


@pytest.mark.parametrize(
    "name, value",
    [
        ("proc-amp.gain", 61),
        ("proc-amp.gain", 2**40),
        ("proc-amp.gain", "12"),
        ("proc-amp.gain", True),
        ("proc-amp.gain", None),
        ("output.video-mode", "1080i51"),
        ("output.video-mode", "xyz"),
        ("output.video-mode", 5),
        ("network.name", "two\nlines"),
        ("network.name", "half \ud800"),
        ("network.name", "x" * 50),
        ("network.name", 5),
        ("aspect.size-x", float("nan")),
        ("noise-reduction.enabled", 1),
        ("timecode.generate-value", "25:00:00:00"),
        ("timecode.start", 1),
        ("preset.name.99", "x"),
        ("preset.save", 99),
    ],
)
def test_a_bad_argument_raises_before_anything_is_sent(
    name: str, value: Any, shared_device: morquil.Device, monkeypatch: pytest.MonkeyPatch
) -> None:
    def unexpected(*_: Any) -> None:
        raise AssertionError("a receipt was opened")

    monkeypatch.setattr(shared_device, "apply", unexpected)
    with pytest.raises((morquil.InvalidValue, morquil.NoSuchProperty)):
        shared_device.set(name, value)


def test_an_error_suggests_what_would_be_accepted(shared_device: morquil.Device) -> None:
    with pytest.raises(morquil.InvalidValue) as outside:
        shared_device.check("proc-amp.gain", -99)
    assert outside.value.nearest == (-60,)
    with pytest.raises(morquil.InvalidValue) as misspelt:
        shared_device.check("output.video-mode", "1080i51")
    assert misspelt.value.nearest[0] is VideoMode.MODE_1080I50
    with pytest.raises(morquil.NotOffered) as not_now:
        shared_device.check("output.video-mode", "1080p60")
    assert "1080p50" in not_now.value.nearest
    with pytest.raises(morquil.NoSuchProperty) as unknown:
        shared_device.get("proc-amp.gian")
    assert unknown.value.nearest == "proc-amp.gain"
    with pytest.raises(morquil.ReadOnly):
        shared_device.set("device.name", "x")
    with pytest.raises(morquil.NotKnown):
        shared_device.get("timecode.start")


def test_a_preset_that_the_device_does_not_have_is_refused(shared_device: morquil.Device,
                                                           monkeypatch: pytest.MonkeyPatch) -> None:
    class Preset:
        get_preset_range = staticmethod(lambda: morquil.Range(1, 1))

    names = [row.name for row in morquil.properties("preset.name")]
    monkeypatch.setitem(vars(shared_device), "preset", Preset)
    with pytest.raises(morquil.NotOffered, match="does not have it"):
        shared_device.check(names[1], "x")
    assert names[1] not in shared_device.values("preset")


def test_what_is_not_reported_is_not_checked(shared_device: morquil.Device, monkeypatch: pytest.MonkeyPatch) -> None:
    def unknown(*_: Any) -> None:
        raise morquil.NotKnown("nothing is known")

    class Feature:
        get_preset_range = get_gain_range = get_gain = staticmethod(unknown)
        set_gain = set_preset_name = save_preset = staticmethod(lambda *_: None)

    monkeypatch.setitem(vars(shared_device), "preset", Feature)
    monkeypatch.setitem(vars(shared_device), "video_proc_amp", Feature)
    getters: Dict[str, Any] = shared_device._getters
    monkeypatch.setitem(getters, "proc-amp.gain", unknown)
    assert shared_device.offered("proc-amp.gain") is None
    assert shared_device.values("proc-amp.gain") == {}
    shared_device.check("proc-amp.gain", 5000)
    shared_device.check("preset.name.2", "x")


@pytest.mark.parametrize("mode, height", [("525i59.94 NTSC", 486), ("625i50 PAL", 576), ("720p50", 720),
                                          ("1080i50", 1080), ("2K DCI 24p", 1080), ("2160p25", 2160)])
def test_ranges_of_lines_are_requested_by_frame_height(mode: str, height: int) -> None:
    member = VideoMode.named(mode)
    assert member is not None and frame_height(member) == height


def test_typed_setters_check_what_they_pass(shared_device: morquil.Device) -> None:
    for call in (
        lambda: shared_device.video_proc_amp.set_gain(2**31),
        lambda: shared_device.output_configuration.set_video_mode("nothing"),  # type: ignore[arg-type]
        lambda: shared_device.network_config.set_friendly_name("a\0b"),
        lambda: shared_device.noise_reduction.set_enabled(1),  # type: ignore[arg-type]
    ):
        with pytest.raises(morquil.InvalidValue):
            shared_device.apply(call)


def test_a_result_of_the_library_is_an_exception(shared_device: morquil.Device) -> None:
    with pytest.raises(morquil.Error, match="outside its bounds"):
        shared_device.preset.recall_preset(99)
    assert shared_device.get("proc-amp.gain") is not None


# A colon ends a key of the protocol.
LETTERS = st.characters(blacklist_categories=["Cs", "Cc"], blacklist_characters=":")


@settings(deadline=None, max_examples=25, suppress_health_check=[HealthCheck.function_scoped_fixture])
@given(text=st.text(alphabet=LETTERS, max_size=11))
def test_every_text_survives_the_way_to_the_device_and_back(text: str, shared_device: morquil.Device) -> None:
    wanted = f"<{text}>"  # spaces at its ends would be cut
    shared_device.set("network.name", wanted)
    assert shared_device.values("network.name").get("network.name", "") == wanted


def test_several_properties_are_set_at_once_or_not_at_all(connected_device: morquil.Device) -> None:
    assert connected_device.update({"proc-amp.gain": 5, "proc-amp.hue": 6}).is_applied
    with pytest.raises(morquil.InvalidValue):
        connected_device.update({"proc-amp.gain": 7, "proc-amp.hue": 999})
    assert connected_device.values("proc-amp")["proc-amp.gain"] == 5


def test_a_command_needs_no_value(connected_device: morquil.Device) -> None:
    connected_device.set("timecode.start")
    connected_device.set("preset.save", 1)


def test_patterns_select_properties() -> None:
    assert [row.name for row in morquil.properties("color")] == ["color.red", "color.green", "color.blue",
                                                                "color.reset-values"]
    assert len(morquil.properties("preset.name.?")) >= 6
    assert morquil.properties("COLOR.RED")[0].name == "color.red"
    with pytest.raises(morquil.NoSuchProperty):
        morquil.properties("nothing-like-it")


def test_settings_are_saved_and_loaded(connected_device: morquil.Device, tmp_path: pathlib.Path) -> None:
    path = str(tmp_path / "settings.txt")
    connected_device.set("proc-amp.gain", 21)
    connected_device.save_settings(path)
    connected_device.set("proc-amp.gain", 0)
    connected_device.save_settings(str(tmp_path / "other.txt"))
    with connected_device.changes("proc-amp.gain", timeout=20) as changes:
        assert connected_device.load_settings(path).acknowledged > 5
        assert next(changes).new == 21
    assert sorted(os.listdir(tmp_path)) == ["other.txt", "settings.txt"]


def test_a_saved_file_is_replaced_only_by_a_complete_one(connected_device: morquil.Device,
                                                         tmp_path: pathlib.Path) -> None:
    path = tmp_path / "settings.txt"
    path.write_text("old")
    connected_device.save_settings(str(path))
    assert path.read_text() != "old"
    path.write_text("old")
    connected_device.close()
    with pytest.raises(morquil.Lost):
        connected_device.save_settings(str(path))
    assert path.read_text() == "old"


def test_a_file_that_cannot_be_written_or_read_is_an_error(
    connected_device: morquil.Device, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    with pytest.raises(morquil.Error, match="cannot be written"):
        connected_device.save_settings(str(tmp_path / "missing" / "settings.txt"))
    read_only = tmp_path / "read_only.txt"
    read_only.write_text("old")
    monkeypatch.setattr(_settings_file, "SAVED", 7)  # no result says that it was saved
    with pytest.raises(morquil.Error, match="cannot be written"):
        connected_device.save_settings(str(read_only))
    assert read_only.read_text() == "old" and os.listdir(tmp_path) == ["read_only.txt"]
    with pytest.raises(FileNotFoundError):
        connected_device.load_settings(str(tmp_path / "missing.txt"))


def test_an_attempt_fails_with_its_reason() -> None:
    with pytest.raises(morquil.ConnectError) as nothing_there:
        morquil.Device.connect("127.250.250.250")
    assert nothing_there.value.reason is ConnectFailure.NO_RESPONSE
    with SimulatedDevice("--remote-lock") as locked, pytest.raises(morquil.ConnectError, match="locked") as refused:
        morquil.Device.connect(locked.address)
    assert refused.value.reason is ConnectFailure.REMOTE_LOCK
    with pytest.raises(morquil.InvalidValue):
        morquil.Device.connect("two\nlines")


def test_an_attempt_can_have_a_limit() -> None:
    with SimulatedDevice("--silent") as silent, pytest.raises(TimeoutError):
        morquil.Device.connect(silent.address, timeout=0.2)


def test_a_device_says_how_it_is(simulated_device: SimulatedDevice) -> None:
    device = morquil.Device.connect(simulated_device.address)
    assert device.is_connected and repr(device) == f"<Device {simulated_device.address}, connected>"
    assert 0 <= device.silence < 20
    device.close()
    device.close()
    assert not device.is_connected and repr(device) == f"<Device {simulated_device.address}, not connected>"
    for call in (lambda: device.silence, lambda: device.get("proc-amp.gain"), lambda: device.set("proc-amp.gain", 1),
                 lambda: device.video_proc_amp, device.changes):
        with pytest.raises(morquil.Lost, match="was closed"):
            call()


def test_threads_may_close_a_device_at_once(simulated_device: SimulatedDevice) -> None:
    for _ in range(20):
        device = morquil.Device.connect(simulated_device.address)
        start = threading.Barrier(4)

        def close(device: morquil.Device = device, start: threading.Barrier = start) -> None:
            start.wait(20)
            device.close()

        threads = [threading.Thread(target=close) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        assert not device.is_connected


def test_a_feature_that_was_kept_does_not_outlive_its_connection(connected_device: morquil.Device) -> None:
    amp = connected_device.video_proc_amp
    connected_device.close()
    with pytest.raises(morquil.Lost):
        amp.get_gain()
