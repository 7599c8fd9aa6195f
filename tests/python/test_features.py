"""The features, method by method, without a library: every result has its meaning."""

import inspect
from typing import Any, Dict, Iterator, List, Tuple, Type

import pytest

import morquil
from morquil import features
from morquil._com import E_FAIL, E_INVALIDARG, E_OUTOFMEMORY
from morquil._feature import Feature, Link
from morquil.enumerations import ConnectFailure

KINDS: List[Type[Feature]] = [kind for kind in vars(features).values()
                              if inspect.isclass(kind) and issubclass(kind, Feature) and kind is not Feature]
VALUES: Dict[Any, Any] = {int: 1, float: 1.5, bool: True, str: "text"}


class Answer:
    """Stands in for the functions of an object."""

    def __init__(self, result: int) -> None:
        self.result = result
        self.arguments: List[Tuple[Any, ...]] = []

    def __call__(self, *arguments: Any) -> int:
        self.arguments.append(arguments)
        return self.result


def made(kind: Type[Feature], result: int) -> "Tuple[Any, Answer, Link]":
    answer = Answer(result)
    link = Link("somewhere")
    feature = kind.__new__(kind)
    feature._calls = (answer,) * (3 + len(kind.contract.methods))
    feature._this = 1
    feature._link = link
    return feature, answer, link


def methods(kind: Type[Feature]) -> Iterator[Tuple[str, List[Any]]]:
    for name, method in inspect.getmembers(kind, inspect.isfunction):
        if not name.startswith("_") and name in kind.contract.slots:
            parameters = list(inspect.signature(method).parameters.values())[1:]
            yield name, [VALUES.get(each.annotation) or next(iter(each.annotation)) for each in parameters]


ALL = [(kind, name, arguments) for kind in KINDS for name, arguments in methods(kind)]
IDS = [f"{kind.__name__}.{name}" for kind, name, _ in ALL]


@pytest.mark.parametrize("kind, name, arguments", ALL, ids=IDS)
def test_every_result_has_its_meaning(kind: Type[Feature], name: str, arguments: List[Any]) -> None:
    feature, answer, _ = made(kind, 0)
    value = getattr(feature, name)(*arguments)
    assert (value is None) == (name.startswith(("set_", "reset_", "save_", "recall_", "start_")))
    assert len(answer.arguments) == 1

    failing, answer, link = made(kind, E_FAIL)
    is_getter = value is not None
    if name == "is_gen_ref_available":
        assert getattr(failing, name)(*arguments) is False
    else:
        with pytest.raises(morquil.NotKnown if is_getter else morquil.Error):
            getattr(failing, name)(*arguments)
        link.ended.set(ConnectFailure.NO_RESPONSE)
        with pytest.raises(morquil.Lost if is_getter else morquil.Error):
            getattr(failing, name)(*arguments)

    for result, meaning in ((E_INVALIDARG, morquil.Error), (E_OUTOFMEMORY, MemoryError), (-5, morquil.Error)):
        with pytest.raises(meaning):
            getattr(made(kind, result)[0], name)(*arguments)


def test_all_interfaces_of_a_device_are_here() -> None:
    assert len(KINDS) == 20
    tested = {(kind, name) for kind, name, _ in ALL}
    others = {name for kind in KINDS for name, _ in kind.contract.methods if (kind, name) not in tested}
    assert others == {"add_connection_observer", "remove_connection_observer", "add_property_observer",
                      "remove_property_observer", "save_settings_file", "load_settings_file"}
