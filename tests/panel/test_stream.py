"""The stream: nothing that may be out of date looks live, and nothing has to be loaded again by hand."""

import time

import pytest

row = ".device-row:has([href$='/converter-1'])"


@pytest.fixture
def fleet(panel):
    panel.wait_for_text(row, "1080i50")
    return panel


def wait_for_state(panel, state):
    panel.wait("document.body.dataset.stream === arguments[0]", state)


def test_a_gateway_that_falls_silent_is_noticed_within_two_seconds(fleet, gateway):
    started = time.monotonic()
    gateway.freeze()
    try:
        wait_for_state(fleet, "lost")
        taken = time.monotonic() - started
        assert "Not live since" in fleet.text("stream-mark")
        assert float(fleet.value("getComputedStyle(document.querySelector('.fleet-content')).opacity")) < 0.6
    finally:
        gateway.thaw()
    wait_for_state(fleet, "live")
    assert taken < 2.5


def test_a_gateway_that_is_restarted_is_found_again_with_its_devices(fleet, gateway, devices):
    gateway.kill()
    wait_for_state(fleet, "lost")
    devices.command(1, "set VIDEO OUTPUT Output option Black")
    gateway.start()
    wait_for_state(fleet, "live")
    gateway.wait_for_devices(devices.count)
    fleet.wait_for_text(row, "Connected")
    devices.command(1, "set VIDEO PROC AMP Gain 33")
    fleet.wait_for_text(row, "Gain 33")


def test_a_control_can_be_used_again_after_a_restart(panel, gateway, devices):
    gain = "[data-property='proc-amp.gain']"
    panel.go("#/device/converter-1/picture")
    panel.wait("document.querySelector(arguments[0] + ' input[type=range]')", gain)
    gateway.kill()
    wait_for_state(panel, "lost")
    gateway.start()
    gateway.wait_for_devices(devices.count)
    wait_for_state(panel, "live")
    panel.wait("document.querySelector(arguments[0] + ' input[type=range]')?.disabled === false", gain)
    panel.run("const entry = document.querySelector(arguments[0]); entry.value = 5; entry.dispatchEvent(new Event('change'))", f"{gain} input[type=number]")
    panel.wait_for_text(f"{gain} .attempt", "Confirmed")


def test_a_change_that_cannot_be_sent_says_so(panel, gateway):
    gain = "[data-property='proc-amp.gain']"
    panel.go("#/device/converter-2/picture")
    panel.wait("document.querySelector(arguments[0] + ' input[type=range]')", gain)
    gateway.kill()
    try:
        panel.run("const entry = document.querySelector(arguments[0]); entry.value = 5; entry.dispatchEvent(new Event('change'))", f"{gain} input[type=number]")
        panel.wait_for_text(f"{gain} .attempt", "cannot be reached")
    finally:
        gateway.start()
    wait_for_state(panel, "live")


def test_a_device_that_is_added_and_removed_appears_and_disappears(panel, gateway, devices):
    panel.click_button("Add device\u2026")
    for label, text in (("Label", "Spare"), ("Name", "spare-1"), ("Address", devices.address(1))):
        panel.run("[...document.querySelectorAll('dialog .field')].find((field) => field.innerText.startsWith(arguments[0])).querySelector('input').value = arguments[1]", label, text)
    panel.click_button("Save", within="dialog")
    panel.wait("document.querySelector(\"[href$='/spare-1']\")")
    panel.go("#/device/spare-1")
    panel.click_button("Edit\u2026")
    panel.click_button("Remove", within="dialog")
    panel.wait_for_text("dialog", "Its history stays")
    panel.click_button("Remove", within="dialog")
    panel.go("#/fleet")
    panel.wait("document.querySelectorAll('.device-row').length === 6")
