#include "simulator/conversation/replay.h"

#include <gtest/gtest.h>

#include "simulator/conversation/recorder.h"
#include "simulator/program/simulation.h"

namespace Morquil::Simulator {
namespace {

using namespace std::chrono_literals;

constexpr Station::HostId replayedHost = 1;

class ReplayTest : public testing::Test {
protected:
    void Prepare(std::string_view conversation) {
        const ConversationReading reading = ReadConversation(conversation);
        ASSERT_EQ(reading.error, "");
        replay.emplace(reading.events, [this](const std::string& text) { differences.push_back(text); });
    }

    std::optional<Replay> replay;
    std::vector<std::string> differences;
};

constexpr std::string_view shortConversation =
    "100 1 connects\n"
    "110 1 device \"Hello\"\n"
    "200 1 host \"PING\\n\\n\"\n"
    "230 1 device \"ACK\"\n"
    "235 1 device \"\\n\\n\"\n"
    "240 1 hangs-up\n";

TEST_F(ReplayTest, RepeatsTheDeviceAtTheSameIntervals) {
    Prepare(shortConversation);
    replay->Connect(replayedHost, 5000ms);
    EXPECT_EQ(replay->NextDelivery(replayedHost), 5010ms);
    EXPECT_TRUE(replay->Take(replayedHost, 5009ms).IsNothing());
    EXPECT_EQ(replay->Take(replayedHost, 5010ms).bytes, "Hello");
    EXPECT_EQ(replay->NextDelivery(replayedHost), std::nullopt) << "the host comes next";
    replay->Receive(replayedHost, "PING\n\n", 7000ms);
    EXPECT_EQ(replay->NextDelivery(replayedHost), 7030ms);
    EXPECT_EQ(replay->Take(replayedHost, 7031ms).bytes, "ACK");
    EXPECT_EQ(replay->Take(replayedHost, 7035ms).bytes, "\n\n");
    EXPECT_TRUE(replay->Take(replayedHost, 7040ms).hangUp);
    EXPECT_EQ(replay->NextDelivery(replayedHost), std::nullopt);
    EXPECT_EQ(differences, std::vector<std::string>());
}

TEST_F(ReplayTest, WaitsForAllBytesOfTheHostHoweverTheyAreSplit) {
    Prepare(shortConversation);
    replay->Connect(replayedHost, 0ms);
    replay->Receive(replayedHost, "PI", 1ms);
    EXPECT_EQ(replay->Take(replayedHost, 10ms).bytes, "Hello");
    replay->Receive(replayedHost, "NG\n", 20ms);
    EXPECT_EQ(replay->NextDelivery(replayedHost), std::nullopt);
    replay->Receive(replayedHost, "\nmore", 40ms);
    EXPECT_EQ(replay->NextDelivery(replayedHost), 70ms);
}

TEST_F(ReplayTest, ReportsOnceThatAHostDiffersAndGoesOn) {
    Prepare(shortConversation);
    replay->Connect(replayedHost, 0ms);
    replay->Take(replayedHost, 10ms);
    replay->Receive(replayedHost, "pong\n\n", 20ms);
    EXPECT_EQ(differences,
              std::vector<std::string>{"host 1 sent \"pong\\n\\n\", but the recording has \"PING\\n\\n\""});
    EXPECT_EQ(replay->Take(replayedHost, 50ms).bytes, "ACK");
}

TEST_F(ReplayTest, PlaysTheNextConversationForEachHostAndThenStartsOver) {
    Prepare("0 1 connects\n0 2 connects\n0 1 device \"one\"\n0 2 device \"two\"\n");
    const char* const expected[] = {"one", "two", "one"};
    for (Station::HostId id = 1; id <= 3; ++id) {
        replay->Connect(id, 0ms);
        EXPECT_EQ(replay->Take(id, 0ms).bytes, expected[id - 1]);
    }
}

/// Talks to a station for a while. Returns: everything that it sent, with the times.
std::string Talk(Station& station, std::chrono::milliseconds start) {
    std::string received;
    station.Connect(replayedHost, start);
    for (std::chrono::milliseconds time = 0ms; time < 200ms; ++time) {
        if (time % 50ms == 0ms) {
            station.Receive(replayedHost, "GENLOCK:\nLine offset: " + std::to_string(time.count()) + "\n\nPING\n\n",
                            start + time);
        }
        station.Advance(start + time);
        for (Delivery next = station.Take(replayedHost, start + time); !next.IsNothing();
             next = station.Take(replayedHost, start + time)) {
            received += std::to_string(time.count()) + " " + next.bytes;
        }
    }
    station.Disconnect(replayedHost, start + 200ms);
    return received;
}

TEST(RecordAndReplay, ProduceTheSameBytesInTheSamePiecesAtTheSameTimes) {
    const Faults faults{
        .latency = 7ms, .fragmentation = Fragmentation::Random, .crlf = true, .garbage = true, .longLines = true};
    Simulation simulation(DeviceIdentity{}, faults);
    std::string file;
    Recorder recorder(simulation, [&](const std::string& text) { file += text; });
    const std::string original = Talk(recorder, 1000ms);

    const ConversationReading reading = ReadConversation(file);
    ASSERT_EQ(reading.error, "");
    Replay replay(reading.events, [](const std::string& text) { ADD_FAILURE() << text; });
    EXPECT_EQ(Talk(replay, 3333ms), original);
    EXPECT_GT(original.size(), 5000U);
}

TEST(Recorder, WritesWhoEndedTheConnection) {
    Simulation simulation(DeviceIdentity{}, Faults{.dropAfter = 0});
    std::string file;
    Recorder recorder(simulation, [&](const std::string& text) { file += text; });
    recorder.Connect(replayedHost, 1ms);
    EXPECT_TRUE(recorder.Take(replayedHost, 2ms).hangUp);
    recorder.Disconnect(replayedHost, 2ms);
    EXPECT_EQ(file, ConversationHeading() + "1 1 connects\n2 1 hangs-up\n");
}

}  // namespace
}  // namespace Morquil::Simulator
