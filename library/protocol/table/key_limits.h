// What limits the values of a key. `offer` is a member of the block that offers them, the change set's `Offers`.
#pragma once

#include <cstdint>

#include "protocol/table/field.h"

namespace Morquil {

/// Every value that can be written is accepted.
struct NoLimit {};

/// An offer as a limit: a range, a list of words or an ability. An offer that the device does not make limits nothing.
template <class Offer>
struct OfferLimit {
    Offer offer{};
    std::int32_t beyond = 0;  // how many numbers above the range are accepted as well
};

/// What selects an offer that is made for each mode or frame height.
enum class OfferSlot { InputHeight, OutputHeight, OutputMode };

/// An array of offers, of which one applies at a time.
template <class Offers>
struct SlotLimit {
    OfferSlot slot{};
    Offers offer{};
};

/// Limits that no block offers.
template <class T>
struct FixedLimit {
    Range<T> range{};

    constexpr FixedLimit() = default;
    constexpr FixedLimit(T minimum, T maximum) : range{minimum, maximum} {}
};

/// An output mode to which the input mode can be converted.
struct ConvertibleMode {};
/// An aspect ratio in which the input mode can be converted to the output mode.
struct ConvertibleShape {};
/// A timecode within a day at the frame rate of the output mode.
struct TimeOfDay {};

/// Two limits at once.
template <class First, class Second>
struct BothLimits {
    First first;
    Second second;
};

template <class Added>
constexpr Added Join(NoLimit /*none*/, Added added) {
    return added;
}
template <class First, class Added>
constexpr BothLimits<First, Added> Join(First first, Added added) {
    return {first, added};
}
template <class First, class Added>
using JointLimit = decltype(Join(First(), Added()));

}  // namespace Morquil
