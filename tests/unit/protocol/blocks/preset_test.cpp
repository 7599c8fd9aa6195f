#include "protocol/blocks/preset.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Preset = PresetChangeSet;
using PresetAvailable = PresetAvailabilityChangeSet;

// clang-format off
const GoldenBlock<Preset> preset{"PRESET", {
    {"Save: 3",             &Preset::save,              3},
    {"Recall: -1",          &Preset::recall,            -1},
    {"PresetName0: News",   At(&Preset::presetName, 0), "News"},
    {"PresetName1: Sports", At(&Preset::presetName, 1), "Sports"},
    {"PresetName2: A b c",  At(&Preset::presetName, 2), "A b c"},
    {"PresetName3: 3",      At(&Preset::presetName, 3), "3"},
    {"PresetName4: x:y",    At(&Preset::presetName, 4), "x:y"},
    {"PresetName5: Last",   At(&Preset::presetName, 5), "Last"}}};

const GoldenBlock<PresetAvailable> presetAvailable{"PRESET AVAILABILITY", {
    {"Preset range: 1 6",   &PresetAvailable::presetRange,    Range<std::int32_t>{1, 6}}}};
// clang-format on

TEST(PresetBlock, ReadsAndWritesEveryLine) {
    preset.ExpectReadsAndWritesEveryLine();
}

TEST(PresetBlock, WritesItsLinesInOrder) {
    preset.ExpectWritesItsLinesInOrder();
}

TEST(PresetBlock, ReportsBadValuesAndUnknownKeys) {
    preset.ExpectReports(
        {NotAValue("Save", "all"), NotAValue("Recall", "all"), {"Delete: 1", "Unknown preset command \"Delete\"\n"}});
}

TEST(PresetBlock, HasNoNameBeyondTheSixth) {
    preset.ExpectReports({{"PresetName6: x", "Unknown preset command \"PresetName6\"\n"}});
}

TEST(PresetBlock, AcceptsOnlyPlainDecimalIndexes) {
    for (const std::string key : {"PresetName", "PresetName00", "PresetName05", "PresetName-1", "PresetName 1",
                                  "PresetName1 ", "PresetName4294967296", "1"}) {
        preset.ExpectReports({{key + ": x", "Unknown preset command \"" + key + "\"\n"}});
    }
}

TEST(PresetBlock, KeepsTheFirst49CharactersOfAName) {
    EXPECT_EQ(WrittenBack<Preset>("PRESET", "PresetName3: " + std::string(60, 'n')),
              "PRESET:\nPresetName3: " + std::string(49, 'n') + "\n\n");
}

TEST(PresetAvailabilityBlock, ReadsAndWritesEveryLine) {
    presetAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(PresetAvailabilityBlock, ReportsBadRangesAndUnknownKeys) {
    presetAvailable.ExpectReports(
        {NotARange("Preset range", "6"), {"Presets: 1 6", "Unknown preset availability command \"Presets\"\n"}});
}

}  // namespace
}  // namespace Morquil
