// How the rows of the table read, set and ask a device: by methods that are chosen when the table is compiled.
#pragma once

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

#include "morquil/device.hpp"
#include "morquil/property_info.hpp"

namespace morquil::detail {

/// An interface of the device.
template <class Raw>
Pointer<Raw> Ask(const Device& device) {
    void* found = nullptr;
    Check("QueryInterface", device.Raw()->QueryInterface(Identifier<Raw>::value, &found), CallKind::Set);
    return Pointer<Raw>::Adopt(static_cast<Raw*>(found));
}

/// Whether a getter has written its output. There is none for a value that is not known, nor for a preset that the
/// device does not have. Unlike an exception, which the layer's own getters throw, this costs nothing.
inline bool IsAnswered(const char* call, HRESULT result) {
    if (result == E_FAIL || result == E_INVALIDARG) {
        return false;
    }
    Check(call, result, CallKind::Get);
    return true;
}

/// What a setter gets; `Value` is how it is stored.
template <class Value, class Raw>
auto Argument(const Stored& value) {
    return Pass<Raw>(std::get<Value>(value));
}

// ---- Getters -----------------------------------------------------------------------------------------------------

template <class Value, class Owner, class Raw>
std::optional<Stored> ReadWith(const Device& device, HRESULT (STDMETHODCALLTYPE Owner::*get)(Raw*), int /*item*/) {
    Out<Raw> out;
    const Pointer<Owner> feature = Ask<Owner>(device);
    if (!IsAnswered("Property::Get", (feature.Get()->*get)(Receive(out)))) {
        return std::nullopt;
    }
    return Stored(Take<Value>(out));
}
template <class Value, class Owner, class Index, class Raw>
std::optional<Stored> ReadWith(const Device& device, HRESULT (STDMETHODCALLTYPE Owner::*get)(Index, Raw*), int item) {
    Out<Raw> out;
    const Pointer<Owner> feature = Ask<Owner>(device);
    if (!IsAnswered("Property::Get", (feature.Get()->*get)(static_cast<Index>(item), Receive(out)))) {
        return std::nullopt;
    }
    return Stored(Take<Value>(out));
}
template <class Value, auto get>
std::optional<Stored> Read(const Device& device, int item) {
    return ReadWith<Value>(device, get, item);
}

// ---- Setters -----------------------------------------------------------------------------------------------------

template <class Value, class Owner>
HRESULT WriteWith(Owner* feature, HRESULT (STDMETHODCALLTYPE Owner::*set)(), int /*item*/, const Stored& /*value*/) {
    return (feature->*set)();
}
template <class Value, class Owner, class Raw>
HRESULT WriteWith(Owner* feature, HRESULT (STDMETHODCALLTYPE Owner::*set)(Raw), int /*item*/, const Stored& value) {
    return (feature->*set)(Argument<Value, Raw>(value));
}
template <class Value, class Owner, class Index, class Raw>
HRESULT WriteWith(Owner* feature, HRESULT (STDMETHODCALLTYPE Owner::*set)(Index, Raw), int item, const Stored& value) {
    return (feature->*set)(static_cast<Index>(item), Argument<Value, Raw>(value));
}

template <class Method>
struct OwnerOf;
template <class Owner, class... Parameters>
struct OwnerOf<HRESULT (STDMETHODCALLTYPE Owner::*)(Parameters...)> {
    using Type = Owner;
};

template <class Value, auto set>
void Write(const Device& device, int item, const Stored& value) {
    const auto feature = Ask<typename OwnerOf<std::remove_const_t<decltype(set)>>::Type>(device);
    Check("Property::Set", WriteWith<Value>(feature.Get(), set, item, value), CallKind::Set);
}

// ---- What the device accepts now ---------------------------------------------------------------------------------

/// The words for which a condition holds. None at all means that the device has not reported them.
template <class Enumeration, class Condition>
Offer WordsWith(Condition isOffered) {
    std::vector<std::int64_t> offered;
    for (const Word<Enumeration>& word : Words<Enumeration>::all) {
        if (isOffered(word.value)) {
            offered.push_back(static_cast<std::int64_t>(word.value));
        }
    }
    return offered.empty() ? Offer() : Offer(std::move(offered));
}

/// The limits that a method of two outputs answers.
template <class Value, class Owner, class Raw>
std::optional<Range<Value>> LimitsOf(const Device& device, HRESULT (STDMETHODCALLTYPE Owner::*range)(Raw*, Raw*)) {
    Out<Raw> min;
    Out<Raw> max;
    const Pointer<Owner> feature = Ask<Owner>(device);
    if (!IsAnswered("Property::GetRange", (feature.Get()->*range)(Receive(min), Receive(max)))) {
        return std::nullopt;
    }
    return Range<Value>{Take<Value>(min), Take<Value>(max)};
}
/// The same for a method that wants to know what they are for.
template <class Value, class Owner, class Input, class Raw, class Given>
std::optional<Range<Value>> LimitsOf(const Device& device, HRESULT (STDMETHODCALLTYPE Owner::*range)(Input, Raw*, Raw*),
                                     Given given) {
    Out<Raw> min;
    Out<Raw> max;
    const Pointer<Owner> feature = Ask<Owner>(device);
    const HRESULT result = (feature.Get()->*range)(static_cast<Input>(given), Receive(min), Receive(max));
    if (!IsAnswered("Property::GetRange", result)) {
        return std::nullopt;
    }
    return Range<Value>{Take<Value>(min), Take<Value>(max)};
}

template <class Value>
Offer OfferOf(const std::optional<Range<Value>>& range) {
    return range ? Offer(Range<Stored>{range->min, range->max}) : Offer();
}

template <class Value, auto range>
Offer RangeOf(const Device& device) {
    return OfferOf(LimitsOf<Value>(device, range));
}

template <class Enumeration, auto range>
Offer WordsBetween(const Device& device) {
    const std::optional<Range<Enumeration>> limits = LimitsOf<Enumeration>(device, range);
    return limits ? WordsWith<Enumeration>([&](Enumeration word) { return limits->min <= word && word <= limits->max; })
                  : Offer();
}

/// What an availability query answers. Its result means nothing to one of them: the flag counts.
template <class Owner, class Raw, class Given>
bool IsOffered(Owner* feature, HRESULT (STDMETHODCALLTYPE Owner::*query)(Raw, LONG*), Given word) {
    LONG isAvailable = 0;
    IsAnswered("Property::GetOffered", (feature->*query)(static_cast<Raw>(word), &isAvailable));
    return isAvailable != 0;
}

template <class Enumeration, auto query>
Offer OfferedWords(const Device& device) {
    const auto feature = Ask<typename OwnerOf<std::remove_const_t<decltype(query)>>::Type>(device);
    return WordsWith<Enumeration>([&](Enumeration word) { return IsOffered(feature.Get(), query, word); });
}

// Offers that depend on other values; each is named in the table.

inline std::optional<VideoMode> InputMode(const Device& device) {
    const std::optional<Stored> mode = Read<std::int64_t, &IMorquilInputConfiguration::GetVideoMode>(device, -1);
    return mode ? std::optional(static_cast<VideoMode>(std::get<std::int64_t>(*mode))) : std::nullopt;
}
inline std::optional<VideoMode> OutputMode(const Device& device) {
    const std::optional<Stored> mode = Read<std::int64_t, &IMorquilOutputConfiguration::GetVideoMode>(device, -1);
    return mode ? std::optional(static_cast<VideoMode>(std::get<std::int64_t>(*mode))) : std::nullopt;
}

/// The number of picture lines in a frame, used to request the ranges that depend on it.
constexpr unsigned FrameHeight(VideoMode mode) {
    if (mode == VideoMode::NTSC || mode == VideoMode::NTSCp) {
        return 486;
    }
    if (mode == VideoMode::PAL) {
        return 576;
    }
    if (mode >= VideoMode::Mode720p5994 && mode <= VideoMode::Mode720p60) {
        return 720;
    }
    return mode >= VideoMode::UHDp2398 ? 2160 : 1080;
}

template <class Value, auto range, std::optional<VideoMode> (*modeOf)(const Device&)>
Offer RangeOfHeight(const Device& device) {
    const std::optional<VideoMode> mode = modeOf(device);
    return mode ? OfferOf(LimitsOf<Value>(device, range, FrameHeight(*mode))) : Offer();
}

template <class Value, auto range>
Offer RangeOfOutputMode(const Device& device) {
    const std::optional<VideoMode> mode = OutputMode(device);
    return mode ? OfferOf(LimitsOf<Value>(device, range, *mode)) : Offer();
}

inline Offer DropFrameModes(const Device& device) {
    const std::optional<VideoMode> output = OutputMode(device);
    const features::Timecode timecode = device.Timecode();
    const auto isAvailable = [&](TimecodeDropFrameMode mode) {
        return timecode.IsDropFrameModeAvailable(*output, mode);
    };
    return output ? WordsWith<TimecodeDropFrameMode>(isAvailable) : Offer();
}

/// The modes to which the device converts its input, whatever the ratio.
inline Offer OutputModes(const Device& device) {
    const std::optional<VideoMode> input = InputMode(device);
    const auto isConverted = [&](VideoMode output) {
        return std::any_of(
            std::begin(Words<AspectRatio>::all), std::end(Words<AspectRatio>::all),
            [&](const auto& ratio) { return device.IsConversionSupported(*input, output, ratio.value); });
    };
    return input ? WordsWith<VideoMode>(isConverted) : Offer();
}

/// The feature's own answer is always yes.
inline Offer OutputRatios(const Device& device) {
    const std::optional<VideoMode> input = InputMode(device);
    const std::optional<VideoMode> output = OutputMode(device);
    const auto isSupported = [&](AspectRatio ratio) { return device.IsConversionSupported(*input, *output, ratio); };
    return input && output ? WordsWith<AspectRatio>(isSupported) : Offer();
}

/// The API accepts some numbers above the range of presets that devices report.
template <std::int64_t above>
Offer PresetNumbers(const Device& device) {
    const auto range = LimitsOf<std::int64_t>(device, &IMorquilPreset::GetPresetRange);
    return range ? Offer(Range<Stored>{range->min, range->max + above}) : Offer();
}

/// A device may have fewer presets than there are names.
inline bool HasPreset(const Device& device, int item) {
    const auto range = LimitsOf<std::int64_t>(device, &IMorquilPreset::GetPresetRange);
    return !range || (range->min <= item + 1 && item + 1 <= range->max);
}

// ---- Words -------------------------------------------------------------------------------------------------------

template <class Enumeration>
inline constexpr auto wordNumbers = [] {
    std::array<Word<std::int64_t>, std::size(Words<Enumeration>::all)> words{};
    for (std::size_t at = 0; at < words.size(); ++at) {
        words[at] = {Words<Enumeration>::all[at].text, static_cast<std::int64_t>(Words<Enumeration>::all[at].value)};
    }
    return words;
}();

template <class Enumeration>
constexpr WordList WordsOf() {
    return {wordNumbers<Enumeration>.data(), wordNumbers<Enumeration>.size()};
}

}  // namespace morquil::detail
