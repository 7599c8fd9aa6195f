#include "simulator/conversation/conversation.h"

#include <gtest/gtest.h>

namespace Morquil::Simulator {
namespace {

using namespace std::chrono_literals;
using Kind = ConversationEvent::Kind;

TEST(Conversation, ReadsBackWhatItWrites) {
    const std::vector<ConversationEvent> events{
        {0ms, 1, Kind::HostConnects, ""},     {1ms, 1, Kind::DeviceSays, std::string("A:\n\"\0\n\n", 7)},
        {1ms, 2, Kind::HostConnects, ""},     {30ms, 1, Kind::HostSays, "PING\n\n"},
        {5000ms, 2, Kind::DeviceHangsUp, ""}, {5001ms, 1, Kind::HostLeaves, ""}};
    std::string text = ConversationHeading();
    for (const ConversationEvent& event : events) {
        text += ConversationLine(event);
    }
    const ConversationReading reading = ReadConversation(text);
    EXPECT_EQ(reading.error, "");
    EXPECT_EQ(reading.events, events);
}

TEST(Conversation, IsReadableText) {
    EXPECT_EQ(ConversationLine({250ms, 1, Kind::HostSays, "PING\n\n"}), "250 1 host \"PING\\n\\n\"\n");
    EXPECT_EQ(ConversationLine({250ms, 1, Kind::DeviceHangsUp, ""}), "250 1 hangs-up\n");
}

TEST(Conversation, NamesTheLineThatItCannotRead) {
    const std::pair<const char*, std::string_view> cases[] = {
        {"0 1 connects\nsoon 1 leaves\n", "line 2: expected MILLISECONDS HOST EVENT"},
        {"0 1 connects\n-1 1 leaves\n", "line 2: expected MILLISECONDS HOST EVENT"},
        {"0 0 connects\n", "line 1: expected MILLISECONDS HOST EVENT"},
        {"# x\n0 1 sings\n", "line 2: \"sings\" is not an event; events are connects host device hangs-up leaves"},
        {"0 1 connects\n0 1 host PING\n", "line 2: expected a text in quotes after \"host\""},
        {"0 1 connects\n0 1 host \"\"\n", "line 2: expected a text in quotes after \"host\""},
        {"0 1 connects now\n", "line 1: expected nothing after \"connects\""},
        {"5 1 connects\n4 1 leaves\n", "line 2: times must not go back"},
        {"0 1 host \"A\"\n", "line 1: host 1 is not connected"},
        {"0 1 connects\n0 1 connects\n", "line 2: host 1 is connected already"},
        {"0 1 connects\n0 1 leaves\n0 1 leaves\n", "line 3: host 1 is not connected"},
    };
    for (const auto& [text, error] : cases) {
        const ConversationReading reading = ReadConversation(text);
        EXPECT_TRUE(reading.error.starts_with(error)) << text << " -> " << reading.error;
        EXPECT_TRUE(reading.events.empty()) << text;
    }
}

}  // namespace
}  // namespace Morquil::Simulator
