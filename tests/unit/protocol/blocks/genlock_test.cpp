#include "protocol/blocks/genlock.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Genlock = GenlockChangeSet;
using GenlockAvailable = GenlockAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;
using PerReference = std::array<bool, 2>;

// clang-format off
const GoldenBlock<Genlock> genlock{"GENLOCK", {
    {"Type: External",          &Genlock::type,         morquilAPIVideoReferenceTypeExternal},
    {"Gen reference: TriLevel", &Genlock::genReference, morquilAPIGenReferenceTriLevel},
    {"Line offset: -5",         &Genlock::lineOffset,   -5},
    {"Pixel offset: 12",        &Genlock::pixelOffset,  12},
    {"Signal locked: true",     &Genlock::signalLocked, true}}};

const GoldenBlock<GenlockAvailable> genlockAvailable{"GENLOCK AVAILABILITY", {
    {"Types: Input External",               &GenlockAvailable::types,                  Members(0, 2)},
    {"Gen references: Blackburst TriLevel", &GenlockAvailable::genReferences,          Members(0, 1)},
    {"Gen references available: false true", &GenlockAvailable::genReferencesAvailable, PerReference{false, true}},
    {"Video mode: 525i59.94 NTSC\n"
     "Line offset range: -262 262\n"
     "Pixel offset range: -429 429",        At(&GenlockAvailable::lineOffsetRange, 0),  Limits32{-262, 262}},
    {"Video mode: 2160p50\n"
     "Line offset range: -1125 1125\n"
     "Pixel offset range: -2640 2640",      At(&GenlockAvailable::pixelOffsetRange, 33), Limits32{-2640, 2640}}}};
// clang-format on

GenlockAvailable ReceivedGenlock(const std::string& lines) {
    const auto recorded = FedWith("GENLOCK AVAILABILITY", lines);
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events()) << lines;
    return recorded->sink.Last<GenlockAvailable>();
}

TEST(GenlockBlock, ReadsAndWritesEveryLine) {
    genlock.ExpectReadsAndWritesEveryLine();
}

TEST(GenlockBlock, WritesItsLinesInOrder) {
    genlock.ExpectWritesItsLinesInOrder();
}

TEST(GenlockBlock, ReportsBadValuesAndUnknownKeys) {
    genlock.ExpectReports({
        // clang-format off
        {"Type: Satellite",      "Failed to parse Type string \"Satellite\"\n"},
        {"Gen reference: Quad",  "Failed to parse Gen reference string \"Quad\"\n"},
        NotAValue("Line offset", "x"),
        NotAValue("Pixel offset", "-"),
        NotAValue("Signal locked", "1"),
        {"Types: Input",         "Unknown genlock line \"Types\"\n"},
        // clang-format on
    });
}

TEST(GenlockAvailabilityBlock, ReadsAndWritesEveryLine) {
    genlockAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(GenlockAvailabilityBlock, WritesItsLinesInOrder) {
    genlockAvailable.ExpectWritesItsLinesInOrder();
}

TEST(GenlockAvailabilityBlock, ReportsBadValuesAndUnknownKeys) {
    genlockAvailable.ExpectReports(
        {{"Video mode: 8k", "Received invalid Genlock Video Mode Video mode string \"8k\"\n"},
         NotARange("Line offset range", "5"),
         NotARange("Pixel offset range", "x"),
         {"Type: Input", "Unknown genlock availability line \"Type\"\n"}});
}

TEST(GenlockAvailabilityBlock, WritesNothingForAModeWithOnlyOneOfItsRanges) {
    const std::string empty = "GENLOCK AVAILABILITY:\n\n";
    EXPECT_EQ(BlockText<GenlockAvailable>(ReceivedGenlock("Video mode: 720p50\nLine offset range: -5 5")), empty);
    EXPECT_EQ(BlockText<GenlockAvailable>(ReceivedGenlock("Video mode: 720p50\nPixel offset range: -5 5")), empty);
}

TEST(GenlockAvailabilityBlock, KeepsTheOneRangeThatAModeHas) {
    const GenlockAvailable received = ReceivedGenlock("Video mode: 720p50\nLine offset range: -5 5");
    EXPECT_EQ(received.lineOffsetRange[morquilAPIVideoMode720p50].Get(), (Limits32{-5, 5}));
    EXPECT_FALSE(received.pixelOffsetRange[morquilAPIVideoMode720p50].IsPresent());
}

TEST(GenlockAvailabilityBlock, DropsRangesBeforeAnyModeSilently) {
    EXPECT_TRUE(IsEmpty(ReceivedGenlock("Line offset range: -5 5\nPixel offset range: -5 5")));
}

TEST(GenlockAvailabilityBlock, ReportsABadRangeBeforeAnyMode) {
    EXPECT_EQ(FedWith("GENLOCK AVAILABILITY", "Line offset range: none")->sink.Errors(),
              RecordingSink::Events{"Failed to parse \"Line offset range\" range string \"none\"\n"});
}

TEST(GenlockAvailabilityBlock, KeepsItsModeWhenAnUnknownOneArrives) {
    const auto recorded = FedWith("GENLOCK AVAILABILITY", "Video mode: 720p50\nVideo mode: 8k\nLine offset range: 1 2");
    EXPECT_EQ(recorded->sink.Errors().size(), 1U);
    EXPECT_EQ(recorded->sink.Last<GenlockAvailable>().lineOffsetRange[morquilAPIVideoMode720p50].Get(),
              (Limits32{1, 2}));
}

TEST(GenlockAvailabilityBlock, ForgetsItsModeAtTheEndOfABlock) {
    const auto recorded = FedWith("GENLOCK AVAILABILITY", "Video mode: 720p50");
    recorded->Feed("GENLOCK AVAILABILITY:\nLine offset range: -5 5\n\n");
    EXPECT_TRUE(IsEmpty(recorded->sink.Last<GenlockAvailable>()));
}

TEST(GenlockAvailabilityBlock, StoresTheFirstTwoOfThreeReferences) {
    EXPECT_EQ(ReceivedGenlock("Gen references available: true false true").genReferencesAvailable.Get(),
              (PerReference{true, false}));
}

TEST(GenlockAvailabilityBlock, ReadsReferencesAsFarAsTheyAreTruthValues) {
    EXPECT_TRUE(
        IsEmpty(FedWith("GENLOCK AVAILABILITY", "Gen references available: maybe")->sink.Last<GenlockAvailable>()));
    const auto recorded = FedWith("GENLOCK AVAILABILITY", "Gen references available: true maybe");
    EXPECT_EQ(recorded->sink.Last<GenlockAvailable>().genReferencesAvailable.Get(), (PerReference{true, false}));
    EXPECT_EQ(recorded->sink.Errors(),
              std::vector<std::string>{"Failed to parse \"Gen references available\" value string \"maybe\"\n"});
}

TEST(GenlockAvailabilityBlock, ReadsOneReferenceAsTheFirst) {
    EXPECT_EQ(ReceivedGenlock("Gen references available: true").genReferencesAvailable.Get(),
              (PerReference{true, false}));
}

}  // namespace
}  // namespace Morquil
