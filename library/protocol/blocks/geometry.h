#pragma once

#include "protocol/table/block.h"
#include "protocol/text/joined_text.h"

namespace Morquil {

/// The ranges of the geometry, one per quantity, not per side.
struct GeometryRangeFields {
    Field<Range<double>> sizeXRange;
    Field<Range<double>> sizeYRange;
    Field<Range<double>> posXRange;
    Field<Range<double>> posYRange;
    Field<Range<std::uint32_t>> trimXRange;
    Field<Range<std::uint32_t>> trimYRange;
};

/// Picture geometry as two blocks carry it, each under its own prefix. Every quantity has a left and a right value.
struct GeometryFields {
    Field<double> sizeXLeft;
    Field<double> sizeXRight;
    Field<double> sizeYLeft;
    Field<double> sizeYRight;
    Field<double> posXLeft;
    Field<double> posXRight;
    Field<double> posYLeft;
    Field<double> posYRight;
    Field<std::uint32_t> trimXLeft;
    Field<std::uint32_t> trimXRight;
    Field<std::uint32_t> trimYLeft;
    Field<std::uint32_t> trimYRight;
    Field<std::uint32_t> lastInputWidth;
    Field<std::uint32_t> lastInputHeight;
    Field<std::uint32_t> lastOutputWidth;
    Field<std::uint32_t> lastOutputHeight;
    Field<std::uint32_t> resetValues;
};

// clang-format off
template <FixedText prefix>
constexpr auto GeometrySideRows() {
    return PlainTuple{
        Key{joinedText<prefix, "size X left">,  &GeometryFields::sizeXLeft,  Decimal{}}.LimitedBy(&GeometryRangeFields::sizeXRange),
        Key{joinedText<prefix, "size X right">, &GeometryFields::sizeXRight, Decimal{}}.LimitedBy(&GeometryRangeFields::sizeXRange),
        Key{joinedText<prefix, "size Y left">,  &GeometryFields::sizeYLeft,  Decimal{}}.LimitedBy(&GeometryRangeFields::sizeYRange),
        Key{joinedText<prefix, "size Y right">, &GeometryFields::sizeYRight, Decimal{}}.LimitedBy(&GeometryRangeFields::sizeYRange),
        Key{joinedText<prefix, "pos X left">,   &GeometryFields::posXLeft,   Decimal{}}.LimitedBy(&GeometryRangeFields::posXRange),
        Key{joinedText<prefix, "pos X right">,  &GeometryFields::posXRight,  Decimal{}}.LimitedBy(&GeometryRangeFields::posXRange),
        Key{joinedText<prefix, "pos Y left">,   &GeometryFields::posYLeft,   Decimal{}}.LimitedBy(&GeometryRangeFields::posYRange),
        Key{joinedText<prefix, "pos Y right">,  &GeometryFields::posYRight,  Decimal{}}.LimitedBy(&GeometryRangeFields::posYRange),
        Key{joinedText<prefix, "trim X left">,  &GeometryFields::trimXLeft,  UnsignedAsSigned{}}.LimitedBy(&GeometryRangeFields::trimXRange),
        Key{joinedText<prefix, "trim X right">, &GeometryFields::trimXRight, UnsignedAsSigned{}}.LimitedBy(&GeometryRangeFields::trimXRange),
        Key{joinedText<prefix, "trim Y left">,  &GeometryFields::trimYLeft,  UnsignedAsSigned{}}.LimitedBy(&GeometryRangeFields::trimYRange),
        Key{joinedText<prefix, "trim Y right">, &GeometryFields::trimYRight, UnsignedAsSigned{}}.LimitedBy(&GeometryRangeFields::trimYRange)};
}

template <FixedText prefix>
constexpr auto GeometryLastSizeRows() {
    return PlainTuple{
        Key{joinedText<prefix, "last input width">,   &GeometryFields::lastInputWidth,   UnsignedAsSigned{}}.Observed(),
        Key{joinedText<prefix, "last input height">,  &GeometryFields::lastInputHeight,  UnsignedAsSigned{}}.Observed(),
        Key{joinedText<prefix, "last output width">,  &GeometryFields::lastOutputWidth,  UnsignedAsSigned{}}.Observed(),
        Key{joinedText<prefix, "last output height">, &GeometryFields::lastOutputHeight, UnsignedAsSigned{}}.Observed()};
}
// clang-format on

// clang-format off
template <FixedText prefix>
constexpr auto GeometryRangeRows() {
    return PlainTuple{
        Key{joinedText<prefix, "size X range">, &GeometryRangeFields::sizeXRange, DecimalRange{}},
        Key{joinedText<prefix, "size Y range">, &GeometryRangeFields::sizeYRange, DecimalRange{}},
        Key{joinedText<prefix, "pos X range">,  &GeometryRangeFields::posXRange,  DecimalRange{}},
        Key{joinedText<prefix, "pos Y range">,  &GeometryRangeFields::posYRange,  DecimalRange{}},
        Key{joinedText<prefix, "trim X range">, &GeometryRangeFields::trimXRange, UnsignedRange{}},
        Key{joinedText<prefix, "trim Y range">, &GeometryRangeFields::trimYRange, UnsignedRange{}}};
}
// clang-format on

}  // namespace Morquil
