#include "protocol/text/text_protocol_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/unit/protocol/recording_sink.h"

namespace Morquil {
namespace {

using namespace std::string_view_literals;
using Events = RecordingSink::Events;

std::string GenlockEvent(const std::string& lines) {
    return "OnGenlock: GENLOCK:\n" + lines + "\n";
}

const std::string overLong = "error: Input data reached maximum line size of 256 characters";
const std::string noColon = "error: Received line with no colon character\n";

TEST(TextProtocolParser, DeliversABlockAtItsEmptyLine) {
    RecordedParser recorded;
    recorded.Feed("GENLOCK:\nLine offset: -5\n");
    EXPECT_EQ(recorded.sink.AllEvents(), Events());
    recorded.Feed("\n");
    EXPECT_EQ(recorded.sink.AllEvents(), Events{GenlockEvent("Line offset: -5\n")});
}

TEST(TextProtocolParser, NeverDeliversABlockTwice) {
    EXPECT_EQ(EventsOf("GENLOCK:\nLine offset: -5\n\n\n\n"), Events{GenlockEvent("Line offset: -5\n")});
}

TEST(TextProtocolParser, DeliversABlockWithoutLines) {
    EXPECT_EQ(EventsOf("GENLOCK:\n\n"), Events{GenlockEvent("")});
}

TEST(TextProtocolParser, ClearsABlockAtItsNextHeader) {
    EXPECT_EQ(EventsOf("GENLOCK:\nLine offset: -5\n\nGENLOCK:\nPixel offset: 6\n\n"),
              (Events{GenlockEvent("Line offset: -5\n"), GenlockEvent("Pixel offset: 6\n")}));
}

TEST(TextProtocolParser, MatchesHeadersWhateverTheirCase) {
    EXPECT_EQ(EventsOf("genlock:\n\nGenLock:\n\n"), (Events{GenlockEvent(""), GenlockEvent("")}));
}

TEST(TextProtocolParser, AcceptsAHeaderWithoutItsColon) {
    EXPECT_EQ(EventsOf("GENLOCK\nLine offset: -5\n\n"), Events{GenlockEvent("Line offset: -5\n")});
}

TEST(TextProtocolParser, RemovesOnlyOneColonFromAHeader) {
    EXPECT_EQ(EventsOf("GENLOCK::\n\n"),
              (Events{"error: Received unknown block header \"GENLOCK:\"\n", "unknown block"}));
}

TEST(TextProtocolParser, MatchesAHeaderAsAWhole) {
    for (const std::string header : {" GENLOCK", "GENLOCK ", "GENLOC", "GENLOCKS", ""}) {
        EXPECT_EQ(EventsOf(header + ":\n\n"),
                  (Events{"error: Received unknown block header \"" + header + "\"\n", "unknown block"}));
    }
}

TEST(TextProtocolParser, ReportsPingAndAcknowledgementsBetweenBlocks) {
    EXPECT_EQ(EventsOf("PING\nACK\nNACK\n"), (Events{"ping", "ack", "nack"}));
    EXPECT_EQ(EventsOf("ping:\n\nAck\n\nnAcK:\n\n"), (Events{"ping", "ack", "nack"}));
}

TEST(TextProtocolParser, ExpectsAHeaderAfterAnAcknowledgementWithoutEmptyLine) {
    EXPECT_EQ(EventsOf("ACK\nGENLOCK:\n\n"), (Events{"ack", GenlockEvent("")}));
}

TEST(TextProtocolParser, ReadsPingAndAcknowledgementsInsideABlockAsLines) {
    EXPECT_EQ(EventsOf("GENLOCK:\nPING\nACK\nNACK\n\n"), (Events{noColon, noColon, noColon, GenlockEvent("")}));
}

TEST(TextProtocolParser, SkipsTheLinesOfAnUnknownBlockSilently) {
    EXPECT_EQ(EventsOf("SCOPES:\nWaveform: true\nno colon\nPING\n\nPING\n"),
              (Events{"error: Received unknown block header \"SCOPES\"\n", "unknown block", "ping"}));
}

TEST(TextProtocolParser, EndsNothingWithAnEmptyLineBetweenBlocks) {
    EXPECT_EQ(EventsOf("\n\n\r\n\n"), Events());
}

TEST(TextProtocolParser, AcceptsBothLineEndings) {
    EXPECT_EQ(EventsOf("GENLOCK:\r\nLine offset: -5\r\n\r\n"), Events{GenlockEvent("Line offset: -5\n")});
}

TEST(TextProtocolParser, DropsALoneCarriageReturn) {
    EXPECT_EQ(EventsOf("GEN\rLOCK:\n\rLine off\rset: \r-\r5\r\r\n\r\r\n"), Events{GenlockEvent("Line offset: -5\n")});
}

TEST(TextProtocolParser, AcceptsALineOf255Characters) {
    EXPECT_EQ(EventsOf("GENLOCK:\nLine offset: 5" + std::string(241, 'x') + "\n\n"),
              Events{GenlockEvent("Line offset: 5\n")});
}

// The buffer is emptied before the line feed is read, so the line feed ends an empty line, and thus the block.
TEST(TextProtocolParser, EndsTheBlockWithALineOf256Characters) {
    EXPECT_EQ(EventsOf("GENLOCK:\n" + std::string(256, 'x') + "\nPING\n"),
              (Events{overLong, GenlockEvent(""), "ping"}));
    EXPECT_EQ(EventsOf("GENLOCK:\n" + std::string(256, 'x') + "\r\nPING\n"),
              (Events{overLong, GenlockEvent(""), "ping"}));
}

TEST(TextProtocolParser, ReadsTheRestOfAnOverLongLineAsALineOfItsOwn) {
    EXPECT_EQ(EventsOf("GENLOCK:\n" + std::string(256, 'x') + "y\n\n"), (Events{overLong, noColon, GenlockEvent("")}));
    EXPECT_EQ(EventsOf("GENLOCK:\n" + std::string(256, 'x') + "Line offset: 5\n\n"),
              (Events{overLong, GenlockEvent("Line offset: 5\n")}));
}

TEST(TextProtocolParser, ReportsAnOverLongLineOncePer256Characters) {
    EXPECT_EQ(EventsOf("GENLOCK:\n" + std::string(511, 'x') + "\n\n"), (Events{overLong, noColon, GenlockEvent("")}));
    EXPECT_EQ(EventsOf("GENLOCK:\n" + std::string(512, 'x') + "\nPING\n"),
              (Events{overLong, overLong, GenlockEvent(""), "ping"}));
    EXPECT_EQ(EventsOf("GENLOCK:\n" + std::string(513, 'x') + "\n\n"),
              (Events{overLong, overLong, noColon, GenlockEvent("")}));
}

TEST(TextProtocolParser, ReportsAnOverLongLineOnlyWithTheNextByte) {
    EXPECT_EQ(EventsOf(std::string(256, 'x')), Events());
    EXPECT_EQ(EventsOf(std::string(257, 'x')), Events{overLong});
}

TEST(TextProtocolParser, SurvivesAnOverLongHeader) {
    EXPECT_EQ(EventsOf(std::string(256, 'x') + "GENLOCK:\n\n"), (Events{overLong, GenlockEvent("")}));
}

TEST(TextProtocolParser, ReadsALineUpToAZeroByte) {
    EXPECT_EQ(EventsOf("GENLOCK:\nLine offset: 5\0 7: x\nPixel\0 offset: 5\n\0\n\n"sv),
              (Events{noColon, noColon, GenlockEvent("Line offset: 5\n")}));
}

TEST(TextProtocolParser, ReadsAHeaderUpToAZeroByte) {
    EXPECT_EQ(EventsOf("GENLOCK\0S:\n\nPING\0:\n"sv), (Events{GenlockEvent(""), "ping"}));
    // The colon that opens a block is the last character of the line, not the last before the zero byte.
    EXPECT_EQ(EventsOf("GENLOCK:\0S\n\n"sv),
              (Events{"error: Received unknown block header \"GENLOCK:\"\n", "unknown block"}));
}

TEST(TextProtocolParser, FollowsTheBlocksAfterGarbage) {
    std::string garbage;
    for (int byte = 255; byte >= 0; --byte) {
        garbage += static_cast<char>(byte);
    }
    RecordedParser recorded;
    recorded.Feed(garbage);
    recorded.Feed("\n\n");
    recorded.sink.Clear();
    recorded.Feed("GENLOCK:\nLine offset: 5\n\n");
    EXPECT_EQ(recorded.sink.AllEvents(), Events{GenlockEvent("Line offset: 5\n")});
}

TEST(TextProtocolParser, CutsAReportAfter255Characters) {
    const std::string report = "Received unknown block header \"" + std::string(254, 'h') + "\"\n";
    EXPECT_EQ(EventsOf(std::string(254, 'h') + ":\n"), Events{"error: " + report.substr(0, 255)});
}

}  // namespace
}  // namespace Morquil
