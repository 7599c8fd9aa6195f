// What a device sends on connection, whole and in pieces.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

#include "tests/unit/protocol/recording_sink.h"

namespace Morquil {
namespace {

using Events = RecordingSink::Events;

std::string ReadDump() {
    const std::string path = std::string(MORQUIL_TEST_DATA) + "/full_dump.txt";
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        ADD_FAILURE() << "cannot open " << path;
        return {};
    }
    std::string text;
    for (int character = std::fgetc(file); character != EOF; character = std::fgetc(file)) {
        text += static_cast<char>(character);
    }
    std::fclose(file);
    return text;
}

/// The dump with keep-alives, acknowledgements, an unknown block and bad lines among its blocks, and without most of
/// its long tables, so that every split of it can be tried.
std::string Transcript() {
    constexpr std::size_t longestBlock = 160;
    std::string transcript = "PING\n\nSCOPES:\r\nWaveform: true\r\n\r\n";
    const std::string dump = ReadDump();
    for (std::size_t at = 0; at < dump.size();) {
        const std::size_t end = dump.find("\n\n", at) + 1;
        const std::string block = dump.substr(at, end - at);
        transcript += block.size() <= longestBlock ? block : block.substr(0, block.find('\n', longestBlock) + 1);
        transcript += "no colon\nBad key: 1\n\nACK\n\n";
        at = end + 1;
    }
    return transcript;
}

TEST(FullDump, HoldsEveryBlockOnceAndNothingBad) {
    const Events events = EventsOf(ReadDump());
    ASSERT_EQ(events.size(), blockCount);
    for (const std::string& event : events) {
        EXPECT_TRUE(event.starts_with("On")) << event;
        EXPECT_NE(event[event.find('\n') + 1], '\n') << "no lines: " << event;
    }
}

TEST(FullDump, HoldsNoLineThatIsCut) {
    const std::string dump = ReadDump();
    for (std::size_t at = 0; at < dump.size();) {
        const std::size_t end = dump.find('\n', at);
        EXPECT_LE(end - at, 255U) << dump.substr(at, end - at);
        at = end + 1;
    }
}

TEST(FullDump, ProducesTheSameEventsByteByByte) {
    const std::string dump = ReadDump();
    RecordedParser recorded;
    for (const char& byte : dump) {
        recorded.Feed({&byte, 1});
    }
    EXPECT_EQ(recorded.sink.AllEvents(), EventsOf(dump));
}

TEST(FullDump, ProducesTheSameEventsWithEitherLineEnding) {
    const std::string dump = ReadDump();
    std::string withCarriageReturns;
    for (const char character : dump) {
        withCarriageReturns += character == '\n' ? "\r\n" : std::string(1, character);
    }
    EXPECT_EQ(EventsOf(withCarriageReturns), EventsOf(dump));
}

TEST(TextProtocolParser, ProducesTheSameEventsForTheTranscriptByteByByte) {
    const std::string transcript = Transcript();
    RecordedParser recorded;
    for (const char& byte : transcript) {
        recorded.Feed({&byte, 1});
    }
    EXPECT_EQ(recorded.sink.AllEvents(), EventsOf(transcript));
}

TEST(TextProtocolParser, ProducesTheSameEventsForEverySplitOfTheTranscript) {
    const std::string transcript = Transcript();
    const std::string_view bytes = transcript;
    const Events whole = EventsOf(transcript);
    for (std::size_t split = 0; split <= bytes.size(); ++split) {
        RecordedParser recorded;
        recorded.Feed(bytes.substr(0, split));
        recorded.Feed(bytes.substr(split));
        ASSERT_EQ(recorded.sink.AllEvents(), whole) << "split at byte " << split;
    }
}

}  // namespace
}  // namespace Morquil
