"""What the tests of the panel share: a browser, simulated devices and a gateway, started once for all tests of a file."""

import os
import pathlib

import pytest
from browser import Browser
from processes import Devices, Gateway

root = pathlib.Path(__file__).resolve().parents[2]


def pytest_addoption(parser):
    parser.addoption("--checks", action="store_true", help='print "ok" or "FAILED" for each test')
    parser.addoption("--build", default=root / "build" / "native", help="the build whose programs are tested")
    parser.addoption("--npm", default="", help="the folder into which npm has installed axe-core")


def pytest_configure(config):
    config.addinivalue_line("markers", "long: takes minutes; runs when MORQUIL_LONG is set")
    config.addinivalue_line("markers", "pictures: makes the documentation's pictures; runs when MORQUIL_PICTURES is set")
    if config.getoption("--checks"):
        config.pluginmanager.register(Checks(config))


class Checks:
    """Prints the result of each test as scripts/count-tests.py counts it."""

    def __init__(self, config):
        self._config = config

    def pytest_runtest_logreport(self, report):
        if report.failed or (report.when == "call" and report.passed):
            result = "FAILED  " if report.failed else "ok      "
            self._config.get_terminal_writer().line(f"\n  {result}{report.nodeid}")


def pytest_runtest_setup(item):
    for mark in ("long", "pictures"):
        if item.get_closest_marker(mark) and not os.environ.get(f"MORQUIL_{mark.upper()}"):
            pytest.skip(mark)


@pytest.fixture(scope="session")
def build(pytestconfig):
    return pathlib.Path(pytestconfig.getoption("--build")).resolve()


@pytest.fixture(scope="session")
def npm(pytestconfig):
    folder = pytestconfig.getoption("--npm")
    assert folder, "--npm names the folder with axe-core; scripts/check-panel.sh sees to that"
    return pathlib.Path(folder)


@pytest.fixture(scope="session")
def shared_browser():
    browser = Browser()
    yield browser
    browser.quit()


@pytest.fixture
def browser(shared_browser):
    """A browser that remembers nothing; a test in which its console complains has failed."""
    shared_browser.resize(1440, 900)
    shared_browser.complaints()
    yield shared_browser
    assert shared_browser.complaints() == []


@pytest.fixture(scope="module")
def devices(build):
    devices = Devices(build, 6, network=91)
    yield devices
    devices.stop()


@pytest.fixture(scope="module")
def gateway(build, devices, tmp_path_factory):
    gateway = Gateway(build, tmp_path_factory.mktemp("gateway"), devices, label=label_of)
    gateway.wait_for_devices(devices.count)
    yield gateway
    gateway.stop()


markup = '<img src=x onerror="document.title=1"> & <b>friends</b>'


def label_of(number):
    return markup if number == 6 else f"Converter {number}"


@pytest.fixture
def panel(browser, gateway):
    """The panel of the gateway, opened anew."""
    browser.prefer(gateway.url)
    browser.open(gateway.url)
    return browser
