#pragma once

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// What the test pattern generator offers.
struct TestPatternAvailabilityChangeSet {
    SetField<TestPatterns> availableTestPatterns;
    SetField<TestTones> availableTestTones;
    Field<bool> motion;
    Field<Range<std::int32_t>> motionRange;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "TEST PATTERN AVAILABILITY", .unknownKeyText = "Unknown test pattern availability line \"%s\"\n"},
        Key{"Available test patterns", &TestPatternAvailabilityChangeSet::availableTestPatterns, WordList<TestPatterns>{}},
        Key{"Available test tones",    &TestPatternAvailabilityChangeSet::availableTestTones,    WordList<TestTones>{}},
        Key{"Motion",                  &TestPatternAvailabilityChangeSet::motion,                YesNo{}},
        Key{"Motion range",            &TestPatternAvailabilityChangeSet::motionRange,           SignedRange{}}};
    // clang-format on
};

/// The test pattern generator. Its words carry their own presence marks.
struct TestPatternChangeSet {
    using Offers = TestPatternAvailabilityChangeSet;

    Field<std::int32_t> output;
    Field<std::int32_t> noSignal;
    Field<std::int32_t> testTone;
    Field<bool> motion;
    Field<std::int32_t> horizontalRate;
    Field<std::int32_t> verticalRate;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "TEST PATTERN", .unknownKeyText = "Unknown test pattern line \"%s\"\n", .bracketed = false},
        Key{"Output",          &TestPatternChangeSet::output,         WordOf<TestPatterns>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::availableTestPatterns),
        Key{"No signal",       &TestPatternChangeSet::noSignal,       WordOf<TestPatterns>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::availableTestPatterns),
        Key{"Test tone",       &TestPatternChangeSet::testTone,       WordOf<TestTones>{"Failed to parse %s string \"%s\"\n"}}.LimitedBy(&Offers::availableTestTones),
        Key{"Motion",          &TestPatternChangeSet::motion,         YesNo{}}.LimitedBy(&Offers::motion),
        Key{"Horizontal Rate", &TestPatternChangeSet::horizontalRate, Signed{}}.LimitedBy(&Offers::motionRange),
        Key{"Vertical Rate",   &TestPatternChangeSet::verticalRate,   Signed{}}.LimitedBy(&Offers::motionRange)};
    // clang-format on
};

using TestPatternMessage = TextProtocolMessage<TestPatternChangeSet>;
using TestPatternAvailabilityMessage = TextProtocolMessage<TestPatternAvailabilityChangeSet>;

}  // namespace Morquil
