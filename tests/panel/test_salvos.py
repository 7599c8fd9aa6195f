"""Salvos: made from what is, previewed, run, and rolled back."""

import pytest


@pytest.fixture
def salvo(panel, devices):
    """A salvo with the levels of two devices, which have been changed since."""
    for number in (1, 2):
        devices.command(number, "set VIDEO PROC AMP Gain 3")
    panel.wait_for_text("[href$='/converter-2']", "Converter 2")
    panel.go("#/salvos/new")
    fill(panel, "Label", "Evening news")
    fill(panel, "Name", "evening-news")
    panel.click_button("Take present values\u2026")
    panel.run("for (const box of document.querySelectorAll('dialog .check')) box.querySelector('input').checked = ['Converter 1', 'Converter 2', 'Picture'].includes(box.innerText.trim())")
    panel.click_button("Take values", within="dialog")
    panel.wait("document.querySelectorAll('table.steps tbody tr').length > 20")
    panel.click_button("Save")
    panel.wait("document.querySelector(\".salvo-list a[href$='/evening-news'][aria-current]\")")
    for number in (1, 2):
        devices.command(number, f"set VIDEO PROC AMP Gain {10 + number}")
    panel.wait_for_text(".salvo-content .note", "2 would change")
    yield panel
    panel.go("#/salvos/evening-news")
    panel.click_button("Remove")
    panel.click_button("Remove", within="dialog")
    panel.wait("!document.querySelector(\".salvo-list a[href$='/evening-news']\")")


def fill(panel, label, text):
    panel.wait("[...document.querySelectorAll('.field')].some((field) => field.innerText.startsWith(arguments[0]))", label)
    panel.run("[...document.querySelectorAll('.field')].find((field) => field.innerText.startsWith(arguments[0])).querySelector('input').value = arguments[1]", label, text)


def test_the_preview_shows_what_would_change_now(salvo):
    salvo.wait_for_text(".salvo-content .note", "2 would change")
    salvo.click(".salvo-content input[type=checkbox]")
    salvo.wait("document.querySelectorAll('table.steps tbody tr').length === 2")
    assert "11" in salvo.text("table.steps") and "12" in salvo.text("table.steps")


def test_a_check_sets_nothing(salvo, gateway):
    salvo.click_button("Check")
    salvo.wait_for_text(".runner", "nothing was set")
    salvo.wait_for_text(".runner", "Would change")
    assert gateway.get("api/v1/devices/converter-1/properties/proc-amp.gain")["value"] == 11


def test_a_salvo_is_run_step_by_step_and_rolled_back(salvo, gateway):
    salvo.click_button("Run")
    salvo.wait_for_text("dialog", "It changes 2 values")
    salvo.click_button("Run", within="dialog")
    salvo.wait_for_text(".runner", "Run: done")
    salvo.wait_for_text(".runner", "Confirmed")
    assert gateway.get("api/v1/devices/converter-1/properties/proc-amp.gain")["value"] == 3
    salvo.click_button("Roll back")
    salvo.wait_for_text(".runner", "rolled back")
    assert gateway.get("api/v1/devices/converter-1/properties/proc-amp.gain")["value"] == 11


def test_a_step_that_fails_says_why(salvo, devices):
    devices.command(2, "nack on")
    try:
        salvo.click_button("Run")
        salvo.click_button("Run", within="dialog")
        salvo.wait_for_text(".runner", "Run: failed")
        salvo.wait_for_text(".runner", "Refused")
    finally:
        devices.command(2, "nack off")


def test_another_salvo_lends_its_steps(salvo):
    salvo.go("#/salvos/new")
    salvo.choose("select[aria-label^='Add steps']", "evening-news")
    salvo.wait("document.querySelectorAll('table.steps tbody tr').length > 20")
