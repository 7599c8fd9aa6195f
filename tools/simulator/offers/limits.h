// How a device keeps its settings within the limits of their keys. For each kind of limit:
//   `Allows(limit, device, offers, value)`   whether the setting can have the value,
//   `Nearest(limit, device, offers, value)`  the nearest allowed value; only called for a value that is not allowed.
// `device` has the modes to check against, and `offers` is the block that belongs to the setting's.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "protocol/table/field.h"
#include "protocol/table/key_limits.h"
#include "simulator/blocks/device_blocks.h"
#include "simulator/offers/conversions.h"

namespace Morquil::Simulator {

/// Whether an offer includes a value. An absent offer does not limit anything.
template <class T>
bool IsOffered(const Field<Range<T>>& offer, const T& value, std::int32_t beyond = 0) {
    return !offer.IsPresent() ||
           (offer.Get().minimum <= value && value <= offer.Get().maximum + static_cast<T>(beyond));
}
template <class Vocabulary>
bool IsOffered(const SetField<Vocabulary>& offer, std::int32_t word, std::int32_t /*beyond*/ = 0) {
    return !offer.IsPresent() || offer.Has(static_cast<std::size_t>(word));
}
template <std::size_t count>
bool IsOffered(const Field<std::array<bool, count>>& offer, std::int32_t word, std::int32_t /*beyond*/ = 0) {
    const auto index = static_cast<std::size_t>(word);
    return !offer.IsPresent() || (index < count && offer.Get()[index]);
}
/// A capability: without it a setting can only be off.
inline bool IsOffered(const Field<bool>& offer, bool value, std::int32_t /*beyond*/ = 0) {
    return !offer.IsPresent() || offer.Get() || !value;
}

/// The offered word nearest in the vocabulary; `word` itself if none is offered.
template <std::size_t words, class Offer>
std::int32_t NearestWord(const Offer& offer, std::int32_t word) {
    for (std::int32_t distance = 0; distance < static_cast<std::int32_t>(words); ++distance) {
        for (const std::int32_t candidate : {word - distance, word + distance}) {
            if (candidate >= 0 && IsOffered(offer, candidate)) {
                return candidate;
            }
        }
    }
    return word;
}
template <class Vocabulary>
std::int32_t NearestOffered(const SetField<Vocabulary>& offer, std::int32_t word) {
    return NearestWord<SetField<Vocabulary>::size>(offer, word);
}
template <std::size_t count>
std::int32_t NearestOffered(const Field<std::array<bool, count>>& offer, std::int32_t word) {
    return NearestWord<count>(offer, word);
}
template <class T>
T NearestOffered(const Field<Range<T>>& offer, const T& value) {
    return std::clamp(value, offer.Get().minimum, offer.Get().maximum);
}
inline bool NearestOffered(const Field<bool>& /*offer*/, bool /*value*/) {
    return false;
}

/// The current one of the offers that a device makes for each mode or frame height.
std::size_t SlotNow(OfferSlot slot, const DeviceBlocks& device);

template <class Offer, class Offers, class Value>
bool Allows(const OfferLimit<Offer>& limit, const DeviceBlocks& /*device*/, const Offers& offers, const Value& value) {
    return IsOffered(offers.*limit.offer, value, limit.beyond);
}
template <class Offer, class Offers, class Value>
Value Nearest(const OfferLimit<Offer>& limit, const DeviceBlocks& /*device*/, const Offers& offers,
              const Value& value) {
    return NearestOffered(offers.*limit.offer, value);
}

template <class Offer, class Offers, class Value>
bool Allows(const SlotLimit<Offer>& limit, const DeviceBlocks& device, const Offers& offers, const Value& value) {
    return IsOffered((offers.*limit.offer)[SlotNow(limit.slot, device)], value);
}
template <class Offer, class Offers, class Value>
Value Nearest(const SlotLimit<Offer>& limit, const DeviceBlocks& device, const Offers& offers, const Value& value) {
    return NearestOffered((offers.*limit.offer)[SlotNow(limit.slot, device)], value);
}

template <class T, class Offers>
bool Allows(const FixedLimit<T>& limit, const DeviceBlocks& /*device*/, const Offers& /*offers*/, const T& value) {
    return limit.range.minimum <= value && value <= limit.range.maximum;
}
template <class T, class Offers>
T Nearest(const FixedLimit<T>& limit, const DeviceBlocks& /*device*/, const Offers& /*offers*/, const T& value) {
    return std::clamp(value, limit.range.minimum, limit.range.maximum);
}

template <class Offers>
bool Allows(ConvertibleMode /*limit*/, const DeviceBlocks& device, const Offers& /*offers*/, std::int32_t mode) {
    return IsConvertible(device, static_cast<std::size_t>(mode));
}
template <class Offers>
std::int32_t Nearest(ConvertibleMode /*limit*/, const DeviceBlocks& device, const Offers& /*offers*/,
                     std::int32_t mode) {
    return static_cast<std::int32_t>(NearestConvertible(device, static_cast<std::size_t>(mode)));
}

template <class Offers>
bool Allows(ConvertibleShape /*limit*/, const DeviceBlocks& device, const Offers& /*offers*/, std::int32_t ratio) {
    return device.Of<SupportedConversionsChangeSet>().aspectRatio.Has(InputMode(device), OutputMode(device),
                                                                      static_cast<std::size_t>(ratio));
}
/// The picture is squeezed if no other way of fitting it is possible.
template <class Offers>
std::int32_t Nearest(ConvertibleShape /*limit*/, const DeviceBlocks& /*device*/, const Offers& /*offers*/,
                     std::int32_t /*ratio*/) {
    return morquilAPIAspectRatioAnamorphic;
}

template <class Offers>
std::uint32_t Nearest(TimeOfDay /*limit*/, const DeviceBlocks& device, const Offers& /*offers*/,
                      std::uint32_t timecode) {
    return NearestTimecode(timecode, VideoModes::rows[OutputMode(device)].details.frameRateIndex);
}
template <class Offers>
bool Allows(TimeOfDay limit, const DeviceBlocks& device, const Offers& offers, std::uint32_t timecode) {
    return Nearest(limit, device, offers, timecode) == timecode;
}

template <class First, class Second, class Offers, class Value>
bool Allows(const BothLimits<First, Second>& limits, const DeviceBlocks& device, const Offers& offers,
            const Value& value) {
    return Allows(limits.first, device, offers, value) && Allows(limits.second, device, offers, value);
}
template <class First, class Second, class Offers, class Value>
Value Nearest(const BothLimits<First, Second>& limits, const DeviceBlocks& device, const Offers& offers,
              const Value& value) {
    const Value first =
        Allows(limits.first, device, offers, value) ? value : Nearest(limits.first, device, offers, value);
    return Allows(limits.second, device, offers, first) ? first : Nearest(limits.second, device, offers, first);
}

}  // namespace Morquil::Simulator
