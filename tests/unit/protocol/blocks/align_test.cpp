#include "protocol/blocks/align.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Align = AlignChangeSet;
using AlignAvailable = VariableAspectRatioAvailabilityChangeSet;
using Decimals = Range<double>;
using Unsigned32 = Range<std::uint32_t>;

// clang-format off
const GoldenBlock<Align> align{"ALIGN", {
    {"Align size X left: 1.500000",   &Align::sizeXLeft,        1.5},
    {"Align size X right: 1.250000",  &Align::sizeXRight,       1.25},
    {"Align size Y left: 0.500000",   &Align::sizeYLeft,        0.5},
    {"Align size Y right: 0.750000",  &Align::sizeYRight,       0.75},
    {"Align pos X left: -0.125000",   &Align::posXLeft,         -0.125},
    {"Align pos X right: 0.125000",   &Align::posXRight,        0.125},
    {"Align pos Y left: -0.062500",   &Align::posYLeft,         -0.0625},
    {"Align pos Y right: 0.062500",   &Align::posYRight,        0.0625},
    {"Align trim X left: 1",          &Align::trimXLeft,        1U},
    {"Align trim X right: 2",         &Align::trimXRight,       2U},
    {"Align trim Y left: 3",          &Align::trimYLeft,        3U},
    {"Align trim Y right: 4",         &Align::trimYRight,       4U},
    {"Align last input width: 1920",  &Align::lastInputWidth,   1920U},
    {"Align last input height: 1080", &Align::lastInputHeight,  1080U},
    {"Align last output width: 1280", &Align::lastOutputWidth,  1280U},
    {"Align last output height: 720", &Align::lastOutputHeight, 720U}}};

const GoldenBlock<AlignAvailabilityBlock> alignAvailable{"ALIGN AVAILABILITY", {
    {"Align size X range: 0.100000 8.000000", &AlignAvailable::sizeXRange, Decimals{0.1, 8}},
    {"Align size Y range: 0.200000 4.000000", &AlignAvailable::sizeYRange, Decimals{0.2, 4}},
    {"Align pos X range: -1.000000 1.000000", &AlignAvailable::posXRange,  Decimals{-1, 1}},
    {"Align pos Y range: -0.500000 0.500000", &AlignAvailable::posYRange,  Decimals{-0.5, 0.5}},
    {"Align trim X range: 0 960",             &AlignAvailable::trimXRange, Unsigned32{0, 960}},
    {"Align trim Y range: 1 540",             &AlignAvailable::trimYRange, Unsigned32{1, 540}}}};
// clang-format on

const std::string prefix = "Align ";

TEST(AlignBlock, ReadsAndWritesEveryLine) {
    align.ExpectReadsAndWritesEveryLine();
}

TEST(AlignBlock, WritesItsLinesInOrder) {
    align.ExpectWritesItsLinesInOrder();
}

TEST(AlignBlock, ReportsBadValues) {
    for (const char* const rest :
         {"size X left", "size X right", "size Y left", "size Y right", "pos X left", "pos X right", "pos Y left",
          "pos Y right", "trim X left", "trim X right", "trim Y left", "trim Y right", "last input width",
          "last input height", "last output width", "last output height"}) {
        align.ExpectReports({NotAValue(prefix + rest, "x")});
    }
}

TEST(AlignBlock, HasNoZoomOrCrop) {
    align.ExpectReports({{"Align zoom/crop: true", "Unknown align line \"Align zoom/crop\"\n"}});
}

TEST(AlignBlock, ReportsUnknownKeys) {
    align.ExpectReports(
        {{"Variable Aspect Ratio size X left: 1.0", "Unknown align line \"Variable Aspect Ratio size X left\"\n"}});
}

TEST(AlignBlock, WritesItsUnsignedValuesInSignedNotation) {
    EXPECT_EQ(WrittenBack<Align>("ALIGN", "Align trim Y right: 4294967295"), "ALIGN:\nAlign trim Y right: -1\n\n");
}

TEST(AlignBlock, WritesResetValuesLast) {
    Align set;
    set.resetValues.Set(4294967295U);
    set.lastOutputHeight.Set(720);
    EXPECT_EQ(BlockText<Align>(set), "ALIGN:\nAlign last output height: 720\nResetValues: -1\n\n");
}

TEST(AlignBlock, DoesNotReadTheResetValuesThatItWrites) {
    align.ExpectReports({{"ResetValues: 1", "Unknown align line \"ResetValues\"\n"}});
}

TEST(AlignAvailabilityBlock, ReadsEveryLine) {
    alignAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(AlignAvailabilityBlock, ReportsBadRangesAndUnknownKeys) {
    for (const char* const rest :
         {"size X range", "size Y range", "pos X range", "pos Y range", "trim X range", "trim Y range"}) {
        alignAvailable.ExpectReports({NotARange(prefix + rest, "1"), NotARange(prefix + rest, "x 1")});
    }
    alignAvailable.ExpectReports({{"Variable Aspect Ratio pos X range: 1 2",
                                   "Unknown supported align line \"Variable Aspect Ratio pos X range\"\n"}});
}

TEST(AlignAvailabilityBlock, LeavesTheRangesOfTheVariableAspectRatioAlone) {
    const auto recorded = FedWith("ALIGN AVAILABILITY", "Align trim X range: 0 960");
    EXPECT_TRUE(recorded->sink.Last<AlignAvailabilityBlock>().trimXRange.IsPresent());
    recorded->Feed("VARIABLE ASPECT RATIO AVAILABILITY:\n\n");
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<AlignAvailable>()));
}

}  // namespace
}  // namespace Morquil
