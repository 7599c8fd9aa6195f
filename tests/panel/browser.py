"""A browser and what tests do with it."""

import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

patience = 30


class Browser:
    def __init__(self, width=1440, height=900):
        self._profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars",
                         "--no-first-run", "--disable-extensions", "--disable-background-networking",
                         "--enable-precise-memory-info", "--js-flags=--expose-gc", f"--user-data-dir={self._profile.name}"):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        options.binary_location = "/usr/bin/chromium"
        self.driver = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
        self.driver.set_script_timeout(patience + 30)
        self.resize(width, height)

    def quit(self):
        self.driver.quit()
        self._profile.cleanup()

    def resize(self, width, height):
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=width < 600)

    def command(self, name, **arguments):
        return self.driver.execute_cdp_cmd(name, arguments)

    # ---- Pages ----

    def open(self, url, route=""):
        """Opens the panel anew, and waits until it is live."""
        self.driver.get("about:blank")
        self.driver.get(url + route)
        self.wait("document.body.dataset.stream === 'live'")

    def go(self, route):
        self.run("location.hash = arguments[0]", route)

    def prefer(self, url, **values):
        """Stores what a browser remembers between visits."""
        self.driver.get(url + "licences.txt")
        self.run("localStorage.clear(); for (const [name, value] of Object.entries(arguments[0])) "
                 "localStorage.setItem('morquil.' + name, JSON.stringify(value))", values)

    # ---- What is on the page ----

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def value(self, expression, *arguments):
        return self.run(f"return ({expression})", *arguments)

    def wait(self, expression, *arguments, seconds=patience):
        """Waits until the expression is true; returns its value."""
        done = self.driver.execute_async_script(
            f"""const [seconds, ...given] = [].slice.call(arguments, 0, -1), finish = arguments[arguments.length - 1];
            const end = performance.now() + seconds * 1000;
            const look = (...arguments) => {{ try {{ return ({expression}); }} catch (error) {{ return null; }} }};
            (function again() {{
                const value = look(...given);
                if (value || performance.now() > end) finish(value); else setTimeout(again, 20);
            }})();""", seconds, *arguments)
        assert done, f"not within {seconds} s: {expression} {arguments}\n{self.text()[:1500]}"
        return done

    def text(self, selector="body"):
        return self.value("document.querySelector(arguments[0])?.innerText ?? ''", selector)

    def wait_for_text(self, selector, text):
        self.wait("document.querySelector(arguments[0]).innerText.includes(arguments[1])", selector, text)

    def click(self, selector):
        self.wait("document.querySelector(arguments[0])", selector)
        self.run("document.querySelector(arguments[0]).click()", selector)

    def click_button(self, name, within="body"):
        self.wait("[...document.querySelectorAll(arguments[0] + ' :is(button, a, summary)')].find((b) => b.innerText.trim() === arguments[1] && !b.disabled)", within, name)
        self.run("[...document.querySelectorAll(arguments[0] + ' :is(button, a, summary)')].find((b) => b.innerText.trim() === arguments[1] && !b.disabled).click()", within, name)

    def choose(self, selector, value):
        """Chooses from a list, as a pointer does."""
        self.wait("[...(document.querySelector(arguments[0])?.options ?? [])].some((option) => option.value === arguments[1])", selector, value)
        self.run("const select = document.querySelector(arguments[0]); select.dispatchEvent(new PointerEvent('pointerdown'));"
                 "select.value = arguments[1]; select.dispatchEvent(new Event('change'))", selector, value)

    # ---- Keys ----

    def press(self, *keys):
        ActionChains(self.driver).send_keys(*keys).perform()

    def press_with_control(self, key):
        ActionChains(self.driver).key_down(Keys.CONTROL).send_keys(key).key_up(Keys.CONTROL).perform()

    def tab_to(self, selector, most=120):
        """Moves the focus with the Tab key alone."""
        for _ in range(most):
            if self.value("document.activeElement?.matches(arguments[0])", selector):
                return
            self.press(Keys.TAB)
        raise AssertionError(f"the Tab key does not reach {selector}; it is at {self.value('document.activeElement.outerHTML')[:200]}")

    # ---- Complaints ----

    def complaints(self):
        """What the console has said since it was last asked, apart from requests that a test made fail."""
        expected = ("net::ERR_", "status of 4", "status of 5")
        return [entry["message"] for entry in self.driver.get_log("browser")
                if entry["level"] in ("SEVERE", "WARNING") and not any(text in entry["message"] for text in expected)]

    def check_access(self, axe, rules=None):
        """The serious findings of axe-core on the page; of all its rules, or of some."""
        self.run("if (!window.axe) { " + axe + "; window.axe = axe; }")
        found = self.driver.execute_async_script(
            "const finish = arguments[arguments.length - 1], rules = arguments[0];"
            "axe.run(document, {resultTypes: ['violations'], ...(rules ? {runOnly: rules} : {})}).then((result) => finish(result.violations))", rules)
        return [(finding["id"], [node["html"][:160] for node in finding["nodes"][:3]])
                for finding in found if finding["impact"] in ("serious", "critical")]

