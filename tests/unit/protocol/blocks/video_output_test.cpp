#include "protocol/blocks/video_output.h"

#include <gtest/gtest.h>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Output = VideoOutputChangeSet;
using VideoOutputAvailable = VideoOutputAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;

// clang-format off
const GoldenBlock<Output> output{"VIDEO OUTPUT", {
    {"Video mode: 720p59.94",            &Output::videoMode,                morquilAPIVideoMode720p5994},
    {"Aspect ratio: Smart",              &Output::aspectRatio,              morquilAPIAspectRatioSmart},
    {"Video demux mode: QuadLink",       &Output::videoDemuxMode,           morquilAPIDemuxQuadLink},
    {"Output sdi mode: LevelB",          &Output::outputSdiMode,            morquilAPISDIModeLevelB},
    {"Quad sdi output: QuadHDSplit",     &Output::quadSdiOutput,            morquilAPIQuadSDIOutputHDSplit},
    {"Quad ancillary replication: true", &Output::quadAncillaryReplication, true},
    {"Video pixel format: YCbCr444",     &Output::videoPixelFormat,         morquilAPIPixelFormat444YCbCr},
    {"Analog output: Composite",         &Output::analogOutput,             morquilAPIVideoSourceComposite},
    {"Output option: Freeze",            &Output::outputOption,             morquilAPIOutputOptionFreeze},
    {"Transition setting: -5",           &Output::transitionSetting,        -5},
    {"Still frame action: Preview",      &Output::stillFrameAction,         morquilAPIStillFramePreview},
    {"Still frame present: true",        &Output::stillFramePresent,        true},
    {"Still load complete: false",       &Output::stillLoadComplete,        false},
    {"Still store complete: true",       &Output::stillStoreComplete,       true},
    {"Still preview complete: false",    &Output::stillPreviewComplete,     false},
    {"HDMI output: RGB444",              &Output::hdmiOutput,               morquilAPIPixelFormat444RGB}}};

const GoldenBlock<VideoOutputAvailable> videoOutputAvailable{"VIDEO OUTPUT AVAILABILITY", {
    {"Video demux modes: SingleLink QuadLink", &VideoOutputAvailable::videoDemuxModes,        Members(0, 2)},
    {"Video pixel formats: YCbCr422 YCbCr444", &VideoOutputAvailable::videoPixelFormats,      Members(0, 1)},
    {"Output sdi modes: LevelA LevelB",        &VideoOutputAvailable::outputSdiModes,         Members(0, 1)},
    {"Quad sdi outputs: QuadHDSplit",          &VideoOutputAvailable::quadSdiOutputs,         Members(1)},
    {"Video sources: Component SVideo",        &VideoOutputAvailable::videoSources,           Members(2, 4)},
    {"Available output option: Input Still",   &VideoOutputAvailable::availableOutputOption,  Members(0, 2)},
    {"HDMI outputs: RGB444",                   &VideoOutputAvailable::hdmiOutputs,            Members(2)},
    {"Transition setting range: -10 100",      &VideoOutputAvailable::transitionSettingRange, Limits32{-10, 100}}}};
// clang-format on

TEST(VideoOutputBlock, ReadsAndWritesEveryLine) {
    output.ExpectReadsAndWritesEveryLine();
}

TEST(VideoOutputBlock, WritesItsLinesInOrder) {
    output.ExpectWritesItsLinesInOrder();
}

TEST(VideoOutputBlock, ReportsBadValuesAndUnknownKeys) {
    output.ExpectReports({
        // clang-format off
        {"Video mode: 4k",              "Received invalid Video Output Video mode string \"4k\"\n"},
        {"Aspect ratio: 16x9",          "Received unknown Aspect ratio string \"16x9\"\n"},
        {"Video demux mode: Triple",
                                        "Received invalid De-multiplexed output Video demux mode string \"Triple\"\n"},
        {"Output sdi mode: LevelC",     "Received invalid SDI output mode Output sdi mode string \"LevelC\"\n"},
        {"Quad sdi output: QuadSplit",  "Received invalid Quad SDI output mode Quad sdi output string \"QuadSplit\"\n"},
        NotAValue("Quad ancillary replication", "2"),
        {"Video pixel format: RGB",     "Received invalid Video Packing Output Video pixel format string \"RGB\"\n"},
        {"Analog output: RCA",          "Received invalid Video Analog Output Analog output string \"RCA\"\n"},
        {"Output option: White",        "Failed to parse Output option string \"White\"\n"},
        NotAValue("Transition setting", "slow"),
        {"Still frame action: Erase",   "Failed to parse Still frame action string \"Erase\"\n"},
        NotAValue("Still frame present", "1"),
        NotAValue("Still load complete", "1"),
        NotAValue("Still store complete", "1"),
        NotAValue("Still preview complete", "1"),
        {"HDMI output: DVI",            "Received invalid HDMI Output HDMI output string \"DVI\"\n"},
        {"HDMI outputs: RGB444",        "Unknown video output line \"HDMI outputs\"\n"},
        // clang-format on
    });
}

TEST(VideoOutputBlock, StoresButNeverWritesATransitionSettingOfMinusOne) {
    const auto recorded = FedWith("VIDEO OUTPUT", "Transition setting: -1");
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events());
    EXPECT_EQ(recorded->sink.Last<Output>().transitionSetting.Get(), -1);
    EXPECT_EQ(BlockText<Output>(recorded->sink.Last<Output>()), "VIDEO OUTPUT:\n\n");
}

TEST(VideoOutputAvailabilityBlock, ReadsAndWritesEveryLine) {
    videoOutputAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(VideoOutputAvailabilityBlock, WritesItsLinesInOrder) {
    videoOutputAvailable.ExpectWritesItsLinesInOrder();
}

TEST(VideoOutputAvailabilityBlock, ReportsBadRangesAndUnknownKeys) {
    videoOutputAvailable.ExpectReports(
        {NotARange("Transition setting range", "10"),
         NotARange("Transition setting range", "low high"),
         {"Output option: Input", "Unknown video output availability line \"Output option\"\n"}});
}

TEST(VideoOutputAvailabilityBlock, DropsUnknownWordsOfEveryListSilently) {
    for (const char* const key : {"Video demux modes", "Video pixel formats", "Output sdi modes", "Quad sdi outputs",
                                  "Video sources", "Available output option", "HDMI outputs"}) {
        videoOutputAvailable.ExpectIgnores(std::string(key) + ": Nonsense");
    }
}

}  // namespace
}  // namespace Morquil
