#include "protocol/blocks/video_adjust.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Adjust = VideoAdjustChangeSet;
using VideoAdjustAvailable = VideoAdjustAvailabilityChangeSet;
using Signed32 = Range<std::int32_t>;
using Unsigned32 = Range<std::uint32_t>;

// clang-format off
const GoldenBlock<Adjust> adjust{"VIDEO ADJUST", {
    {"Red: -50",              &Adjust::red,            -50},
    {"Green: 50",             &Adjust::green,          50},
    {"Blue: 1",               &Adjust::blue,           1},
    {"Luma low: 4",           &Adjust::lumaLow,        4U},
    {"Luma high: 1019",       &Adjust::lumaHigh,       1019U},
    {"Chroma low: 5",         &Adjust::chromaLow,      5U},
    {"Chroma high: 1018",     &Adjust::chromaHigh,     1018U},
    {"Aspect fill luma: 64",  &Adjust::aspectFillLuma, 64U},
    {"Aspect fill Cb: 512",   &Adjust::aspectFillCb,   512U},
    {"Aspect fill Cr: 513",   &Adjust::aspectFillCr,   513U},
    {"ResetValues: 1023",     &Adjust::resetValues,    1023U}}};

const GoldenBlock<VideoAdjustAvailable> videoAdjustAvailable{"VIDEO ADJUST AVAILABILITY", {
    {"Red range: -50 50",              &VideoAdjustAvailable::redRange,            Signed32{-50, 50}},
    {"Green range: -51 51",            &VideoAdjustAvailable::greenRange,          Signed32{-51, 51}},
    {"Blue range: -52 52",             &VideoAdjustAvailable::blueRange,           Signed32{-52, 52}},
    {"Luma low range: 4 500",          &VideoAdjustAvailable::lumaLowRange,        Unsigned32{4, 500}},
    {"Luma high range: 520 1019",      &VideoAdjustAvailable::lumaHighRange,       Unsigned32{520, 1019}},
    {"Chroma low range: 5 501",        &VideoAdjustAvailable::chromaLowRange,      Unsigned32{5, 501}},
    {"Chroma high range: 521 1018",    &VideoAdjustAvailable::chromaHighRange,     Unsigned32{521, 1018}},
    {"Aspect fill luma range: 64 940", &VideoAdjustAvailable::aspectFillLumaRange, Unsigned32{64, 940}},
    {"Aspect fill Cb range: 65 960",   &VideoAdjustAvailable::aspectFillCbRange,   Unsigned32{65, 960}},
    {"Aspect fill Cr range: 0 4294967295", &VideoAdjustAvailable::aspectFillCrRange, Unsigned32{0, 4294967295U}}}};
// clang-format on

TEST(VideoAdjustBlock, ReadsAndWritesEveryLine) {
    adjust.ExpectReadsAndWritesEveryLine();
}

TEST(VideoAdjustBlock, WritesItsLinesInOrder) {
    adjust.ExpectWritesItsLinesInOrder();
}

TEST(VideoAdjustBlock, ReportsBadValuesAndUnknownKeys) {
    for (const char* const key : {"Red", "Green", "Blue", "Luma low", "Luma high", "Chroma low", "Chroma high",
                                  "Aspect fill luma", "Aspect fill Cb", "Aspect fill Cr", "ResetValues"}) {
        adjust.ExpectReports({NotAValue(key, "x")});
    }
    adjust.ExpectReports({{"Cyan: 1", "Unknown video adjust line \"Cyan\"\n"}});
}

TEST(VideoAdjustBlock, WritesItsUnsignedValuesInSignedNotation) {
    for (const std::string key : {"Luma low", "Luma high", "Chroma low", "Chroma high", "Aspect fill luma",
                                  "Aspect fill Cb", "Aspect fill Cr", "ResetValues"}) {
        EXPECT_EQ(WrittenBack<Adjust>("VIDEO ADJUST", key + ": 4294967295"), "VIDEO ADJUST:\n" + key + ": -1\n\n");
    }
}

TEST(VideoAdjustBlock, ReadsBackAnUnsignedValueThatItWrote) {
    EXPECT_EQ(FedWith("VIDEO ADJUST", "Luma low: -294967296")->sink.Last<Adjust>().lumaLow.Get(), 4000000000U);
}

TEST(VideoAdjustBlock, ReportsASignedValueThatIsTooLarge) {
    adjust.ExpectReports({NotAValue("Red", "2147483648"), NotAValue("Luma low", "4294967296")});
}

TEST(VideoAdjustAvailabilityBlock, ReadsAndWritesEveryLine) {
    videoAdjustAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(VideoAdjustAvailabilityBlock, WritesItsLinesInOrder) {
    videoAdjustAvailable.ExpectWritesItsLinesInOrder();
}

TEST(VideoAdjustAvailabilityBlock, ReportsBadRangesAndUnknownKeys) {
    for (const char* const key :
         {"Red range", "Green range", "Blue range", "Luma low range", "Luma high range", "Chroma low range",
          "Chroma high range", "Aspect fill luma range", "Aspect fill Cb range", "Aspect fill Cr range"}) {
        videoAdjustAvailable.ExpectReports({NotARange(key, "5"), NotARange(key, "low high")});
    }
    videoAdjustAvailable.ExpectReports({{"Red: 1 2", "Unknown video adjust availability line \"Red\"\n"}});
}

}  // namespace
}  // namespace Morquil
