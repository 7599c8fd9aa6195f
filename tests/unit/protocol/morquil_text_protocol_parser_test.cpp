#include "protocol/morquil_text_protocol_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/unit/protocol/recording_sink.h"

namespace Morquil {
namespace {

using Events = RecordingSink::Events;

struct Header {
    std::string text;
    std::string operation;
};

// clang-format off
const Header headers[] = {
    {"PROTOCOL PREAMBLE",                  "OnProtocolPreamble"},
    {"MORQUIL DEVICE",                     "OnMorquilDevice"},
    {"VIDEO INPUT",                        "OnVideoInput"},
    {"VIDEO INPUT AVAILABILITY",           "OnVideoInputAvailability"},
    {"VIDEO OUTPUT",                       "OnVideoOutput"},
    {"VIDEO OUTPUT AVAILABILITY",          "OnVideoOutputAvailability"},
    {"SUPPORTED CONVERSIONS",              "OnSupportedConversions"},
    {"VIDEO PROC AMP",                     "OnVideoProcAmp"},
    {"VIDEO PROC AMP AVAILABILITY",        "OnVideoProcAmpAvailability"},
    {"VIDEO ADJUST",                       "OnVideoAdjust"},
    {"VIDEO ADJUST AVAILABILITY",          "OnVideoAdjustAvailability"},
    {"NOISE REDUCTION",                    "OnNoiseReduction"},
    {"NOISE REDUCTION AVAILABILITY",       "OnNoiseReductionAvailability"},
    {"TEST PATTERN",                       "OnTestPattern"},
    {"TEST PATTERN AVAILABILITY",          "OnTestPatternAvailability"},
    {"VIDEO ADVANCED",                     "OnVideoAdvanced"},
    {"VIDEO ADVANCED AVAILABILITY",        "OnVideoAdvancedAvailability"},
    {"ANCILLARY DATA",                     "OnAncillaryData"},
    {"ANCILLARY DATA AVAILABILITY",        "OnAncillaryDataAvailability"},
    {"GENLOCK",                            "OnGenlock"},
    {"GENLOCK AVAILABILITY",               "OnGenlockAvailability"},
    {"VARIABLE ASPECT RATIO",              "OnVariableAspectRatio"},
    {"VARIABLE ASPECT RATIO AVAILABILITY", "OnVariableAspectRatioAvailability"},
    {"ALIGN",                              "OnAlign"},
    {"ALIGN AVAILABILITY",                 "OnAlignAvailability"},
    {"AUDIO",                              "OnAudio"},
    {"AUDIO AVAILABILITY",                 "OnAudioAvailability"},
    {"MODE3D",                             "OnMode3D"},
    {"MODE3D AVAILABILITY",                "OnMode3DAvailability"},
    {"NETWORK CONFIG",                     "OnNetworkConfig"},
    {"DEVICE FILENAMES",                   "OnDeviceFilenames"},
    {"PRESET",                             "OnPreset"},
    {"PRESET AVAILABILITY",                "OnPresetAvailability"}};
// clang-format on

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), FoldCase);
    return text;
}

/// The events of a device block with only the model name, split into key and value.
Events NameBlock(const std::string& name) {
    return {"OnMorquilDevice: MORQUIL DEVICE:\nModel name: " + name + "\n\n"};
}

Events DeviceEvents(const std::string& line) {
    return EventsOf("MORQUIL DEVICE:\n" + line + "\n\n");
}

/// The report of a line in a device block that delivers nothing.
std::string DeviceReport(const std::string& line) {
    const Events events = DeviceEvents(line);
    EXPECT_EQ(events.size(), 2U) << line;
    EXPECT_EQ(events.back(), "OnMorquilDevice: MORQUIL DEVICE:\n\n") << line;
    return events.front();
}

TEST(MorquilTextProtocolParser, DeliversEveryBlockToItsOwnOperation) {
    for (const Header& header : headers) {
        const Events expected{header.operation + ": " + header.text + ":\n\n"};
        EXPECT_EQ(EventsOf(header.text + ":\n\n"), expected);
        EXPECT_EQ(EventsOf(Lower(header.text) + ":\n\n"), expected);
    }
}

TEST(MorquilTextProtocolParser, SplitsALineAtItsFirstColon) {
    EXPECT_EQ(DeviceEvents("Model name: X"), NameBlock("X"));
    EXPECT_EQ(DeviceEvents("Model name:X"), NameBlock("X"));
    EXPECT_EQ(DeviceEvents("   Model name:    X"), NameBlock("X"));
}

TEST(MorquilTextProtocolParser, KeepsLaterColonsAndTrailingSpacesOfAValue) {
    EXPECT_EQ(DeviceEvents("Model name: 10:00:00:00"), NameBlock("10:00:00:00"));
    EXPECT_EQ(DeviceEvents("Model name: X: "), NameBlock("X: "));
}

TEST(MorquilTextProtocolParser, SkipsSpacesAndColonsBeforeAValue) {
    EXPECT_EQ(DeviceEvents("Model name:: X"), NameBlock("X"));
    EXPECT_EQ(DeviceEvents("Model name: : :X"), NameBlock("X"));
}

TEST(MorquilTextProtocolParser, KeepsSpacesBetweenKeyAndColonInTheKey) {
    EXPECT_EQ(DeviceReport("Model name : X"), "error: Unknown morquil device line \"Model name \"\n");
}

TEST(MorquilTextProtocolParser, SkipsNoTabs) {
    EXPECT_EQ(DeviceEvents("Model name:\tX"), NameBlock("\tX"));
    EXPECT_EQ(DeviceReport("\tModel name: X"), "error: Unknown morquil device line \"\tModel name\"\n");
}

TEST(MorquilTextProtocolParser, ReportsALineWithoutColon) {
    EXPECT_EQ(DeviceReport("Model name X"), "error: Received line with no colon character\n");
    EXPECT_EQ(DeviceReport("   "), "error: Received line with no colon character\n");
}

TEST(MorquilTextProtocolParser, ReportsALineWithoutValueByItsTextBeforeTheColon) {
    EXPECT_EQ(DeviceReport("Key:"), "error: Received line \"Key\" with no value string\n");
    EXPECT_EQ(DeviceReport(" Key : : "), "error: Received line \" Key \" with no value string\n");
    EXPECT_EQ(DeviceReport(":"), "error: Received line \"\" with no value string\n");
    EXPECT_EQ(DeviceReport(": K"), "error: Received line \"\" with no value string\n");
}

// In a line that starts with a colon, the colon counts as seen when the key starts, so that the key's second character
// starts the value.
TEST(MorquilTextProtocolParser, ReadsTheKeyOfALineThatStartsWithAColonToItsEnd) {
    EXPECT_EQ(DeviceReport(": ab"), "error: Unknown morquil device line \"ab\"\n");
    EXPECT_EQ(DeviceReport(": ab:c"), "error: Unknown morquil device line \"ab:c\"\n");
    EXPECT_EQ(DeviceReport(":a :b"), "error: Unknown morquil device line \"a \"\n");
    EXPECT_EQ(DeviceEvents(":Model name"), NameBlock("odel name"));
    EXPECT_EQ(EventsOf("PRESET:\n:Save: 1\n\n"),
              (Events{"error: Unknown preset command \"Save: 1\"\n", "OnPreset: PRESET:\n\n"}));
}

TEST(MorquilTextProtocolParser, KeepsTheLastOfTwoLinesOfOneKey) {
    EXPECT_EQ(DeviceEvents("Model name: X\nModel name: Y"), NameBlock("Y"));
}

TEST(MorquilTextProtocolParser, ReadsTheRestOfABlockAfterABadLine) {
    EXPECT_EQ(DeviceEvents("Panel lock: perhaps\nModel name: X").back(), NameBlock("X").front());
}

TEST(MorquilTextProtocolParser, ForgetsTheSelectionsOfOneKindOfBlockBeforeTheNext) {
    RecordedParser recorded;
    recorded.Feed("GENLOCK AVAILABILITY:\nVideo mode: 720p50\n\nMODE3D AVAILABILITY:\nOutput: 720p50\n\n");
    EXPECT_TRUE(IsEmpty(recorded.sink.Last<Mode3DAvailabilityChangeSet>()));
    recorded.Feed("SUPPORTED CONVERSIONS:\nOutput: 720p50\n\n");
    recorded.Feed("ANCILLARY DATA AVAILABILITY:\nTimecode drop frame modes: DF\n\n");
    EXPECT_TRUE(IsEmpty(recorded.sink.Last<AncillaryDataAvailabilityChangeSet>()));
}

TEST(MorquilTextProtocolParser, ForgetsTheSelectionsWithoutASink) {
    RecordedParser recorded;
    recorded.parser.SetSink(nullptr);
    recorded.Feed("MODE3D AVAILABILITY:\nInput: 720p50\n\n");
    recorded.parser.SetSink(&recorded.sink);
    recorded.Feed("MODE3D AVAILABILITY:\nOutput: 720p50\n\n");
    EXPECT_TRUE(IsEmpty(recorded.sink.Last<Mode3DAvailabilityChangeSet>()));
}

TEST(MorquilTextProtocolParser, DropsBlocksAndErrorsWithoutASink) {
    RecordedParser recorded;
    recorded.parser.SetSink(nullptr);
    recorded.Feed("PING\nACK\nSCOPES:\n\nGENLOCK:\nbad\nLine offset: 5\n\n");
    recorded.parser.SetSink(&recorded.sink);
    recorded.Feed("\n");
    EXPECT_EQ(recorded.sink.AllEvents(), Events());
}

TEST(MorquilTextProtocolParser, DeliversToTheSinkThatIsThereAtTheEndOfTheBlock) {
    RecordedParser recorded;
    recorded.parser.SetSink(nullptr);
    recorded.Feed("GENLOCK:\nLine offset: 5\n");
    recorded.parser.SetSink(&recorded.sink);
    recorded.Feed("\n");
    EXPECT_EQ(recorded.sink.AllEvents(), Events{"OnGenlock: GENLOCK:\nLine offset: 5\n\n"});
}

TEST(MorquilTextProtocolParser, CutsAReportAfter255Characters) {
    const std::string key(250, 'k');
    const std::string report = "Unknown morquil device line \"" + key + "\"\n";
    EXPECT_EQ(DeviceReport(key + ": v"), "error: " + report.substr(0, 255));
}

}  // namespace
}  // namespace Morquil
