#include "protocol/blocks/video_advanced.h"

#include <gtest/gtest.h>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Advanced = VideoAdvancedChangeSet;
using VideoAdvancedAvailable = VideoAdvancedAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;

// clang-format off
const GoldenBlock<Advanced> advanced{"VIDEO ADVANCED", {
    {"Clean cadence: true",        &Advanced::cleanCadence,   true},
    {"Scenecut detect: false",     &Advanced::scenecutDetect, false},
    {"AntiAlias: true",            &Advanced::antiAlias,      true},
    {"RP177: false",               &Advanced::rp177,          false},
    {"Source type: Film",          &Advanced::sourceType,     morquilAPISourceTypeFilm},
    {"FRC aperture: 3",            &Advanced::frcAperture,    morquilAPIFrcAperture3},
    {"Processing: Lowest Latency", &Advanced::processing,     morquilAPIProcModeSimple}}};

const GoldenBlock<VideoAdvancedAvailable> videoAdvancedAvailable{"VIDEO ADVANCED AVAILABILITY", {
    {"Available source types: Auto Film", &VideoAdvancedAvailable::availableSourceTypes, Members(0, 2)},
    {"FRC aperture range: 0 3",           &VideoAdvancedAvailable::frcApertureRange,     Limits32{0, 3}},
    {"FRC aperture available: true",      &VideoAdvancedAvailable::frcApertureAvailable, true}}};
// clang-format on

TEST(VideoAdvancedBlock, ReadsAndWritesEveryLine) {
    advanced.ExpectReadsAndWritesEveryLine();
}

TEST(VideoAdvancedBlock, WritesItsLinesInOrder) {
    advanced.ExpectWritesItsLinesInOrder();
}

TEST(VideoAdvancedBlock, ReportsBadValuesAndUnknownKeys) {
    advanced.ExpectReports({
        // clang-format off
        NotAValue("Clean cadence", "1"),
        NotAValue("Scenecut detect", "1"),
        NotAValue("AntiAlias", "1"),
        NotAValue("RP177", "1"),
        {"Source type: Tape",   "Failed to parse Source type string \"Tape\"\n"},
        {"FRC aperture: 4",     "Failed to parse FRC aperture string \"4\"\n"},
        {"Processing: Highest", "Failed to parse Processing string \"Highest\"\n"},
        {"Noise: 1",            "Unknown video advanced line \"Noise\"\n"},
        // clang-format on
    });
}

TEST(VideoAdvancedAvailabilityBlock, ReadsAndWritesEveryLine) {
    videoAdvancedAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(VideoAdvancedAvailabilityBlock, WritesItsLinesInOrder) {
    videoAdvancedAvailable.ExpectWritesItsLinesInOrder();
}

TEST(VideoAdvancedAvailabilityBlock, ReportsABadApertureRangeUnderTheNameOfTheBlock) {
    videoAdvancedAvailable.ExpectReports({NotARange("FRC aperture range", "0", "VideoAdvancedAvailability")});
}

TEST(VideoAdvancedAvailabilityBlock, ReportsOtherBadValuesAndUnknownKeys) {
    videoAdvancedAvailable.ExpectReports(
        {NotAValue("FRC aperture available", "1"),
         {"FRC aperture: 1 x", "Unknown video advanced availability line \"FRC aperture\"\n"}});
}

TEST(VideoAdvancedAvailabilityBlock, WritesItsProcessingModesLast) {
    VideoAdvancedAvailable set;
    set.availableSourceTypes.Add(morquilAPISourceTypeVideo);
    set.availableProcessingModes.Add(morquilAPIProcModeSimple);
    set.availableProcessingModes.Add(morquilAPIProcModeNormal);
    set.frcApertureAvailable.Set(false);
    EXPECT_EQ(BlockText<VideoAdvancedAvailable>(set),
              "VIDEO ADVANCED AVAILABILITY:\n"
              "Available source types: Video\n"
              "FRC aperture available: false\n"
              "Available processing modes: Highest Quality Lowest Latency\n"
              "\n");
}

TEST(VideoAdvancedAvailabilityBlock, ReadsItsOwnProcessingModesAsUnknownWords) {
    const auto recorded =
        FedWith("VIDEO ADVANCED AVAILABILITY", "Available processing modes: Highest Quality Lowest Latency");
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events());
    EXPECT_TRUE(Holds(recorded->sink.Last<VideoAdvancedAvailable>().availableProcessingModes, Members()));
}

}  // namespace
}  // namespace Morquil
