"""What the gateway serves, and what the browser may do with it."""

import gzip
import re

expected = {"default-src 'none'", "script-src 'self'", "style-src 'self'", "connect-src 'self'", "img-src 'self'",
            "base-uri 'none'", "form-action 'none'", "frame-ancestors 'none'"}


def page(gateway):
    return gzip.decompress(gateway.head_of("/")[2]).decode()


def files(gateway):
    return re.findall(r'(?:href|src)="(/[^"]+)"', page(gateway))


def test_the_policy_is_strict(gateway):
    _, headers, _ = gateway.head_of("/")
    assert set(headers["content-security-policy"].split("; ")) == expected


def test_the_page_has_no_script_or_style_of_its_own(gateway):
    text = page(gateway)
    assert re.findall(r"<script(?![^>]*\bsrc=)[^>]*>", text) == []
    assert "<style" not in text and " style=" not in text and " on" not in re.sub(r"<noscript>.*</noscript>", "", text)


def test_the_browser_runs_no_script_that_somebody_put_into_the_page(panel):
    panel.run("const script = document.createElement('script'); script.textContent = 'window.broken = true'; document.body.append(script)")
    assert panel.value("window.broken ?? null") is None
    assert any("Content Security Policy" in text for text in panel.complaints())


def test_files_with_a_checksum_in_their_name_are_kept_and_the_page_is_not(gateway):
    names = files(gateway)
    assert len(names) > 5
    for name in names:
        assert re.search(r"\.[0-9a-f]{12}\.(js|css|svg)$", name), name
        status, headers, _ = gateway.head_of(name)
        assert status == 200 and "immutable" in headers["cache-control"] and headers["content-encoding"] == "gzip"
    assert gateway.head_of("/")[1]["cache-control"] == "no-cache"


def all_files(gateway):
    """What the page names, and what that imports: name to compressed bytes."""
    found = {}
    waiting = files(gateway)
    while waiting:
        name = waiting.pop()
        if name not in found:
            found[name] = gateway.head_of(name)[2]
            waiting += ["/" + each for each in re.findall(r"['\"]\./([\w.]+\.js)['\"]", gzip.decompress(found[name]).decode())]
    return found


def test_scripts_and_styles_are_at_most_100_kilobytes_compressed(gateway):
    found = all_files(gateway)
    assert any(name.startswith("/uplot.") for name in found)
    assert sum(len(content) for name, content in found.items() if name.endswith((".js", ".css"))) <= 100_000


def test_the_licence_of_the_plot_comes_with_it(gateway):
    status, _, body = gateway.head_of("/licences.txt")
    assert status == 200 and b"Permission is hereby granted" in gzip.decompress(body)


def test_a_visit_loads_nothing_from_elsewhere_and_breaks_no_rule(panel, gateway):
    for view in ("#/device/converter-1/picture", "#/history?device=converter-1", "#/salvos/new", "#/people", "#/fleet"):
        panel.go(view)
        panel.wait("document.querySelector('main').firstElementChild?.childElementCount > 0")
    names = panel.value("performance.getEntriesByType('resource').map((entry) => entry.name)")
    assert names and all(name.startswith(gateway.url) for name in names)
    assert panel.complaints() == []
