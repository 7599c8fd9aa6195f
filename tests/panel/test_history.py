"""The past: values over time, who changed them, and every attempt."""

import csv
import io
import urllib.request

import pytest

gain = "[data-property='proc-amp.gain']"


@pytest.fixture
def history(panel, gateway, devices):
    """Device 1 has been changed at its front panel and through the gateway."""
    put(gateway, "proc-amp.gain", 20)
    devices.command(1, "set VIDEO PROC AMP Gain 30")
    for present in ("false", "true"):
        devices.command(1, f"set VIDEO INPUT Signal present {present}")
        panel.wait_for_text(".device-row:has([href$='/converter-1'])", "Present" if present == "true" else "No signal")
    put(gateway, "proc-amp.gain", 0)
    panel.go("#/history?device=converter-1")
    panel.wait_for_text("history-view", "Gain")
    return panel


def put(gateway, name, value, device="converter-1"):
    request = urllib.request.Request(f"{gateway.url}api/v1/devices/{device}/properties/{name}?wait=confirmed", method="PUT",
                                     data=f'{{"value": {value}}}'.encode(), headers={"Content-Type": "application/json"})
    urllib.request.urlopen(request).close()


def test_a_number_is_a_curve_and_a_word_is_a_bar(history):
    history.wait("document.querySelector('.curve canvas')?.width > 300")
    history.wait("[...document.querySelectorAll('.state-bar .state')].some((state) => state.innerText === '1080i50')")
    history.wait("[...document.querySelectorAll('.state-bar .state')].some((state) => state.title.startsWith('No,'))")


def test_the_list_says_who_changed_what(history):
    history.wait("[...document.querySelectorAll('table.lines tbody tr')].some((row) => row.innerText.includes('30') && row.innerText.includes('front panel'))")
    history.wait("[...document.querySelectorAll('table.lines tbody tr')].some((row) => row.innerText.includes('gateway'))")
    history.wait("document.querySelectorAll('.who-tick').length >= 3")


def test_a_part_of_the_time_is_chosen_by_dragging_and_by_keys(history):
    history.wait("document.querySelectorAll('.lane').length > 2")
    left, top, width = history.value("(({left, top, width}) => [left, top, width])(document.querySelector('.lanes').getBoundingClientRect())")
    for kind, x in (("mousePressed", left + width * 0.9), ("mouseMoved", left + width * 0.95), ("mouseReleased", left + width * 0.99)):
        history.command("Input.dispatchMouseEvent", type=kind, x=x, y=top + 60, button="left", clickCount=1)
    history.wait("document.querySelector('.period-text').innerText.includes(' to ')")
    history.click_button("15 min")
    history.wait_for_text(".period-text", "until now")
    history.click_button("\u2190 Earlier")
    history.wait("document.querySelector('.period-text').innerText.includes(' to ')")


def test_a_past_period_without_a_change_shows_what_was_in_force_then(history, gateway):
    history.go("#/history?device=converter-1&property=input.signal-present")
    history.wait("document.querySelectorAll('.lane').length === 1")
    history.click_button("\u2190 Earlier")
    history.click_button("\u2190 Earlier")
    history.wait("document.querySelector('.state')?.innerText === 'not known'")


def test_a_new_change_appears_by_itself(history, devices):
    devices.command(1, "set VIDEO PROC AMP Gain -17")
    history.wait("document.querySelector('table.lines tbody tr').innerText.includes('\u221217')")


def test_a_property_is_added_and_removed(history):
    history.choose("select[aria-label^='Add a property']", "proc-amp.hue")
    history.wait("[...document.querySelectorAll('.lane')].some((lane) => lane.innerText.includes('Hue'))")
    history.click("button[aria-label='Remove Hue']")
    history.wait("![...document.querySelectorAll('.lane')].some((lane) => lane.innerText.includes('Hue'))")


def test_the_same_changes_come_as_a_file(history, gateway):
    link = history.wait("[...document.querySelectorAll('.exports a')].find((a) => a.innerText === 'CSV')?.getAttribute('href')")
    with urllib.request.urlopen(gateway.url.rstrip("/") + link) as answer:
        rows = list(csv.DictReader(io.StringIO(answer.read().decode())))
    assert any(row["property"] == "proc-amp.gain" and row["new"] == "30" for row in rows)


def test_the_audit_shows_what_was_refused_too(history, gateway, devices):
    devices.command(2, "nack on")
    try:
        history.go("#/device/converter-2/picture")
        history.wait("document.querySelector(arguments[0] + ' input[type=range]')?.disabled === false", gain)
        history.run("const entry = document.querySelector(arguments[0]); entry.value = 44; entry.dispatchEvent(new Event('change'))", f"{gain} input[type=number]")
        history.wait_for_text(f"{gain} .attempt", "refused")
    finally:
        devices.command(2, "nack off")
    history.go("#/history/audit")
    history.wait("[...document.querySelectorAll('table.lines tbody tr')].some((row) => row.innerText.includes('44') && row.innerText.includes('Refused'))")
    history.click("input[type=checkbox]")
    history.wait("[...document.querySelectorAll('table.lines tbody tr')].every((row) => !row.innerText.includes('Confirmed'))")


def test_the_time_beside_a_control_leads_to_its_history(history):
    history.go("#/device/converter-1/picture")
    history.wait("document.querySelector(arguments[0] + ' .who')?.getAttribute('href')", gain)
    history.click(f"{gain} .who")
    history.wait("document.querySelectorAll('.lane').length === 1 && document.querySelector('.lane').innerText.includes('proc-amp.gain')")
