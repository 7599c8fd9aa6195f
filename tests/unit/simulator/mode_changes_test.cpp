// The effects of a change of the input mode or output mode.
#include <gtest/gtest.h>

#include "tests/unit/simulator/listening_host.h"
#include "tests/unit/simulator/lone_host.h"

namespace Morquil::Simulator {
namespace {

struct Consequence {
    const char* input;
    const char* output;
    const char* block;
    const char* key;
    const char* value;
};

// clang-format off
constexpr Consequence consequences[] = {
    // The sizes of the pictures.
    {"625i50 PAL", "2160p50",        "VARIABLE ASPECT RATIO", "Variable Aspect Ratio last input width",   "720"},
    {"625i50 PAL", "2160p50",        "VARIABLE ASPECT RATIO", "Variable Aspect Ratio last input height",  "576"},
    {"625i50 PAL", "2160p50",        "VARIABLE ASPECT RATIO", "Variable Aspect Ratio last output width",  "3840"},
    {"625i50 PAL", "2160p50",        "VARIABLE ASPECT RATIO", "Variable Aspect Ratio last output height", "2160"},
    {"720p60",     "2K DCI 24p",     "ALIGN", "Align last input width",   "1280"},
    {"720p60",     "2K DCI 24p",     "ALIGN", "Align last input height",  "720"},
    {"720p60",     "2K DCI 24p",     "ALIGN", "Align last output width",  "2048"},
    {"720p60",     "2K DCI 24p",     "ALIGN", "Align last output height", "1080"},
    {"720p60",     "2K DCI 24p",     "ANCILLARY DATA", "Ancillary Data last input height", "720"},
    // How far pictures can be moved and cut.
    {"1080i50",    "1080p50",        "VARIABLE ASPECT RATIO AVAILABILITY", "Variable Aspect Ratio pos X range",  "-1.000000 1.000000"},
    {"625i50 PAL", "2160p50",        "VARIABLE ASPECT RATIO AVAILABILITY", "Variable Aspect Ratio pos X range",  "-5.333000 5.333000"},
    {"2160p50",    "720p50",         "VARIABLE ASPECT RATIO AVAILABILITY", "Variable Aspect Ratio pos Y range",  "-0.333000 0.333000"},
    {"1080i50",    "2160p25",        "VARIABLE ASPECT RATIO AVAILABILITY", "Variable Aspect Ratio trim X range", "0 1920"},
    {"1080i50",    "625i50 PAL",     "VARIABLE ASPECT RATIO AVAILABILITY", "Variable Aspect Ratio trim Y range", "0 288"},
    {"1080i50",    "2160p25",        "ALIGN AVAILABILITY", "Align trim X range", "0 960"},
    {"1080i50",    "2160p25",        "ALIGN AVAILABILITY", "Align pos X range",  "-1.000000 1.000000"},
    // The lines of captions.
    {"625i50 PAL", "1080i50",        "ANCILLARY DATA AVAILABILITY", "CC input line range",  "6 22"},
    {"625i50 PAL", "1080i50",        "ANCILLARY DATA AVAILABILITY", "CC output line range", "8 20"},
    // Processing, by what is converted.
    {"1080i50",    "1080i50",        "NOISE REDUCTION AVAILABILITY", "Noise reduction available", "true"},
    {"1080i50",    "1080p50",        "NOISE REDUCTION AVAILABILITY", "Noise reduction available", "true"},
    {"1080i50",    "1080p25",        "NOISE REDUCTION AVAILABILITY", "Noise reduction available", "false"},
    {"1080i50",    "1080i50",        "VIDEO ADVANCED AVAILABILITY", "FRC aperture available", "false"},
    {"1080i50",    "1080i50",        "VIDEO ADVANCED AVAILABILITY", "FRC aperture range",     "0 0"},
    {"1080i50",    "1080p50",        "VIDEO ADVANCED AVAILABILITY", "FRC aperture available", "true"},
    {"1080i50",    "1080p50",        "VIDEO ADVANCED AVAILABILITY", "FRC aperture range",     "0 3"},
    {"1080i50",    "1080i50",        "VIDEO ADVANCED AVAILABILITY", "Available source types", "Auto"},
    {"1080i50",    "1080p25",        "VIDEO ADVANCED AVAILABILITY", "Available source types", "Auto Video Film"},
    {"1080p24",    "1080p60",        "VIDEO ADVANCED AVAILABILITY", "Available source types", "Auto Video Film"},
    // Connectors.
    {"1080i50",    "625i50 PAL",     "VIDEO OUTPUT AVAILABILITY", "Video demux modes",   "SingleLink"},
    {"1080i50",    "1080p50",        "VIDEO OUTPUT AVAILABILITY", "Video demux modes",   "SingleLink DualLink"},
    {"1080i50",    "2160p25",        "VIDEO OUTPUT AVAILABILITY", "Video demux modes",   "QuadLink"},
    {"1080i50",    "1080p25",        "VIDEO OUTPUT AVAILABILITY", "Output sdi modes",    "LevelA"},
    {"1080i50",    "1080p50",        "VIDEO OUTPUT AVAILABILITY", "Output sdi modes",    "LevelA LevelB"},
    {"1080i50",    "2160p25",        "VIDEO OUTPUT AVAILABILITY", "Output sdi modes",    "LevelA LevelB"},
    {"1080i50",    "1080p25",        "VIDEO OUTPUT AVAILABILITY", "Video pixel formats", "YCbCr422 YCbCr444 RGB444"},
    {"1080i50",    "1080p50",        "VIDEO OUTPUT AVAILABILITY", "Video pixel formats", "YCbCr422"},
    {"1080i50",    "2160p50",        "VIDEO OUTPUT AVAILABILITY", "Video pixel formats", "YCbCr422 YCbCr444 RGB444"},
    // Moving test patterns.
    {"1080i50",    "625i50 PAL",     "TEST PATTERN AVAILABILITY", "Motion",       "false"},
    {"1080i50",    "625i50 PAL",     "TEST PATTERN AVAILABILITY", "Motion range", "0 0"},
    {"1080i50",    "720p50",         "TEST PATTERN AVAILABILITY", "Motion range", "-5 5"},
    {"1080i50",    "2160p50",        "TEST PATTERN AVAILABILITY", "Motion range", "-16 16"},
};
// clang-format on

TEST(ModeChanges, ChangeWhatDependsOnThem) {
    for (const Consequence& row : consequences) {
        SCOPED_TRACE(std::string(row.input) + " to " + row.output + ": " + row.key);
        LoneHost host;
        host.SetModes(row.input, row.output);
        EXPECT_EQ(host.Value(row.block, row.key), row.value);
    }
}

TEST(ModeChanges, LeaveOnlyOfferedSettingsForEveryPairOfConvertibleModes) {
    for (const std::string_view input : {"525i59.94 NTSC", "720p50", "1080i59.94", "2K DCI 24PsF", "2160p60"}) {
        for (std::size_t output = 0; output < VideoModes::words.Size(); ++output) {
            LoneHost host;
            EXPECT_TRUE(host.Set("VIDEO INPUT", "Video mode: " + std::string(input)));
            host.Set("VIDEO OUTPUT", "Video mode: " + std::string(VideoModes::words[output]));
            LoneHost same;
            EXPECT_EQ(same.device.LoadSettings(host.device.CompleteDump()), "") << input << " to " << output;
            EXPECT_EQ(same.device.CompleteDump(), host.device.CompleteDump());
        }
    }
}

TEST(ModeChanges, AreReportedAfterTheReplyBlockByBlock) {
    LoneHost host;
    host.Ask("VIDEO OUTPUT:\nVideo pixel format: RGB444\n\n");
    EXPECT_EQ(host.Ask("VIDEO OUTPUT:\nVideo mode: 1080p50\n\n"),
              "ACK\n\nVIDEO OUTPUT:\nVideo mode: 1080p50\n\n"
              "VIDEO OUTPUT:\nVideo pixel format: YCbCr422\n\n"
              "VIDEO OUTPUT AVAILABILITY:\nVideo pixel formats: YCbCr422\nOutput sdi modes: LevelA LevelB\n\n"
              "VIDEO ADVANCED AVAILABILITY:\nAvailable source types: Auto Video Film\nFRC aperture range: 0 3\n"
              "FRC aperture available: true\n\n");
}

TEST(ModeChanges, AreReportedToAllHostsAlike) {
    LoneHost host;
    host.device.Connect(2);
    host.device.TakeTextFor(2);
    const std::string answer = host.Ask("VIDEO INPUT:\nVideo mode: 625i50 PAL\n\n");
    EXPECT_EQ("ACK\n\n" + host.device.TakeTextFor(2), answer);
}

struct Following {
    const char* before;
    const char* input;
    const char* after;
};

TEST(ModeChanges, MakeTheOutputModeFollowAnInputModeThatCannotBeConvertedToIt) {
    const Following rows[] = {
        {"1080i50", "720p60", "1080i60"},       // another rate
        {"1080p25", "720p60", "1080p24"},       // the nearest of the rates
        {"720p50", "1080i59.94", "720p59.94"},  // the frame size stays
        {"2160p25", "1080i60", "2160p24"},     {"625i50 PAL", "1080p59.94", "525i59.94 NTSC"},
        {"1080p50", "625i50 PAL", "1080p50"},  // nothing has to change
    };
    for (const Following& row : rows) {
        LoneHost host;
        host.SetModes("1080i50", row.before);
        const std::string answer = host.Ask("VIDEO INPUT:\nVideo mode: " + std::string(row.input) + "\n\n");
        EXPECT_EQ(host.Value("VIDEO OUTPUT", "Video mode"), row.after);
        const bool isReported =
            answer.find("\nVIDEO OUTPUT:\nVideo mode: " + std::string(row.after) + "\n") != std::string::npos;
        EXPECT_EQ(isReported, std::string(row.before) != row.after) << answer;
    }
}

TEST(ModeChanges, AreUnderstoodByHostsAndHaveShortLines) {
    LoneHost host;
    const std::string answer = host.Ask("VIDEO INPUT:\nVideo mode: 720p60\n\nVIDEO OUTPUT:\nVideo mode: 2160p60\n\n");
    ListeningHost listener;
    listener.Receive(answer);
    EXPECT_EQ(listener.errors, std::vector<std::string>());
    EXPECT_EQ(listener.acknowledgements, 2);
}

struct Fallback {
    const char* block;
    const char* key;
    const char* before;
    const char* after;
};

TEST(ModeChanges, MoveSettingsThatAreNoLongerOfferedToTheNearestValue) {
    LoneHost host;
    host.SetModes("625i50 PAL", "2160p50");
    // clang-format off
    const Fallback fallbacks[] = {
        {"VIDEO OUTPUT",   "Aspect ratio",        "LetterBox", "LetterBox"},  // still from one shape to the other
        {"VIDEO OUTPUT",   "Video demux mode",    "QuadLink",  "DualLink"},
        {"VIDEO OUTPUT",   "Output sdi mode",     "LevelB",    "LevelA"},
        {"TEST PATTERN",   "Horizontal Rate",     "-16",       "-5"},
        {"ANCILLARY DATA", "AFD output line",     "41",        "25"},
        {"ANCILLARY DATA", "Timecode input line", "22",        "22"},  // the input is the same
        {"GENLOCK",        "Line offset",         "1000",      "360"},
        {"GENLOCK",        "Pixel offset",        "-1920",     "-640"},
        {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio pos X left", "5.000000", "1.777000"},
        {"ALIGN",          "Align trim Y right",  "540",       "180"},
    };
    // clang-format on
    for (const Fallback& row : fallbacks) {
        EXPECT_TRUE(host.Set(row.block, std::string(row.key) + ": " + row.before)) << row.key;
    }
    const std::string answer = host.Ask("VIDEO OUTPUT:\nVideo mode: 720p50\n\n");
    for (const Fallback& row : fallbacks) {
        EXPECT_EQ(host.Value(row.block, row.key), row.after) << row.key;
        const bool isReported = answer.find(std::string(row.key) + ": " + row.after) != std::string::npos;
        EXPECT_EQ(isReported, std::string(row.before) != row.after) << row.key;
    }
}

TEST(ModeChanges, KeepTimecodesWithinTheFramesOfTheOutput) {
    LoneHost host;
    host.SetModes("1080p30", "1080p30");
    EXPECT_TRUE(host.Set("ANCILLARY DATA", "Timecode generate value: 01:02:03:29"));
    EXPECT_TRUE(host.Set("VIDEO OUTPUT", "Video mode: 1080p24"));
    EXPECT_EQ(host.Value("ANCILLARY DATA", "Timecode generate value"), "01:02:03;23");
}

TEST(ModeChanges, DropNoFramesAtOtherRates) {
    LoneHost host;
    host.SetModes("1080i59.94", "1080i59.94");
    EXPECT_TRUE(host.Set("ANCILLARY DATA", "Timecode drop frame mode: DF"));
    EXPECT_TRUE(host.Set("VIDEO OUTPUT", "Video mode: 1080p23.98"));
    EXPECT_EQ(host.Value("ANCILLARY DATA", "Timecode drop frame mode"), "Auto");
    EXPECT_FALSE(host.Set("ANCILLARY DATA", "Timecode drop frame mode: DF"));
}

}  // namespace
}  // namespace Morquil::Simulator
