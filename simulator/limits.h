// How a device holds its settings to what it offers: the rows of which limit_tables.h is made. A row offers
//   `setting`                           the member that it limits,
//   `Allows(device, offers, value)`     whether the setting can have the value,
//   `Nearest(device, offers, value)`    the value that comes closest; only asked about one that is not allowed.
// `device` has the modes for which this is asked, and `offers` the block that belongs to the setting's.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "protocol/field.h"
#include "simulator/device_blocks.h"

namespace Morquil::Simulator {

/// What an offer says about one value. An offer that the device does not make limits nothing.
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
/// An ability: without it a setting can only be off.
inline bool IsOffered(const Field<bool>& offer, bool value, std::int32_t /*beyond*/ = 0) {
    return !offer.IsPresent() || offer.Get() || !value;
}

/// The offered word whose place in the vocabulary is the nearest; `word` itself when none is offered.
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

/// Which of the offers that a device makes per mode or per frame height holds now.
using OfferSlot = std::size_t (*)(const DeviceBlocks& device);

/// A setting and the offer that limits it. All elements of an array have the same limits.
template <class Setting, class Offer>
struct Limit {
    Setting setting;
    Offer offer;
    std::int32_t beyond;  // how many numbers are taken above the range

    constexpr Limit(Setting limited, Offer limiting, std::int32_t numbersAbove = 0)
        : setting(limited), offer(limiting), beyond(numbersAbove) {}

    template <class Offers, class Value>
    bool Allows(const DeviceBlocks& /*device*/, const Offers& offers, const Value& value) const {
        return IsOffered(offers.*offer, value, beyond);
    }
    template <class Offers, class Value>
    Value Nearest(const DeviceBlocks& /*device*/, const Offers& offers, const Value& value) const {
        return NearestOffered(offers.*offer, value);
    }
};

/// A setting and the offers that limit it, one per mode or frame height.
template <class Setting, class Offers>
struct LimitPerSlot {
    Setting setting;
    Offers offer;
    OfferSlot slot;

    constexpr LimitPerSlot(Setting limited, Offers limiting, OfferSlot presentSlot)
        : setting(limited), offer(limiting), slot(presentSlot) {}

    template <class OfferBlock, class Value>
    bool Allows(const DeviceBlocks& device, const OfferBlock& offers, const Value& value) const {
        return IsOffered((offers.*offer)[slot(device)], value);
    }
    template <class OfferBlock, class Value>
    Value Nearest(const DeviceBlocks& device, const OfferBlock& offers, const Value& value) const {
        return NearestOffered((offers.*offer)[slot(device)], value);
    }
};

/// A setting for which no block offers anything, and the limits that it has all the same.
template <class Setting, class T>
struct FixedLimit {
    Setting setting;
    Range<T> range;

    constexpr FixedLimit(Setting limited, T minimum, T maximum) : setting(limited), range{minimum, maximum} {}

    template <class Offers>
    bool Allows(const DeviceBlocks& /*device*/, const Offers& /*offers*/, const T& value) const {
        return range.minimum <= value && value <= range.maximum;
    }
    template <class Offers>
    T Nearest(const DeviceBlocks& /*device*/, const Offers& /*offers*/, const T& value) const {
        return std::clamp(value, range.minimum, range.maximum);
    }
};

}  // namespace Morquil::Simulator
