"""A large fleet: on the page within a second, and calm while all of it changes.

They run with --long: beside other programs, such times say nothing of the panel."""

import threading
import time

import pytest
from browser import Browser
from processes import Devices, Gateway

count = 200


@pytest.fixture(scope="module")
def large_fleet(build, tmp_path_factory):
    devices = Devices(build, count, network=92)
    gateway = Gateway(build, tmp_path_factory.mktemp("large"), devices)
    gateway.wait_for_devices(count)
    yield devices, gateway
    gateway.stop()
    devices.stop()


@pytest.mark.long
def test_200_devices_are_painted_within_a_second_from_a_cold_cache(large_fleet):
    _, gateway = large_fleet
    taken = []
    for _ in range(4):
        browser = Browser()
        try:
            browser.command("Page.addScriptToEvaluateOnNewDocument", source="""
                new MutationObserver((_, observer) => {
                    if (document.querySelectorAll('.device-row').length === %d) {
                        observer.disconnect();
                        requestAnimationFrame(() => setTimeout(() => (window.painted = performance.now())));
                    }
                }).observe(document, {subtree: true, childList: true})""" % count)
            browser.driver.get(gateway.url)
            taken.append(browser.wait("window.painted"))
        finally:
            browser.quit()
        if taken[-1] <= 1000:
            break
    print("painted after ms:", taken)
    assert min(taken) <= 1000


def change_everything(devices, seconds):
    """Ten times a second every device changes, as if people turned knobs."""
    end = time.monotonic() + seconds
    value = 0
    while time.monotonic() < end:
        value = (value + 1) % 50
        devices.command("*", f"set VIDEO PROC AMP Gain {value}")
        threading.Event().wait(0.1)


def watch(browser, devices, seconds):
    """The longest task in ms while everything changes, and how often the page was drawn."""
    browser.run("""window.longest = 0; window.frames = 0;
        window.observer = new PerformanceObserver((list) => list.getEntries().forEach((entry) => (longest = Math.max(longest, entry.duration))));
        observer.observe({type: 'longtask'});
        (function count() { frames++; if (frames >= 0) requestAnimationFrame(count); })()""")
    change_everything(devices, seconds)
    result = browser.value("[longest, frames]")
    browser.run("observer.disconnect(); frames = -Infinity")
    return result


@pytest.mark.long
@pytest.mark.parametrize("mode", ["List", "Wall"])
def test_a_minute_of_changes_leaves_the_memory_flat(large_fleet, browser, mode):
    devices, gateway = large_fleet
    browser.prefer(gateway.url)
    browser.open(gateway.url)
    browser.click_button(mode)
    change_everything(devices, 5)
    used = "(gc(), gc(), performance.memory.usedJSHeapSize)"
    before = browser.value(used)
    longest, _ = watch(browser, devices, 60)
    after = browser.value(used)
    print("longest task in ms:", longest, "heap in bytes:", before, after)
    assert longest <= 100
    assert after < before * 1.1 + 500_000
