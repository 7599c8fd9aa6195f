#include "protocol/blocks/test_pattern.h"

#include <gtest/gtest.h>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Pattern = TestPatternChangeSet;
using TestPatternAvailable = TestPatternAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;

// clang-format off
const GoldenBlock<Pattern> pattern{"TEST PATTERN", {
    {"Output: Multiburst",   &Pattern::output,         morquilAPITestPatternMultiburst},
    {"No signal: SMPTEBars", &Pattern::noSignal,       morquilAPITestPatternSmpteBars},
    {"Test tone: Tone6KHz",  &Pattern::testTone,       morquilAPITestTone6KHz},
    {"Motion: true",         &Pattern::motion,         true},
    {"Horizontal Rate: -8",  &Pattern::horizontalRate, -8},
    {"Vertical Rate: 7",     &Pattern::verticalRate,   7}}};

const GoldenBlock<TestPatternAvailable> testPatternAvailable{"TEST PATTERN AVAILABILITY", {
    {"Available test patterns: None Bars Multiburst", &TestPatternAvailable::availableTestPatterns, Members(0, 2, 5)},
    {"Available test tones: None Tone6KHz",           &TestPatternAvailable::availableTestTones,    Members(0, 4)},
    {"Motion: true",                                  &TestPatternAvailable::motion,                true},
    {"Motion range: -8 8",                            &TestPatternAvailable::motionRange,           Limits32{-8, 8}}}};
// clang-format on

TEST(TestPatternBlock, ReadsAndWritesEveryLine) {
    pattern.ExpectReadsAndWritesEveryLine();
}

TEST(TestPatternBlock, WritesItsLinesInOrder) {
    pattern.ExpectWritesItsLinesInOrder();
}

TEST(TestPatternBlock, ReportsBadValuesAndUnknownKeys) {
    pattern.ExpectReports({
        // clang-format off
        {"Output: Stripes",   "Failed to parse Output string \"Stripes\"\n"},
        {"No signal: Blue",   "Failed to parse No signal string \"Blue\"\n"},
        {"Test tone: 750Hz",  "Failed to parse Test tone string \"750Hz\"\n"},
        NotAValue("Motion", "1"),
        NotAValue("Horizontal Rate", "fast"),
        NotAValue("Vertical Rate", "slow"),
        {"Pattern: Bars",     "Unknown test pattern line \"Pattern\"\n"},
        // clang-format on
    });
}

TEST(TestPatternBlock, WritesTheFirstWordOfAVocabulary) {
    EXPECT_EQ(WrittenBack<Pattern>("TEST PATTERN", "Output: None\nNo signal: None\nTest tone: None"),
              "TEST PATTERN:\nOutput: None\nNo signal: None\nTest tone: None\n\n");
}

TEST(TestPatternAvailabilityBlock, ReadsAndWritesEveryLine) {
    testPatternAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(TestPatternAvailabilityBlock, WritesItsLinesInOrder) {
    testPatternAvailable.ExpectWritesItsLinesInOrder();
}

TEST(TestPatternAvailabilityBlock, ReportsBadValuesAndUnknownKeys) {
    testPatternAvailable.ExpectReports({NotAValue("Motion", "1"),
                                        NotARange("Motion range", "8"),
                                        {"Output: Bars", "Unknown test pattern availability line \"Output\"\n"}});
}

}  // namespace
}  // namespace Morquil
