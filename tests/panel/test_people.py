"""People: who is signed in, what they may do, and what happens when they may no longer."""

import json
import urllib.request

import pytest
from browser import Browser
from processes import Devices, Gateway

password = "correct horse battery"
gain = "[data-property='proc-amp.gain']"


@pytest.fixture(scope="module")
def few_devices(build):
    devices = Devices(build, 2, network=93)
    yield devices
    devices.stop()


@pytest.fixture(scope="module")
def guarded(build, few_devices, tmp_path_factory):
    """A gateway on which one has to sign in."""
    gateway = Gateway(build, tmp_path_factory.mktemp("guarded"), few_devices)
    gateway.wait_for_devices(2)
    post(gateway, {"name": "ada", "role": "admin", "password": password})
    yield gateway
    gateway.stop()


def post(gateway, user):
    request = urllib.request.Request(f"{gateway.url}api/v1/users", data=json.dumps(user).encode(), headers={"Content-Type": "application/json"})
    urllib.request.urlopen(request).close()


def sign_in(browser, gateway, user, word=password):
    browser.driver.get("about:blank")
    browser.driver.get(gateway.url)
    browser.driver.delete_all_cookies()
    browser.driver.refresh()
    browser.wait("document.querySelector('input[name=user]')")
    browser.run("document.querySelector('input[name=user]').value = arguments[0]; document.querySelector('input[name=password]').value = arguments[1]; document.querySelector('sign-in form').requestSubmit()", user, word)


@pytest.fixture
def ada(browser, guarded):
    browser.prefer(guarded.url)
    sign_in(browser, guarded, "ada")
    browser.wait("document.body.dataset.stream === 'live'")
    return browser


def add_user(panel, name, role, devices="*", properties="*"):
    panel.go("#/people")
    panel.click_button("Add a user\u2026")
    for label, text in (("User name", name), ("Password", password), ("Devices", devices), ("Properties", properties)):
        panel.run("[...document.querySelectorAll('dialog .field')].find((field) => field.innerText.startsWith(arguments[0])).querySelector('input').value = arguments[1]", label, text)
    panel.run("document.querySelector('dialog select').value = arguments[0]", role)
    panel.click_button("Save", within="dialog")
    panel.wait("[...document.querySelectorAll('people-view th')].some((th) => th.innerText === arguments[0])", name)


def test_a_wrong_password_is_refused_in_words(browser, guarded):
    browser.prefer(guarded.url)
    sign_in(browser, guarded, "ada", "wrong horse")
    browser.wait_for_text("sign-in", "is wrong")


def test_a_change_carries_the_name_of_who_made_it(ada):
    ada.go("#/device/converter-1/picture")
    ada.wait("document.querySelector(arguments[0] + ' input[type=range]')?.disabled === false", gain)
    ada.run("const entry = document.querySelector(arguments[0]); entry.value = 8; entry.dispatchEvent(new Event('change'))", f"{gain} input[type=number]")
    ada.wait_for_text(f"{gain} .who", "ada")
    ada.go("#/fleet")
    ada.wait_for_text(".device-row:has([href$='/converter-1'])", "ada")


def test_a_viewer_sees_controls_that_are_disabled(ada, guarded):
    add_user(ada, "vera", "viewer")
    sign_in(ada, guarded, "vera")
    ada.wait("document.body.dataset.stream === 'live'")
    ada.go("#/device/converter-1/picture")
    ada.wait("document.querySelector(arguments[0] + ' input[type=number]')?.title.includes('Your role')", gain)
    assert ada.value("document.querySelector(arguments[0] + ' input[type=number]').disabled", gain)
    ada.go("#/people")
    ada.wait_for_text("people-view", "Needs the role Operator")
    assert ada.value("[...document.querySelectorAll('people-view button')].find((button) => button.innerText.startsWith('Add a user')).disabled")


def test_a_scope_leaves_the_rest_disabled(ada, guarded):
    add_user(ada, "olaf", "operator", "converter-1", "proc-amp")
    sign_in(ada, guarded, "olaf")
    ada.wait("document.body.dataset.stream === 'live'")
    ada.go("#/device/converter-1/picture")
    ada.wait("document.querySelector(arguments[0] + ' input[type=range]')?.disabled === false", gain)
    assert ada.value("document.querySelector(\"[data-property='color.red'] input[type=number]\")?.disabled ?? true")


def test_a_session_that_ends_leads_to_the_sign_in(ada):
    ada.driver.delete_all_cookies()
    ada.go("#/people")
    ada.wait("document.querySelector('sign-in')")
    ada.run("document.querySelector('input[name=user]').value = 'ada'; document.querySelector('input[name=password]').value = arguments[0]; document.querySelector('sign-in form').requestSubmit()", password)
    ada.wait("document.body.dataset.stream === 'live' && !document.querySelector('sign-in')")


def test_signing_out_everywhere_ends_the_other_browser_within_a_second(ada, guarded):
    other = Browser()
    try:
        sign_in(other, guarded, "ada")
        other.wait("document.body.dataset.stream === 'live'")
        ada.go("#/people")
        ada.click_button("Sign out everywhere")
        ada.wait("document.querySelector('sign-in')")
        other.wait("document.querySelector('sign-in')", seconds=5)
    finally:
        other.quit()


def test_a_token_is_shown_once_and_can_be_revoked(ada, guarded):
    ada.go("#/people")
    ada.click_button("Make a token\u2026")
    ada.run("document.querySelector('dialog input').value = 'automation'")
    ada.click_button("Make", within="dialog")
    token = ada.wait("document.querySelector('dialog input[readonly]')?.value")
    assert token.startswith("mqt_")
    ada.click_button("Close", within="dialog")
    ada.wait("[...document.querySelectorAll('people-view th')].some((th) => th.innerText === 'automation')")
    assert token not in ada.text()
    ada.click("button[aria-label='Revoke automation']")
    ada.click_button("Revoke", within="dialog")
    ada.wait("![...document.querySelectorAll('people-view th')].some((th) => th.innerText === 'automation')")
