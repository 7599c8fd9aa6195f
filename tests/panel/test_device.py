"""One device: its controls offer what it offers now, and say what has become of a change."""

import pytest
from browser import Browser

mode = "[data-property='output.video-mode']"
gain = "[data-property='proc-amp.gain']"


@pytest.fixture
def picture(panel, devices):
    devices.command(1, "set VIDEO PROC AMP Gain 0")
    panel.go("#/device/converter-1/picture")
    panel.wait("document.querySelector(arguments[0] + ' input[type=range]')", gain)
    panel.wait("document.querySelector(arguments[0] + ' input[type=number]').value === '0'", gain)
    return panel


def enter(panel, place, text):
    panel.run("const entry = document.querySelector(arguments[0] + ' input[type=number]'); entry.value = arguments[1]; entry.dispatchEvent(new Event('change'))", place, text)


def test_an_output_mode_is_changed_confirmed_and_undone(panel):
    panel.go("#/device/converter-1/output")
    panel.wait("document.querySelectorAll(arguments[0] + ' option').length > 3", mode)
    before = panel.value("document.querySelector(arguments[0] + ' select').value", mode)
    panel.choose(f"{mode} select", "1080p50")
    panel.wait_for_text(f"{mode} .attempt", "Confirmed")
    panel.wait_for_text(".formats", "1080p50")
    panel.wait_for_text(f"{mode} .who", "gateway")
    panel.wait_for_text(".undo", f"1080p50 \u2192 {before}")
    panel.click(".undo")
    panel.wait("document.querySelector(arguments[0] + ' select').value === arguments[1]", mode, before)
    panel.wait("document.querySelector('.undo').disabled")


def test_only_what_the_device_offers_can_be_chosen(panel, gateway):
    panel.go("#/device/converter-1/output")
    offer = gateway.get("api/v1/devices/converter-1/properties/output.video-mode")["offer"]
    panel.wait("document.querySelectorAll(arguments[0] + ' option').length === arguments[1]", mode, len(offer))
    assert panel.value("[...document.querySelectorAll(arguments[0] + ' option')].map((option) => option.value)", mode) == offer


def test_another_output_mode_changes_what_a_slider_offers(panel):
    line = "[data-property='reference.line-offset'] input[type=range]"
    panel.go("#/device/converter-2/output")
    before = panel.wait("document.querySelector(arguments[0])?.max", line)
    panel.choose(f"{mode} select", "720p50")
    panel.wait("document.querySelector(arguments[0]).max !== arguments[1]", line, before)
    panel.choose(f"{mode} select", "1080i50")
    panel.wait("document.querySelector(arguments[0]).max === arguments[1]", line, before)


def test_a_slider_has_the_offered_range_and_an_exact_entry(picture):
    assert picture.value("[document.querySelector(arguments[0]).min, document.querySelector(arguments[0]).max]", f"{gain} input[type=range]") == ["-60", "60"]
    enter(picture, gain, "12")
    picture.wait_for_text(f"{gain} .attempt", "Confirmed")
    picture.wait("document.querySelector(arguments[0] + ' input[type=range]').value === '12'", gain)


def test_a_value_outside_the_range_is_not_sent(picture):
    enter(picture, gain, "61")
    assert not picture.value("document.querySelector(arguments[0] + ' input[type=number]').validity.valid", gain)
    assert picture.value("document.querySelector(arguments[0]).dataset.attempt", gain) is None


def test_a_refused_change_says_so_and_the_old_value_stays(picture, devices):
    devices.command(1, "nack on")
    try:
        enter(picture, gain, "7")
        picture.wait_for_text(f"{gain} .attempt", "7 refused")
        picture.wait("document.querySelector(arguments[0] + ' input[type=number]').value === '0'", gain)
    finally:
        devices.command(1, "nack off")


def test_a_slow_network_shows_a_pending_change_and_then_its_outcome(picture):
    picture.command("Network.enable")
    picture.command("Network.emulateNetworkConditions", offline=False, latency=700, downloadThroughput=40000, uploadThroughput=40000)
    try:
        enter(picture, gain, "21")
        picture.wait("document.querySelector(arguments[0]).dataset.attempt === 'pending'", gain)
        picture.wait_for_text(f"{gain} .attempt", "Confirmed")
    finally:
        picture.command("Network.emulateNetworkConditions", offline=False, latency=0, downloadThroughput=-1, uploadThroughput=-1)


def test_dragging_a_slider_ends_at_the_last_value_and_is_undone_at_once(picture):
    picture.run("""const slider = document.querySelector(arguments[0]);
        slider.dispatchEvent(new PointerEvent('pointerdown'));
        for (let value = 1; value <= 30; value++) { slider.value = value; slider.dispatchEvent(new Event('input')); }
        slider.dispatchEvent(new Event('change'))""", f"{gain} input[type=range]")
    picture.wait_for_text(".undo", "Gain: 30 \u2192 0")
    picture.click(".undo")
    picture.wait("document.querySelector(arguments[0] + ' input[type=number]').value === '0'", gain)


def test_a_device_that_is_not_connected_cannot_be_set_and_shows_no_value(panel, devices):
    panel.go("#/device/converter-5/picture")
    panel.wait("document.querySelector(arguments[0] + ' input[type=number]')?.disabled === false", gain)
    devices.command(5, "offline")
    panel.wait("document.querySelector(arguments[0] + ' input[type=number]').disabled", gain)
    assert panel.value("document.querySelector(arguments[0] + ' input[type=number]').value", gain) == ""
    devices.command(5, "online")
    panel.wait("document.querySelector(arguments[0] + ' input[type=number]').disabled === false", gain)


def test_the_audio_matrix_has_one_source_for_each_channel(panel):
    panel.go("#/device/converter-1/audio")
    point = ".section-map button[aria-label='AudioIn3 to channel 1']"
    panel.wait("document.querySelector(arguments[0])", point)
    panel.wait("document.querySelectorAll('.section-map button[aria-pressed=true]').length === 16")
    panel.click(point)
    panel.wait("document.querySelector(arguments[0]).ariaPressed === 'true'", point)
    assert panel.value("document.querySelectorAll('.section-map button[aria-pressed=true]').length") == 16
    panel.press_with_control("z")
    panel.wait("document.querySelector(arguments[0]).ariaPressed === 'false'", point)


def test_a_preset_is_recalled_only_after_a_question(panel):
    panel.go("#/device/converter-1/presets")
    panel.wait("document.querySelectorAll('.presets tbody tr').length > 5")
    panel.click("button[aria-label='Recall News studio']")
    panel.wait_for_text("dialog", "Recall preset 1")
    panel.click_button("Cancel", within="dialog")
    panel.wait("!document.querySelector('dialog')")
    assert panel.text(".attempt") == ""


def test_a_star_adds_a_property_to_the_favourites(picture):
    picture.click(f"{gain} .star")
    picture.go("#/device/converter-2/favourites")
    picture.wait("document.querySelectorAll('.property-row').length === 1")
    picture.wait("document.querySelector(arguments[0])", gain)


def test_two_devices_are_compared_and_a_setting_is_copied(panel, devices):
    devices.command(3, "set VIDEO PROC AMP Sharp 5")
    devices.command(4, "set VIDEO PROC AMP Sharp 0")
    panel.go("#/device/converter-3/compare/converter-4")
    panel.wait_for_text("table.lines", "Sharpness")
    panel.run("document.querySelectorAll('table.lines input[type=checkbox]').forEach((box) => (box.checked = box.ariaLabel === 'Sharpness'))")
    panel.click_button("Copy to Converter 4")
    panel.wait_for_text(".notices", "1 settings copied")
    panel.wait("!document.querySelector('table.lines')?.innerText.includes('Sharpness')")


def test_every_property_appears_in_exactly_one_group(panel, gateway):
    names = [each["name"] for each in gateway.get("api/v1/properties")]
    shown = []
    panel.go("#/device/converter-1")
    panel.wait("document.querySelectorAll('.groups a').length > 5")
    for link in panel.value("[...document.querySelectorAll('.groups a')].map((a) => a.getAttribute('href'))"):
        panel.go(link)
        panel.wait("document.querySelector('.groups a[aria-current]').getAttribute('href') === arguments[0]", link)
        if not link.endswith(("favourites", "compare")):
            shown += panel.value("[...document.querySelectorAll('.property-row')].map((row) => row.dataset.property)")
    special = [name for name in names if name.startswith(("audio.map", "audio.input-map", "preset."))]
    assert sorted(shown + special) == sorted(names)


def test_two_browsers_see_each_others_changes(picture, gateway):
    other = Browser()
    try:
        other.open(gateway.url, "#/device/converter-1/picture")
        other.wait("document.querySelector(arguments[0] + ' input[type=range]')", gain)
        enter(picture, gain, "17")
        other.wait("document.querySelector(arguments[0] + ' input[type=number]').value === '17'", gain)
        enter(other, gain, "-4")
        picture.wait("document.querySelector(arguments[0] + ' input[type=number]').value === '-4'", gain)
        assert other.complaints() == []
    finally:
        other.quit()
