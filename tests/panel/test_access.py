"""The panel for everyone: without a mouse, on a phone, in high contrast, with a screen reader."""

import pytest
from selenium.webdriver.common.keys import Keys

views = ["#/fleet", "#/device/converter-1/output", "#/device/converter-1/picture", "#/device/converter-1/audio",
         "#/device/converter-1/presets", "#/device/converter-1/compare/converter-2", "#/history?device=converter-1",
         "#/history/audit", "#/salvos/new", "#/people"]
themes = ["dark", "light", "contrast"]


@pytest.fixture
def axe(npm):
    return (npm / "node_modules" / "axe-core" / "axe.min.js").read_text(encoding="utf-8")


@pytest.mark.parametrize("theme", themes)
def test_axe_finds_nothing_serious_on_any_view(browser, gateway, axe, theme):
    browser.prefer(gateway.url, theme=theme)
    browser.open(gateway.url)
    rules = None if theme == "dark" else ["color-contrast"]  # nothing else differs between themes
    found = {}
    for view in views:
        browser.go(view)
        settle(browser)
        found[view] = browser.check_access(axe, rules)
    browser.go("#/fleet")
    browser.click_button("Wall")
    found["wall"] = browser.check_access(axe, rules)
    assert {view: findings for view, findings in found.items() if findings} == {}


def test_axe_notices_a_control_without_a_name(panel, axe):
    panel.wait("document.querySelectorAll('.device-row').length === 6")
    panel.run("document.querySelector('main').append(document.createElement('select'))")
    assert [finding[0] for finding in panel.check_access(axe)] == ["select-name"]


@pytest.mark.parametrize("width, height", [(360, 740), (1440, 900), (3840, 2160)])
def test_no_view_is_wider_than_the_screen(browser, gateway, width, height):
    browser.prefer(gateway.url)
    browser.resize(width, height)
    browser.open(gateway.url)
    for view in views:
        browser.go(view)
        settle(browser)
        assert browser.value("document.documentElement.scrollWidth") <= width, view


def settle(browser):
    """Waits until the view is there and what it asked for has arrived."""
    browser.wait("document.querySelector('main').firstElementChild?.childElementCount > 0")
    browser.wait("""(() => { const count = performance.getEntriesByType('resource').length, now = performance.now();
        if (window.settleCount !== count) { window.settleCount = count; window.settleSince = now; }
        return now - window.settleSince > 150; })()""")


def test_an_output_mode_is_changed_and_undone_with_the_keyboard_alone(panel):
    panel.tab_to(".device-name[href$='/converter-1']")
    panel.press(Keys.ENTER)
    panel.tab_to(".groups a[href$='/output']")
    panel.press(Keys.ENTER)
    mode = "[data-property='output.video-mode']"
    panel.wait("document.querySelectorAll(arguments[0] + ' option').length > 3", mode)
    before = panel.value("document.querySelector(arguments[0] + ' select').value", mode)
    panel.tab_to(f"{mode} select")
    panel.press(Keys.ARROW_DOWN)
    panel.wait_for_text(mode, "Enter applies")
    assert panel.value("document.querySelector(arguments[0]).dataset.attempt", mode) is None
    panel.press(Keys.ENTER)
    panel.wait_for_text(f"{mode} .attempt", "Confirmed")
    panel.press_with_control("z")
    panel.wait("document.querySelector(arguments[0] + ' select').value === arguments[1]", mode, before)


def test_the_arrow_keys_walk_through_the_list_and_the_matrix(panel):
    panel.wait("document.querySelectorAll('.device-row').length === 6")
    panel.tab_to(".device-name")
    first = panel.value("document.activeElement.getAttribute('href')")
    panel.press(Keys.ARROW_DOWN)
    assert panel.value("document.activeElement.getAttribute('href')") != first
    panel.go("#/device/converter-1/audio")
    panel.tab_to(".section-map .matrix button")
    panel.press(Keys.ARROW_RIGHT, Keys.ARROW_DOWN)
    assert panel.value("document.activeElement.ariaLabel") == "AudioIn2 to channel 2"


def test_every_control_can_be_reached_and_shows_that_it_has_the_focus(panel):
    panel.press(Keys.TAB)
    seen = set()
    for _ in range(15):
        seen.add(panel.value("document.activeElement.outerHTML.slice(0, 300)"))
        assert panel.value("getComputedStyle(document.activeElement).outlineStyle") != "none"
        panel.press(Keys.TAB)
    assert len(seen) == 15


def test_escape_closes_a_dialog_and_gives_the_focus_back(panel):
    panel.press("?")
    panel.wait_for_text("dialog", "Keyboard")
    panel.press(Keys.ESCAPE)
    panel.wait("!document.querySelector('dialog')")


def test_a_state_is_never_told_by_colour_alone(panel, devices):
    """Every tile and row that is coloured has a shape and a word, too."""
    devices.command(2, "set VIDEO INPUT Signal present false")
    panel.click_button("Wall")
    tile = ".wall-tile[href$='/converter-2']"
    panel.wait("document.querySelector(arguments[0]).dataset.tone === 'alarm'", tile)
    assert "no signal" in panel.text(f"{tile} .tile-condition").lower()
    assert panel.value("document.querySelector(arguments[0] + ' svg').dataset.icon", tile) == "alarm"
    devices.command(2, "set VIDEO INPUT Signal present true")


def test_nothing_moves_for_those_who_do_not_want_it(panel):
    panel.command("Emulation.setEmulatedMedia", features=[{"name": "prefers-reduced-motion", "value": "reduce"}])
    try:
        assert panel.value("[...document.querySelectorAll('*')].filter((e) => parseFloat(getComputedStyle(e).transitionDuration) > 0 || getComputedStyle(e).animationName !== 'none').length") == 0
    finally:
        panel.command("Emulation.setEmulatedMedia", features=[])


def test_the_theme_follows_the_system_until_one_is_chosen(panel):
    panel.command("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": "light"}])
    try:
        panel.wait("document.documentElement.dataset.theme === 'light'")
        panel.choose("select[aria-label=Theme]", "contrast")
        panel.wait("document.documentElement.dataset.theme === 'contrast'")
    finally:
        panel.command("Emulation.setEmulatedMedia", features=[])
