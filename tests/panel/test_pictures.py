"""The pictures of the documentation. MORQUIL_PICTURES=1 scripts/check-panel.sh makes them anew."""

import io
import json
import os
import pathlib
import threading
import urllib.request

import pytest
from PIL import Image
from processes import Devices, Gateway

folder = pathlib.Path(__file__).resolve().parents[2] / "docs" / "pictures"
sizes = {"phone": (360, 740), "desk": (1440, 900), "4k": (3840, 2160)}
colours = 224
labels = ["Ingest 1", "Ingest 2", "Studio A main", "Studio A reserve", "Studio B main", "Studio B reserve", "Playout 1", "Playout 2",
          "OB van 1", "OB van 2", "Archive", "Weather"]
rooms = ["Apparatus room", "Apparatus room", "Studio A", "Studio A", "Studio B", "Studio B", "Playout", "Playout",
         "Outside broadcast", "Outside broadcast", "Apparatus room", "Studio A"]

views = {
    "fleet": "#/fleet", "wall": "#/fleet", "device": "#/device/converter-3/output", "picture": "#/device/converter-3/picture",
    "audio": "#/device/converter-3/audio", "compare": "#/device/converter-3/compare/converter-4",
    "history": "#/history?device=converter-3", "audit": "#/history/audit", "salvos": "#/salvos/evening-news", "people": "#/people",
}
# Those that the documentation keeps; MORQUIL_PICTURES=all makes every view in every theme at every size.
kept = [("fleet", "dark", "desk"), ("fleet", "light", "desk"), ("fleet", "contrast", "desk"), ("fleet", "light", "phone"),
        ("wall", "dark", "desk"), ("device", "dark", "desk"), ("device", "dark", "phone"), ("picture", "light", "desk"),
        ("audio", "dark", "desk"), ("compare", "dark", "desk"), ("history", "dark", "desk"), ("audit", "light", "desk"),
        ("salvos", "dark", "desk"), ("people", "dark", "desk"), ("wall", "contrast", "4k")]
everything = [(view, theme, size) for view in views for theme in ("dark", "light", "contrast") for size in sizes]


@pytest.fixture(scope="module")
def fleet(build, tmp_path_factory):
    devices = Devices(build, len(labels), network=94)
    gateway = Gateway(build, tmp_path_factory.mktemp("pictures"), devices, label=lambda number: labels[number - 1], room=lambda number: rooms[number - 1])
    gateway.wait_for_devices(len(labels))
    fill(gateway, devices)
    yield gateway
    gateway.stop()
    devices.stop()


def send(gateway, method, path, body):
    request = urllib.request.Request(f"{gateway.url}api/v1/{path}", method=method, data=json.dumps(body).encode(), headers={"Content-Type": "application/json"})
    urllib.request.urlopen(request).close()


def pause():
    """So that the changes are not all at one place of the time axis."""
    threading.Event().wait(2)


def fill(gateway, devices):
    """A morning's work: knobs turned, a signal lost, a device switched off."""
    for value in (4, 9, 15, 11, 6, 2, -3, 1, 8):
        devices.command(3, f"set VIDEO PROC AMP Gain {value}")
        pause()
        send(gateway, "PUT", "devices/converter-3/properties/proc-amp.gain?wait=confirmed", {"value": value + 5})
        pause()
    send(gateway, "PUT", "devices/converter-3/properties/output.video-mode?wait=confirmed", {"value": "1080p50"})
    pause()
    send(gateway, "PUT", "devices/converter-8/properties/output.video-mode?wait=confirmed", {"value": "720p50"})
    send(gateway, "PUT", "devices/converter-3/properties/audio.map.2?wait=confirmed", {"value": "AudioIn1"})
    devices.command(5, "set VIDEO INPUT Signal present false")
    devices.command(10, "set GENLOCK Signal locked false")
    devices.command(7, "set MORQUIL DEVICE Panel lock true")
    devices.command(9, "offline")
    steps = [{"device": f"converter-{number}", "property": name, "value": value} for number in (1, 2, 3)
             for name, value in (("output.video-mode", "1080p50"), ("proc-amp.gain", 3), ("test-pattern.no-signal", "SMPTEBars"))]
    send(gateway, "POST", "salvos", {"name": "evening-news", "label": "Evening news", "steps": steps, "onFailure": "roll-back"})


@pytest.mark.pictures
def test_the_pictures_are_made(browser, fleet):
    folder.mkdir(exist_ok=True)
    wanted = everything if os.environ["MORQUIL_PICTURES"] == "all" else kept
    for view, theme, size in wanted:
        browser.prefer(fleet.url, theme=theme, fleet="wall" if view == "wall" else "list")
        browser.resize(*sizes[size])
        browser.open(fleet.url, views[view])
        browser.wait("document.querySelector('main').firstElementChild?.childElementCount > 0")
        if view == "history":
            for _ in range(4):
                browser.click_button("Zoom in")
        browser.wait("performance.now() - Math.max(...performance.getEntriesByType('resource').map((entry) => entry.responseEnd)) > 400")
        save(browser.driver.get_screenshot_as_png(), folder / f"{view}-{theme}-{size}.png")


def save(png, path):
    """Few colours: a tenth of the size, and the same to look at."""
    image = Image.open(io.BytesIO(png)).convert("RGB")
    image.quantize(colours, dither=Image.Dither.NONE).save(path, optimize=True)


def test_the_pictures_of_the_documentation_are_there_and_small():
    for view, theme, size in kept:
        assert (folder / f"{view}-{theme}-{size}.png").stat().st_size < 250_000
    assert sum(path.stat().st_size for path in folder.iterdir()) < 2_000_000
