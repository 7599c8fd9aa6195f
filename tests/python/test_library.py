"""Where the library is looked for."""

import pathlib
import sys
from typing import Any

import pytest

import morquil
from morquil import _library


def test_the_environment_decides_alone(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("MORQUIL_LIBRARY", "/some/library")
    assert list(_library.candidates()) == ["/some/library"]


def test_a_library_in_the_package_comes_before_an_installed_one(monkeypatch: pytest.MonkeyPatch,
                                                                tmp_path: pathlib.Path) -> None:
    monkeypatch.delenv("MORQUIL_LIBRARY")
    name = "MorquilAPI.dll" if sys.platform == "win32" else "libMorquilAPI.so.1"
    assert list(_library.candidates())[-1] == name
    (tmp_path / name).touch()
    monkeypatch.setattr(_library, "__file__", str(tmp_path / "_library.py"))
    assert list(_library.candidates())[0] == str(tmp_path / name)


def test_every_place_that_was_tried_is_named(monkeypatch: pytest.MonkeyPatch, tmp_path: pathlib.Path) -> None:
    broken = tmp_path / "broken.so"
    broken.write_text("no library")
    monkeypatch.setenv("MORQUIL_LIBRARY", str(broken))
    with pytest.raises(morquil.LibraryNotFound, match="broken.so"):
        _library._load()


def test_another_library_is_not_taken_for_it(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("MORQUIL_LIBRARY", "libc.so.6")
    with pytest.raises(morquil.LibraryNotFound, match="GetMorquilDiscoveryInstance_0000"):
        _library._load()


def test_running_out_of_memory_is_an_error(monkeypatch: pytest.MonkeyPatch) -> None:
    def nothing(*_: Any) -> None:
        return None

    monkeypatch.setattr(_library.library(), "allocate", nothing)
    with pytest.raises(MemoryError), _library.text_in("text"):
        raise AssertionError("there is no text")
