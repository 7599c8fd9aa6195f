#include "simulator/offers/offers.h"

#include <gtest/gtest.h>

namespace Morquil::Simulator {
namespace {

TEST(Offers, ConvertOnlyBetweenFrameRatesThatBelongTogether) {
    const ConversionTable table = OfferedConversions().aspectRatio;
    const auto squeezes = [&](int from, int to) {
        return table.Has(static_cast<std::size_t>(from), static_cast<std::size_t>(to), morquilAPIAspectRatioAnamorphic);
    };
    EXPECT_TRUE(squeezes(morquilAPIVideoMode1080i50, morquilAPIVideoMode720p50));
    EXPECT_TRUE(squeezes(morquilAPIVideoMode1080i5994, morquilAPIVideoMode1080p2398));
    EXPECT_TRUE(squeezes(morquilAPIVideoMode1080p24, morquilAPIVideoModeUHDp60));
    EXPECT_FALSE(squeezes(morquilAPIVideoMode1080i50, morquilAPIVideoMode1080i60));
    EXPECT_FALSE(squeezes(morquilAPIVideoMode1080i60, morquilAPIVideoMode1080i5994));
}

TEST(Offers, ChangeTheShapeOnlyBetweenStandardAndHighDefinition) {
    const ConversionTable table = OfferedConversions().aspectRatio;
    EXPECT_TRUE(table.Has(morquilAPIVideoModePAL, morquilAPIVideoMode1080i50, morquilAPIAspectRatioLetterBox));
    EXPECT_FALSE(table.Has(morquilAPIVideoMode720p50, morquilAPIVideoMode1080i50, morquilAPIAspectRatioLetterBox));
}

TEST(Offers, HaveReferenceOffsetsForEveryMode) {
    const GenlockAvailabilityChangeSet offers = OfferedReferenceOffsets();
    for (std::size_t mode = 0; mode < VideoModes::words.Size(); ++mode) {
        EXPECT_TRUE(offers.lineOffsetRange[mode].IsPresent()) << VideoModes::words[mode];
        EXPECT_TRUE(offers.pixelOffsetRange[mode].IsPresent()) << VideoModes::words[mode];
    }
}

TEST(Offers, DropFramesOfFractionalVideoRatesOnly) {
    const auto modes = OfferedDropFrameModes().timecodeDropFrameModes;
    EXPECT_TRUE(modes[morquilAPIVideoMode1080i5994].Has(morquilAPITimecodeDropFrameModeDF));
    EXPECT_FALSE(modes[morquilAPIVideoMode1080p2398].Has(morquilAPITimecodeDropFrameModeDF));
    EXPECT_FALSE(modes[morquilAPIVideoMode1080i50].Has(morquilAPITimecodeDropFrameModeDF));
}

TEST(Offers, Have3DModesOfOneHeightWhoseNamesFitIntoAList) {
    const auto outputs = Offered3DModes().output;
    EXPECT_TRUE(outputs[morquilAPIVideoMode1080i50].Has(morquilAPIVideoMode1080p50));
    EXPECT_FALSE(outputs[morquilAPIVideoMode1080i50].Has(morquilAPIVideoMode720p50));
    EXPECT_FALSE(outputs[morquilAPIVideoMode1080p24].Has(morquilAPIVideoMode2K1080p24));
    EXPECT_FALSE(outputs[morquilAPIVideoModePAL].HasAny());
}

}  // namespace
}  // namespace Morquil::Simulator
