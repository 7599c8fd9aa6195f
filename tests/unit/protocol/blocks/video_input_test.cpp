#include "protocol/blocks/video_input.h"

#include <gtest/gtest.h>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Input = VideoInputChangeSet;
using VideoInputAvailable = VideoInputAvailabilityChangeSet;

// clang-format off
const GoldenBlock<Input> input{"VIDEO INPUT", {
    {"Auto detection enabled: true",        &Input::autoDetectionEnabled,    true},
    {"Auto detection prefer PsF: false",    &Input::autoDetectionPreferPsF,  false},
    {"Video source: Optical",               &Input::videoSource,             morquilAPIVideoSourceFiberOpt},
    {"Video mode: 2160p50",                 &Input::videoMode,               morquilAPIVideoModeUHDp50},
    {"Audio source: DB25",                  &Input::audioSource,             morquilAPIAudioSourceDB25},
    {"Signal present: true",                &Input::signalPresent,           true},
    {"Timecode present: Detected",          &Input::timecodePresent,         morquilAPITimecodeDetected},
    {"Closed captioning present: Detected", &Input::closedCaptioningPresent, morquilAPIClosedCaptionDetected},
    {"Wide SD aspect: false",               &Input::wideSDAspect,            false},
    {"HDMI 3D Full: true",                  &Input::hdmi3DFull,              true},
    {"Optical module present: false",       &Input::opticalModulePresent,    false},
    {"Video pixel format: RGB444",          &Input::videoPixelFormat,        morquilAPIPixelFormat444RGB},
    {"PCIe mode: Playback",                 &Input::pcieMode,                morquilAPIPCIePlayback}}};

const GoldenBlock<VideoInputAvailable> videoInputAvailable{"VIDEO INPUT AVAILABILITY", {
    {"Video sources: SDI1 HDMI SDI2",       &VideoInputAvailable::videoSources,        Members(0, 1, 6)},
    {"Audio sources: Embedded AES DB25",    &VideoInputAvailable::audioSources,        Members(0, 1, 3)},
    {"Video pixel formats: YCbCr422 RGB444", &VideoInputAvailable::videoPixelFormats,  Members(0, 2)}}};
// clang-format on

TEST(VideoInputBlock, ReadsAndWritesEveryLine) {
    input.ExpectReadsAndWritesEveryLine();
}

TEST(VideoInputBlock, WritesItsLinesInOrder) {
    input.ExpectWritesItsLinesInOrder();
}

TEST(VideoInputBlock, ReportsBadValuesAndUnknownKeys) {
    input.ExpectReports({
        // clang-format off
        NotAValue("Auto detection enabled", "1"),
        NotAValue("Auto detection prefer PsF", "yes"),
        {"Video source: FiberOpt",     "Received invalid Video Input Video source string \"FiberOpt\"\n"},
        {"Video mode: 1080i",          "Received invalid Video Input Video mode string \"1080i\"\n"},
        {"Audio source: XLR",          "Received invalid Audio source string \"XLR\"\n"},
        NotAValue("Signal present", "TRUE"),
        NotAValue("Wide SD aspect", "no"),
        NotAValue("HDMI 3D Full", "on"),
        NotAValue("Optical module present", "0"),
        {"Video pixel format: RGB",    "Received invalid Video Packing Input Video pixel format string \"RGB\"\n"},
        {"PCIe mode: Record",          "Received invalid PCIe Mode PCIe mode string \"Record\"\n"},
        {"Video standard: 1080i50",    "Unknown video input line \"Video standard\"\n"},
        // clang-format on
    });
}

TEST(VideoInputBlock, IgnoresUnknownPresenceWordsSilently) {
    input.ExpectIgnores("Timecode present: Perhaps");
    input.ExpectIgnores("Closed captioning present: Perhaps");
}

TEST(VideoInputBlock, MatchesAVideoModeWhateverItsCase) {
    EXPECT_EQ(WrittenBack<Input>("VIDEO INPUT", "Video mode: 1080I59.94"), "VIDEO INPUT:\nVideo mode: 1080i59.94\n\n");
}

TEST(VideoInputBlock, AcceptsAVideoModeWordWithSpaces) {
    EXPECT_EQ(WrittenBack<Input>("VIDEO INPUT", "Video mode: 2K DCI 23.98PsF"),
              "VIDEO INPUT:\nVideo mode: 2K DCI 23.98PsF\n\n");
}

TEST(VideoInputBlock, DoesNotTrimAWord) {
    input.ExpectReports({{"Video mode: 1080i50 ", "Received invalid Video Input Video mode string \"1080i50 \"\n"}});
}

TEST(VideoInputBlock, WritesNoLineForANumberThatHasNoWord) {
    Input set;
    set.videoSource.Set(-1);
    set.audioSource.Set(99);
    EXPECT_EQ(BlockText<Input>(set), "VIDEO INPUT:\n\n");
}

TEST(VideoInputAvailabilityBlock, ReadsAndWritesEveryLine) {
    videoInputAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(VideoInputAvailabilityBlock, WritesItsLinesInOrder) {
    videoInputAvailable.ExpectWritesItsLinesInOrder();
}

TEST(VideoInputAvailabilityBlock, ReportsUnknownKeys) {
    videoInputAvailable.ExpectReports(
        {{"Video source: SDI1", "Unknown video input availability line \"Video source\"\n"}});
}

TEST(VideoInputAvailabilityBlock, WritesAListInTheOrderOfTheVocabulary) {
    EXPECT_EQ(WrittenBack<VideoInputAvailable>("VIDEO INPUT AVAILABILITY", "Video sources: HDMI SDI1"),
              "VIDEO INPUT AVAILABILITY:\nVideo sources: SDI1 HDMI\n\n");
}

TEST(VideoInputAvailabilityBlock, DropsUnknownWordsSilently) {
    EXPECT_EQ(WrittenBack<VideoInputAvailable>("VIDEO INPUT AVAILABILITY", "Audio sources: XLR AES embeddedd"),
              "VIDEO INPUT AVAILABILITY:\nAudio sources: AES\n\n");
}

TEST(VideoInputAvailabilityBlock, HasReceivedAListOfWhichItKnowsNoWord) {
    const auto recorded = FedWith("VIDEO INPUT AVAILABILITY", "Audio sources: XLR");
    EXPECT_TRUE(recorded->sink.Last<VideoInputAvailable>().audioSources.IsPresent());
    EXPECT_FALSE(recorded->sink.Last<VideoInputAvailable>().audioSources.HasAny());
}

TEST(VideoInputAvailabilityBlock, OnlyEverAddsWordsWithinOneBlock) {
    EXPECT_EQ(WrittenBack<VideoInputAvailable>("VIDEO INPUT AVAILABILITY", "Audio sources: RCA\nAudio sources: AES"),
              "VIDEO INPUT AVAILABILITY:\nAudio sources: AES RCA\n\n");
}

TEST(VideoInputAvailabilityBlock, SplitsAListAtAnyWhiteSpace) {
    EXPECT_EQ(WrittenBack<VideoInputAvailable>("VIDEO INPUT AVAILABILITY", "Audio sources: RCA\t AES  \vDB25 "),
              "VIDEO INPUT AVAILABILITY:\nAudio sources: AES RCA DB25\n\n");
}

}  // namespace
}  // namespace Morquil
