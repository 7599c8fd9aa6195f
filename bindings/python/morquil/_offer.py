"""What a device accepts now, as it reports it."""

from typing import TYPE_CHECKING, Any, Callable, Optional, Tuple, Union

from . import enumerations as words
from ._property import Property, Value
from ._range import Range
from ._suggestion import nearest_first
from ._word import Word
from .errors import InvalidValue, NotKnown, NotOffered

if TYPE_CHECKING:
    from ._controls import Controls

#: A range, the words, or None if the device has not reported what it accepts.
Offer = Union["Range[Any]", Tuple[Word, ...], None]

# The API accepts some numbers above the range of presets that devices report.
_PRESETS_ABOVE = {"preset.save": 1, "preset.recall": 2}


def frame_height(mode: words.VideoMode) -> int:
    """The number of picture lines, with which the ranges of lines are requested."""
    if mode in (words.VideoMode.NTSC, words.VideoMode.NTSCP):
        return 486
    if mode is words.VideoMode.PAL:
        return 576
    if mode.startswith("720"):
        return 720
    return 2160 if mode.startswith("2160") else 1080


def _known(row: Property, is_offered: Callable[[Word], bool]) -> Offer:
    """The words for which a condition holds. None at all means that the device has not reported them."""
    assert row.words is not None
    return tuple(word for word in row.words if is_offered(word)) or None


def _conversions(device: "Controls", row: Property) -> Offer:
    """The output modes, or the ratios, to which the device converts its input."""
    supported = device.calls.is_conversion_supported
    modes = [device.get(name) for name in row.offer_follows]
    if len(modes) == 2:
        return _known(row, lambda ratio: supported(modes[0], modes[1], ratio))  # type: ignore[arg-type]
    return _known(row, lambda mode: any(supported(modes[0], mode, ratio) for ratio in words.AspectRatio))  # type: ignore[arg-type]


def _range(device: "Controls", row: Property, ask: Callable[..., "Range[Any]"]) -> Offer:
    followed = [device.get(name) for name in row.offer_follows]
    if row.name in _PRESETS_ABOVE:
        smallest, largest = ask()
        return Range(smallest, largest + _PRESETS_ABOVE[row.name])
    if not followed:
        return ask()
    # Ranges of lines depend on the frame height, those of the reference on the mode itself.
    return ask(followed[0] if row.feature == "reference" else frame_height(followed[0]))  # type: ignore[arg-type]


def _words_within(row: Property, first: Word, last: Word) -> Offer:
    return _known(row, lambda word: first.number <= word.number <= last.number)


def offered(device: "Controls", row: Property) -> Offer:
    """What the device accepts now."""
    if not row.range_getter:
        return None
    try:
        if row.range_getter == "is_conversion_supported":
            return _conversions(device, row)
        ask: Callable[..., Any] = getattr(device.feature_of(row), row.range_getter)
        if not row.range_getter.startswith("is_"):
            return _range(device, row, ask) if row.words is None else _words_within(row, *ask())
        followed = [device.get(name) for name in row.offer_follows]
        return _known(row, lambda word: bool(ask(*followed, word)))
    except NotKnown:
        return None


def exists(device: "Controls", row: Property) -> bool:
    """Whether the device has the property, as far as it has reported that: it may have fewer presets than there are
    names."""
    if row.feature != "preset" or row.item < 0:
        return True
    try:
        return row.item + 1 in device.preset.get_preset_range()
    except NotKnown:
        return True


def check_offered(row: Property, offer: Offer, value: Optional[Value]) -> None:
    """Raises unless the value may be set."""
    if isinstance(offer, Range):
        if value not in offer:
            nearest = offer.min if value < offer.min else offer.max
            raise InvalidValue(f"{row.name}: {value} is outside {offer}", (nearest,))
    elif offer is not None and value not in offer:
        nearest_words = nearest_first(str(value), offer, 3)
        text = f"{row.name}: {value} is not offered now; nearest: {', '.join(nearest_words)}"
        raise NotOffered(text, tuple(nearest_words))
