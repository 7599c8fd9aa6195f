"""The package as a whole: its names, its classes of exceptions, its cost."""

import os
import pathlib
import re
import subprocess
import sys
from typing import Any, List

import pytest

import morquil
from morquil import _com, _contract, errors

PUBLIC = """
AsyncDevice AsyncSession Change ConnectError Device Error Executor InvalidValue LibraryNotFound Lost NoSuchProperty
NotKnown NotOffered Offer Outcome Property Range ReadOnly Refused Session Subscription Timeout Value Word WouldDeadlock
properties restore_library_output set_library_output silence_library
"""
DEVICE = """
address apply aspect_fill audio_mapping calls changes check close closed_caption color_correction connect
device_filenames feature_of get input_configuration is_connected load_settings mode_3d network_config noise_reduction
offered on_change on_end output_configuration preset reference save_settings set silence test_pattern timecode update
values variable_aspect_ratio video_advanced video_clip video_index video_proc_amp
"""


def names(kind: Any) -> List[str]:
    return sorted(name for name in dir(kind) if not name.startswith("_"))


def run(program: str, *arguments: str) -> "subprocess.CompletedProcess[str]":
    return subprocess.run([sys.executable, *arguments, "-c", program], capture_output=True, text=True, timeout=120)


def test_the_public_names_are_these() -> None:
    assert sorted(morquil.__all__) == sorted(PUBLIC.split())
    assert all(getattr(morquil, name) for name in morquil.__all__)
    assert names(morquil.Device) == sorted(DEVICE.split()) == names(morquil.AsyncDevice)
    with pytest.raises(AttributeError):
        morquil.no_such_name


def test_there_are_at_most_twelve_exceptions_with_one_base() -> None:
    classes = [getattr(errors, name) for name in errors.__all__]
    assert len(classes) <= 12
    assert all(issubclass(each, morquil.Error) for each in classes)
    assert issubclass(morquil.Timeout, TimeoutError) and issubclass(morquil.InvalidValue, ValueError)


@pytest.mark.long  # a figure, which a busy machine would spoil
def test_importing_takes_at_most_30_milliseconds() -> None:
    program = "import time; start = time.process_time(); import morquil; print(time.process_time() - start)"
    times = [float(run(program).stdout) for _ in range(9)]
    assert min(times) <= 0.030, times


def test_importing_neither_loads_the_library_nor_asyncio() -> None:
    program = "import sys, morquil; print('asyncio' in sys.modules, morquil._library._library)"
    assert run(program).stdout == "False None\n"


def test_the_contract_has_the_slots_of_the_header() -> None:
    header = "".join(pathlib.Path(path).read_text() for path in os.environ["MORQUIL_HEADERS"].split(os.pathsep))
    tables = re.findall(r"typedef struct (IMorquil\w+)Vtbl \{(.*?)END_INTERFACE", header, flags=re.S)
    own = {each.name: each for each in vars(_contract).values() if isinstance(each, _com.Contract)}
    assert {name for name, _ in tables} == set(own)
    for name, body in tables:
        methods = re.findall(r"\(STDMETHODCALLTYPE \*(\w+)\)\(\s*(.*?)\);", body, flags=re.S)[3:]
        assert len(methods) == len(own[name].methods), name
        for (method, parameters), (snake, signature) in zip(methods, own[name].methods):
            assert method.lower() == snake.replace("_", "")
            kinds = [letter(each) for each in parameters.split(",")[1:]]
            assert "".join(kinds) == signature, method


def letter(parameter: str) -> str:
    kind = parameter.split()[:-1]
    if "*" in parameter or kind == ["BSTR"]:
        return "p"
    return {"UINT64": "q", "double": "d", "unsigned": "u", "UINT": "u"}.get(kind[0], "i")


def test_a_library_that_is_missing_says_what_to_do() -> None:
    program = "import os; os.environ['MORQUIL_LIBRARY'] = '/nowhere.so'; import morquil; morquil.silence_library()"
    result = run(program)
    assert result.returncode == 1 and "LibraryNotFound" in result.stderr and "MORQUIL_LIBRARY" in result.stderr
