#include "protocol/blocks/variable_aspect_ratio.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Ratio = VariableAspectRatioChangeSet;
using VariableAspectRatioAvailable = VariableAspectRatioAvailabilityChangeSet;
using Decimals = Range<double>;
using Unsigned32 = Range<std::uint32_t>;

// clang-format off
const GoldenBlock<Ratio> ratio{"VARIABLE ASPECT RATIO", {
    {"Variable Aspect Ratio size X left: 1.500000",   &Ratio::sizeXLeft,        1.5},
    {"Variable Aspect Ratio size X right: 1.250000",  &Ratio::sizeXRight,       1.25},
    {"Variable Aspect Ratio size Y left: 0.500000",   &Ratio::sizeYLeft,        0.5},
    {"Variable Aspect Ratio size Y right: 0.750000",  &Ratio::sizeYRight,       0.75},
    {"Variable Aspect Ratio pos X left: -0.125000",   &Ratio::posXLeft,         -0.125},
    {"Variable Aspect Ratio pos X right: 0.125000",   &Ratio::posXRight,        0.125},
    {"Variable Aspect Ratio pos Y left: -0.062500",   &Ratio::posYLeft,         -0.0625},
    {"Variable Aspect Ratio pos Y right: 0.062500",   &Ratio::posYRight,        0.0625},
    {"Variable Aspect Ratio trim X left: 1",          &Ratio::trimXLeft,        1U},
    {"Variable Aspect Ratio trim X right: 2",         &Ratio::trimXRight,       2U},
    {"Variable Aspect Ratio trim Y left: 3",          &Ratio::trimYLeft,        3U},
    {"Variable Aspect Ratio trim Y right: 4",         &Ratio::trimYRight,       4U},
    {"Variable Aspect Ratio zoom/crop: true",         &Ratio::zoomCrop,         true},
    {"Variable Aspect Ratio last input width: 1920",  &Ratio::lastInputWidth,   1920U},
    {"Variable Aspect Ratio last input height: 1080", &Ratio::lastInputHeight,  1080U},
    {"Variable Aspect Ratio last output width: 1280", &Ratio::lastOutputWidth,  1280U},
    {"Variable Aspect Ratio last output height: 720", &Ratio::lastOutputHeight, 720U},
    {"ResetValues: 63",                               &Ratio::resetValues,      63U}}};

const GoldenBlock<VariableAspectRatioAvailable> variableAspectRatioAvailable{"VARIABLE ASPECT RATIO AVAILABILITY", {
    {"Variable Aspect Ratio size X range: 0.100000 8.000000",  &VariableAspectRatioAvailable::sizeXRange, Decimals{0.1, 8}},
    {"Variable Aspect Ratio size Y range: 0.200000 4.000000",  &VariableAspectRatioAvailable::sizeYRange, Decimals{0.2, 4}},
    {"Variable Aspect Ratio pos X range: -1.000000 1.000000",  &VariableAspectRatioAvailable::posXRange,  Decimals{-1, 1}},
    {"Variable Aspect Ratio pos Y range: -0.500000 0.500000",  &VariableAspectRatioAvailable::posYRange,  Decimals{-0.5, 0.5}},
    {"Variable Aspect Ratio trim X range: 0 4294967295",       &VariableAspectRatioAvailable::trimXRange, Unsigned32{0, 4294967295U}},
    {"Variable Aspect Ratio trim Y range: 1 540",              &VariableAspectRatioAvailable::trimYRange, Unsigned32{1, 540}}}};
// clang-format on

const std::string prefix = "Variable Aspect Ratio ";

TEST(VariableAspectRatioBlock, ReadsAndWritesEveryLine) {
    ratio.ExpectReadsAndWritesEveryLine();
}

TEST(VariableAspectRatioBlock, WritesItsLinesInOrder) {
    ratio.ExpectWritesItsLinesInOrder();
}

TEST(VariableAspectRatioBlock, ReportsBadValues) {
    for (const char* const rest :
         {"size X left", "size X right", "size Y left", "size Y right", "pos X left", "pos X right", "pos Y left",
          "pos Y right", "trim X left", "trim X right", "trim Y left", "trim Y right", "zoom/crop", "last input width",
          "last input height", "last output width", "last output height"}) {
        ratio.ExpectReports({NotAValue(prefix + rest, "x")});
    }
    ratio.ExpectReports({NotAValue("ResetValues", "x")});
}

TEST(VariableAspectRatioBlock, ReportsUnknownKeys) {
    ratio.ExpectReports({{"size X left: 1.0", "Unknown variable aspect ratio line \"size X left\"\n"},
                         {"Align size X left: 1.0", "Unknown variable aspect ratio line \"Align size X left\"\n"}});
}

TEST(VariableAspectRatioBlock, WritesADecimalWithSixDecimals) {
    EXPECT_EQ(WrittenBack<Ratio>("VARIABLE ASPECT RATIO", "Variable Aspect Ratio size X left: 1.5"),
              "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size X left: 1.500000\n\n");
}

TEST(VariableAspectRatioBlock, WritesItsUnsignedValuesInSignedNotation) {
    for (const char* const rest : {"trim X left", "trim X right", "trim Y left", "trim Y right", "last input width",
                                   "last input height", "last output width", "last output height"}) {
        EXPECT_EQ(WrittenBack<Ratio>("VARIABLE ASPECT RATIO", prefix + rest + ": 4294967295"),
                  "VARIABLE ASPECT RATIO:\n" + prefix + rest + ": -1\n\n");
    }
    EXPECT_EQ(WrittenBack<Ratio>("VARIABLE ASPECT RATIO", "ResetValues: 4294967295"),
              "VARIABLE ASPECT RATIO:\nResetValues: -1\n\n");
}

TEST(VariableAspectRatioBlock, RefusesNotANumber) {
    ratio.ExpectReports(
        {NotAValue("Variable Aspect Ratio size X left", "nan"), NotAValue("Variable Aspect Ratio size X left", "inf")});
}

TEST(VariableAspectRatioAvailabilityBlock, ReadsAndWritesEveryLine) {
    variableAspectRatioAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(VariableAspectRatioAvailabilityBlock, WritesItsLinesInOrder) {
    variableAspectRatioAvailable.ExpectWritesItsLinesInOrder();
}

TEST(VariableAspectRatioAvailabilityBlock, ReportsBadRangesAndUnknownKeys) {
    for (const char* const rest :
         {"size X range", "size Y range", "pos X range", "pos Y range", "trim X range", "trim Y range"}) {
        variableAspectRatioAvailable.ExpectReports({NotARange(prefix + rest, "1"), NotARange(prefix + rest, "1 x")});
    }
    variableAspectRatioAvailable.ExpectReports(
        {{"Align pos X range: 1 2", "Unknown supported variable aspect ratio line \"Align pos X range\"\n"}});
}

}  // namespace
}  // namespace Morquil
