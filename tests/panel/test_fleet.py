"""The fleet: every device with what is true of it now."""

import time

import pytest
from conftest import markup
from selenium.webdriver.common.keys import Keys

row = ".device-row:has([href$='/converter-{}'])"


def test_the_list_shows_every_device_with_its_formats_and_states(panel):
    panel.wait("document.querySelectorAll('.device-row').length === 6")
    panel.wait_for_text(row.format(1), "1080i50")
    text = panel.text(row.format(1))
    for word in ("Connected", "Converter 1", "Present", "Locked"):
        assert word in text


def test_a_label_full_of_markup_stays_text(panel):
    panel.wait_for_text(row.format(6), markup)
    panel.go("#/device/converter-6")
    panel.wait_for_text("h1", markup)
    assert panel.value("document.querySelectorAll('main img, main b').length") == 0
    assert panel.value("document.title") == "Morquil"


def test_searching_leaves_the_devices_that_match(panel):
    panel.wait("document.querySelectorAll('.device-row').length === 6")
    panel.press("/")
    panel.press("converter-3")
    panel.wait("document.querySelectorAll('.device-row').length === 1")
    assert "Converter 3" in panel.text(".fleet-table")
    panel.press(*[Keys.BACKSPACE] * 20, "nothing like that")
    panel.wait("document.querySelector('.fleet-content').dataset.empty === 'No device matches.'")


def test_a_room_and_a_tag_are_filters(panel):
    panel.choose("select[aria-label=Room]", "Studio B")
    panel.wait("document.querySelectorAll('.device-row').length === 2")
    panel.choose("select[aria-label=Tag]", "uhd")
    panel.wait("document.querySelectorAll('.device-row').length === 0")


def test_a_lost_signal_is_a_problem_until_it_is_back(panel, devices):
    panel.wait_for_text(row.format(2), "Present")
    devices.command(2, "set VIDEO INPUT Signal present false")
    panel.wait_for_text(row.format(2), "No signal")
    panel.wait_for_text(".counts", "1 with problems")
    panel.click_button("Problems")
    panel.wait("document.querySelectorAll('.device-row').length === 1")
    devices.command(2, "set VIDEO INPUT Signal present true")
    panel.wait("document.querySelectorAll('.device-row').length === 0")


@pytest.mark.parametrize("mode, place", [("List", row), ("Wall", ".wall-tile[href$='/converter-{}']")])
def test_a_lost_link_shows_no_value_and_says_so_within_two_seconds(panel, devices, mode, place):
    panel.click_button(mode)
    panel.wait_for_text(place.format(3), "1080i50")
    started = time.monotonic()
    devices.command(3, "offline")
    panel.wait("document.querySelector(arguments[0]).dataset.link !== 'connected'", place.format(3))
    taken = time.monotonic() - started
    assert "1080i50" not in panel.text(place.format(3))
    assert panel.value("document.querySelector(arguments[0]).dataset.tone", place.format(3)) in ("alarm", "waiting")
    devices.command(3, "online")
    panel.wait("document.querySelector(arguments[0]).dataset.link === 'connected'", place.format(3))
    panel.wait_for_text(place.format(3), "1080i50")
    assert taken < 2


def test_the_wall_gives_every_device_a_tile_and_none_is_out_of_sight(panel):
    panel.click_button("Wall")
    panel.wait("document.querySelectorAll('.wall-tile').length === 6")
    panel.wait("document.documentElement.scrollHeight <= innerHeight")
    letters = panel.value("parseFloat(getComputedStyle(document.querySelector('.tile-label')).fontSize)")
    assert letters >= 30  # pixels, on a screen 1440 pixels wide


def test_a_front_panel_change_is_on_the_page_within_200_ms(panel, devices):
    panel.wait_for_text(row.format(1), "1080i50")
    panel.run("""window.seen = {};
        new MutationObserver(() => {
            const text = document.querySelector(arguments[0]).innerText;
            for (const value of text.match(/Gain \\S+/g) ?? []) seen[value] ??= Date.now();
        }).observe(document.body, {subtree: true, childList: true, characterData: true})""", row.format(1))
    delays = []
    for value in range(1, 8):
        sent = time.time() * 1000
        devices.command(1, f"set VIDEO PROC AMP Gain {value}")
        delays.append(panel.wait("seen['Gain ' + arguments[0]]", value) - sent)
    assert min(delays) < 200, delays


def test_a_row_says_what_changed_last_and_who_did_it(panel, devices):
    devices.command(4, "set VIDEO PROC AMP Hue 9")
    panel.wait_for_text(row.format(4), "Hue 9")
    panel.wait_for_text(row.format(4), "elsewhere")
