"""The sources of the panel: texts in one table, one module for the stream, a build that repeats itself."""

import json
import pathlib
import re
import subprocess
import sys

import pytest

panel = pathlib.Path(__file__).resolve().parents[2] / "tools" / "gateway" / "panel"
sources = {path: path.read_text(encoding="utf-8") for path in (panel / "source").rglob("*.js")}
table = (panel / "source" / "text" / "english.js").read_text(encoding="utf-8")


def test_every_text_of_the_table_is_used():
    keys = re.findall(r"^    '?([\w.&+ -]+?)'?: '", table, re.M)
    code = "\n".join(text for path, text in sources.items() if path.name != "english.js")
    prefixes = tuple(re.findall(r"`([\w-]+)\.\$\{", code)) + tuple(re.findall(r"tWord\('([\w-]+)'", code))
    unused = [key for key in keys if f"'{key}'" not in code and key.split(".")[0] not in prefixes and not key.startswith("word.")]
    assert len(keys) > 200 and unused == []


def test_no_component_has_a_text_of_its_own():
    for path, text in sources.items():
        if path.name != "english.js":
            sentences = re.findall(r"""[>'"`]([A-Z][a-z]+ [a-z]+[a-z ]*)['"`<]""", re.sub(r"(?m)^\s*(//|/?\*).*$", "", text))
            assert sentences == [], path


def test_only_one_module_knows_the_protocol_of_the_stream():
    assert [path.name for path, text in sources.items() if "Last-Event-ID" in text or "getReader" in text] == ["event_stream.js"]


def test_nothing_is_read_as_markup():
    for path, text in sources.items():
        assert not re.search(r"innerHTML|outerHTML|insertAdjacentHTML|document\.write|\beval\(|new Function", text), path


def test_the_plot_is_the_only_dependency_at_run_time():
    package = json.loads((panel / "package.json").read_text())
    assert list(package["dependencies"]) == ["uplot"]
    assert "http" not in (panel / "package-lock.json").read_text()


@pytest.mark.parametrize("change", ["", "--without-plot"])
def test_the_build_makes_the_same_files_every_time(build, tmp_path, change):
    plot = build / "tools" / "gateway" / "panel" / "npm"
    made = []
    for name in ("first", "second"):
        (tmp_path / name).mkdir()
        (tmp_path / name / "npm").symlink_to(plot)
        subprocess.run([sys.executable, "-B", panel / "build_panel.py", tmp_path / name, *change.split()], check=True)
        made.append((tmp_path / name / "panel_files.cpp").read_bytes())
    assert made[0] == made[1]
    assert (b"/licences.txt" in made[0]) == (change == "")


def test_a_build_without_a_registry_says_what_to_do(tmp_path):
    """npm looks for its registry where none is."""
    environment = {"PATH": "/usr/bin:/bin", "HOME": str(tmp_path), "npm_config_registry": "http://127.0.0.1:1/",
                   "npm_config_cache": str(tmp_path / "cache"), "npm_config_fetch_retries": "0"}
    done = subprocess.run([sys.executable, "-B", panel / "build_panel.py", tmp_path / "made"], env=environment, capture_output=True, text=True, check=False)
    assert done.returncode != 0
    assert "npm could not install uPlot" in done.stderr and "-DMORQUIL_PANEL_PLOT=OFF" in done.stderr
    assert not (tmp_path / "made" / "panel_files.cpp").exists()
