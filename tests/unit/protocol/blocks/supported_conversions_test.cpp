#include "protocol/blocks/supported_conversions.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Conversions = SupportedConversionsChangeSet;

const std::string header = "SUPPORTED CONVERSIONS";

std::string WrittenBackConversions(const std::string& lines) {
    return WrittenBack<Conversions>(header, lines);
}

void ExpectReport(const std::string& lines, const std::string& report) {
    EXPECT_EQ(FedWith(header, lines)->sink.Errors(), RecordingSink::Events{report}) << lines;
}

TEST(SupportedConversionsBlock, SetsAFlagForEveryRatioOfThePair) {
    const auto recorded = FedWith(header, "Input: 720p50\nOutput: 1080i50\nAspect ratio: Anamorphic Smart");
    const ConversionTable& table = recorded->sink.Last<Conversions>().aspectRatio;
    for (int ratio = 0; ratio < 5; ++ratio) {
        const bool expected = ratio == morquilAPIAspectRatioAnamorphic || ratio == morquilAPIAspectRatioSmart;
        EXPECT_EQ(table.Has(morquilAPIVideoMode720p50, morquilAPIVideoMode1080i50, static_cast<std::size_t>(ratio)),
                  expected)
            << ratio;
    }
    EXPECT_FALSE(table.Has(morquilAPIVideoMode1080i50, morquilAPIVideoMode720p50, morquilAPIAspectRatioSmart));
}

TEST(SupportedConversionsBlock, WritesOneInputLineForAllItsOutputs) {
    EXPECT_EQ(WrittenBackConversions("Input: 720p50\n"
                                     "Output: 1080i50\n"
                                     "Aspect ratio: LetterBox Anamorphic\n"
                                     "Output: 720p60\n"
                                     "Aspect ratio: Smart"),
              "SUPPORTED CONVERSIONS:\n"
              "Input: 720p50\n"
              "Output: 720p60\n"
              "Aspect ratio: Smart\n"
              "Output: 1080i50\n"
              "Aspect ratio: Anamorphic LetterBox\n"
              "\n");
}

TEST(SupportedConversionsBlock, WritesInputsInTheOrderOfTheVocabulary) {
    EXPECT_EQ(WrittenBackConversions("Input: 2160p50\nOutput: 525i59.94 NTSC\nAspect ratio: CentreCut\n"
                                     "Input: 525i59.94 NTSC\nOutput: 2160p50\nAspect ratio: 14x9"),
              "SUPPORTED CONVERSIONS:\n"
              "Input: 525i59.94 NTSC\nOutput: 2160p50\nAspect ratio: 14x9\n"
              "Input: 2160p50\nOutput: 525i59.94 NTSC\nAspect ratio: CentreCut\n"
              "\n");
}

TEST(SupportedConversionsBlock, WritesItsHeaderWhenItIsEmpty) {
    EXPECT_EQ(BlockText<Conversions>(Conversions()), "SUPPORTED CONVERSIONS:\n\n");
}

TEST(SupportedConversionsBlock, MatchesItsKeysWhateverTheirCase) {
    EXPECT_EQ(WrittenBackConversions("INPUT: 720p50\noutput: 720p50\naSPECT rATIO: Smart"),
              "SUPPORTED CONVERSIONS:\nInput: 720p50\nOutput: 720p50\nAspect ratio: Smart\n\n");
}

TEST(SupportedConversionsBlock, IgnoresRatiosBeforeAnyInput) {
    EXPECT_EQ(WrittenBackConversions("Output: 720p50\nAspect ratio: Smart"), "SUPPORTED CONVERSIONS:\n\n");
}

TEST(SupportedConversionsBlock, IgnoresRatiosBeforeAnyOutput) {
    EXPECT_EQ(WrittenBackConversions("Input: 720p50\nAspect ratio: Smart"), "SUPPORTED CONVERSIONS:\n\n");
}

TEST(SupportedConversionsBlock, KeepsTheOutputWhenANewInputIsSelected) {
    EXPECT_EQ(WrittenBackConversions("Output: 720p60\nInput: 720p50\nAspect ratio: Smart\n"
                                     "Input: 1080i50\nAspect ratio: 14x9"),
              "SUPPORTED CONVERSIONS:\n"
              "Input: 720p50\nOutput: 720p60\nAspect ratio: Smart\n"
              "Input: 1080i50\nOutput: 720p60\nAspect ratio: 14x9\n"
              "\n");
}

TEST(SupportedConversionsBlock, NeverClearsAFlagWithinABlock) {
    EXPECT_EQ(WrittenBackConversions("Input: 720p50\nOutput: 720p50\nAspect ratio: Smart\nAspect ratio: 14x9"),
              "SUPPORTED CONVERSIONS:\nInput: 720p50\nOutput: 720p50\nAspect ratio: 14x9 Smart\n\n");
}

TEST(SupportedConversionsBlock, StartsEmptyWithEveryBlock) {
    const auto recorded = FedWith(header, "Input: 720p50\nOutput: 720p50\nAspect ratio: Smart");
    recorded->Feed("SUPPORTED CONVERSIONS:\n\n");
    EXPECT_FALSE(recorded->sink.Last<Conversions>().aspectRatio.IsPresent());
}

TEST(SupportedConversionsBlock, ForgetsItsSelectionsAtTheEndOfABlock) {
    const auto recorded = FedWith(header, "Input: 720p50\nOutput: 720p50");
    recorded->Feed("SUPPORTED CONVERSIONS:\nAspect ratio: Smart\n\n");
    EXPECT_FALSE(recorded->sink.Last<Conversions>().aspectRatio.IsPresent());
}

TEST(SupportedConversionsBlock, DropsUnknownRatiosSilently) {
    EXPECT_EQ(WrittenBackConversions("Input: 720p50\nOutput: 720p50\nAspect ratio: 16x9 Smart"),
              "SUPPORTED CONVERSIONS:\nInput: 720p50\nOutput: 720p50\nAspect ratio: Smart\n\n");
}

TEST(SupportedConversionsBlock, HasNotReceivedATableWithoutAFlag) {
    const auto recorded = FedWith(header, "Input: 720p50\nOutput: 720p50\nAspect ratio: 16x9");
    EXPECT_FALSE(recorded->sink.Last<Conversions>().aspectRatio.IsPresent());
}

TEST(SupportedConversionsBlock, ReportsUnknownModesAndKeys) {
    ExpectReport("Input: 720p", "Received invalid Supported Conversions Input mode string \"720p\"\n");
    ExpectReport("Output: 1080i", "Received invalid Supported Conversions Output mode string \"1080i\"\n");
    ExpectReport("Aspect ratios: Smart", "Unknown supported conversions line \"Aspect ratios\"\n");
}

TEST(SupportedConversionsBlock, SelectsNothingWithAnUnknownMode) {
    for (const std::string unknown : {"Input: 720p", "Output: 720p"}) {
        const auto recorded = FedWith(header, "Input: 720p50\nOutput: 720p50\n" + unknown + "\nAspect ratio: Smart");
        EXPECT_FALSE(recorded->sink.Last<Conversions>().aspectRatio.IsPresent()) << unknown;
    }
}

}  // namespace
}  // namespace Morquil
