"""Values: from Python to the interfaces and back."""

import pytest
from hypothesis import given
from hypothesis import strategies as st

import morquil
from morquil import _property, _suggestion, _word
from morquil.enumerations import AudioMeterChannels, Mode3d, OutputOption, TimecodeStartSource, VideoMode

ALL_WORDS = [kind for kind in _word.Word.__subclasses__() if len(kind)]


@given(st.integers(0, 23), st.integers(0, 59), st.integers(0, 59), st.integers(0, 59))
def test_a_timecode_survives_both_ways(hours: int, minutes: int, seconds: int, frames: int) -> None:
    text = f"{hours:02}:{minutes:02}:{seconds:02}:{frames:02}"
    assert _property.format_timecode(_property.parse_timecode(text)) == text


def test_a_timecode_has_two_decimal_digits_in_each_byte() -> None:
    assert _property.parse_timecode("10:59:00;24") == 0x10590024


@given(st.text(max_size=14))
def test_no_other_text_is_a_timecode(text: str) -> None:
    try:
        packed = _property.parse_timecode(text)
    except morquil.InvalidValue:
        return
    assert _property.format_timecode(packed) == text.replace(";", ":").replace(".", ":")


@pytest.mark.parametrize("text", ["24:00:00:00", "00:60:00:00", "1:00:00:00", "00:00:00", "", "٠٠:00:00:00", None])
def test_what_is_no_timecode_is_refused(text: str) -> None:
    with pytest.raises(morquil.InvalidValue):
        _property.parse_timecode(text)


@given(st.integers(0, 0xFFFFFFFF))
def test_an_address_has_its_first_number_in_the_top_byte(packed: int) -> None:
    first, second, third, fourth = map(int, _property.format_address(packed).split("."))
    assert first << 24 | second << 16 | third << 8 | fourth == packed


@given(st.integers())
def test_a_number_that_does_not_fit_is_refused_and_never_cut(value: int) -> None:
    fits = -(2**31) <= value < 2**31
    try:
        assert _word.int32(value) == value and fits
    except morquil.InvalidValue as error:
        assert not fits
        assert error.nearest in ((-(2**31),), (2**31 - 1,))


@given(st.integers())
def test_an_unsigned_number_has_limits_of_its_own(value: int) -> None:
    try:
        assert _word.uint32(value) == value
    except morquil.InvalidValue:
        assert not 0 <= value < 2**32


@pytest.mark.parametrize("value", [True, 1.0, "1", None])
def test_only_a_whole_number_is_one(value: int) -> None:
    with pytest.raises(morquil.InvalidValue):
        _word.int32(value)


@given(st.floats(allow_nan=False, allow_infinity=False))
def test_every_finite_number_is_a_decimal(value: float) -> None:
    assert _word.decimal(value) == value


@pytest.mark.parametrize("value", [float("nan"), float("inf"), True, "1.0", None, 10**400])
def test_what_is_no_finite_number_is_refused(value: float) -> None:
    with pytest.raises(morquil.InvalidValue):
        _word.decimal(value)


@pytest.mark.parametrize("value", [0, 1, "true", None])
def test_only_true_and_false_are_yes_and_no(value: bool) -> None:
    with pytest.raises(morquil.InvalidValue):
        _word.yes_or_no(value)


@pytest.mark.parametrize("kind", ALL_WORDS)
def test_every_word_is_its_member_whatever_its_case(kind: "type[morquil.Word]") -> None:
    for member in kind:
        assert kind.of(member.number) is member
        assert kind.named(str(member).swapcase()) is member
        assert f"{member}" == member == member.value


def test_a_member_of_another_enumeration_is_refused_even_if_its_word_is_the_same() -> None:
    assert str(OutputOption.INPUT) == str(TimecodeStartSource.FROM_INPUT)
    with pytest.raises(morquil.InvalidValue):
        _word.number_of(OutputOption, TimecodeStartSource.FROM_INPUT)


def test_a_number_without_a_word_is_an_error() -> None:
    with pytest.raises(morquil.Error):
        VideoMode.of(99)


def test_words_beyond_the_interfaces_have_members_too() -> None:
    assert Mode3d.ALIGN.number == 3
    assert str(AudioMeterChannels.CHANNELS_1_2) == "MeterChan1&2"


@given(st.text(max_size=8), st.text(max_size=8))
def test_the_edit_distance_is_a_distance(left: str, right: str) -> None:
    distance = _suggestion.edit_distance(left, right)
    assert distance == _suggestion.edit_distance(right, left)
    assert abs(len(left.lower()) - len(right.lower())) <= distance <= max(len(left.lower()), len(right.lower()))


def test_of_equally_similar_words_those_that_begin_alike_come_first() -> None:
    assert _suggestion.nearest_first("1080i51", ["1080i60", "1080p50", "1080i50"], 2) == ["1080i50", "1080i60"]
    assert _suggestion.nearest("xyz", ["alpha"]) == ""


@given(st.integers(), st.integers(), st.integers())
def test_a_range_includes_both_ends(first: int, second: int, value: int) -> None:
    smallest, largest = sorted((first, second))
    bounds = morquil.Range(smallest, largest)
    assert (value in bounds) == (smallest <= value <= largest)
    assert tuple(bounds) == (smallest, largest)
    assert bounds == morquil.Range(smallest, largest) and hash(bounds) == hash(morquil.Range(smallest, largest))
    assert bounds != (smallest, largest)
    assert str(bounds) == f"{smallest} to {largest}" and repr(bounds) == f"Range({smallest}, {largest})"
