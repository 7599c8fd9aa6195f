#include "simulator/simulated_device.h"

#include <gtest/gtest.h>

#include "simulator/block_kinds.h"
#include "simulator/text_lines.h"
#include "tests/simulator/listening_host.h"

namespace Morquil::Simulator {
namespace {

constexpr SimulatedDevice::HostId host = 1;
constexpr SimulatedDevice::HostId otherHost = 2;

class SimulatedDeviceTest : public testing::Test {
protected:
    SimulatedDeviceTest() {
        device.Connect(host);
        device.Connect(otherHost);
        greeting = device.TakeTextFor(host);
        otherGreeting = device.TakeTextFor(otherHost);
    }

    std::string Ask(std::string_view text) {
        device.Receive(host, text);
        return device.TakeTextFor(host);
    }

    SimulatedDevice device{DeviceIdentity{}};
    std::string greeting;
    std::string otherGreeting;
};

void ExpectShortLines(std::string_view text) {
    ForEachLine(text, [](std::string_view line) { EXPECT_LT(line.size(), 256U) << line; });
}

TEST_F(SimulatedDeviceTest, GreetsEveryHostWithThePreambleAndEveryBlockOfSettings) {
    std::vector<std::string> expected{"PROTOCOL PREAMBLE"};
    ForEachBlock<BlockKind::Settings>(
        [&](auto entry) { expected.emplace_back(decltype(entry)::Description::block.header.name); });
    ListeningHost listener;
    listener.Hear(greeting);
    EXPECT_EQ(listener.blocks, expected);
    EXPECT_EQ(listener.errors, std::vector<std::string>());
    EXPECT_EQ(greeting, otherGreeting);
    ExpectShortLines(greeting);
}

TEST_F(SimulatedDeviceTest, AnswersEveryRequestForWhatItOffers) {
    ForEachBlock<BlockKind::Offer>([&](auto entry) {
        const std::string name = decltype(entry)::Description::block.header.name;
        const std::string answer = Ask(name + ":\n\n");
        ListeningHost listener;
        listener.Hear(answer);
        EXPECT_EQ(listener.blocks, std::vector{name});
        EXPECT_EQ(listener.errors, std::vector<std::string>()) << name;
        EXPECT_EQ(listener.acknowledgements, 1) << name;
        EXPECT_GT(answer.size(), std::string_view("ACK\n\n:\n\n").size() + name.size()) << "nothing is offered";
        ExpectShortLines(answer);
    });
    EXPECT_EQ(device.TakeTextFor(otherHost), "") << "only who asks is told";
}

TEST_F(SimulatedDeviceTest, EchoesEveryKeyOfEveryBlockToAllHostsAsItWasSent) {
    std::string header;
    ForEachLine(greeting.substr(greeting.find("MORQUIL DEVICE:")), [&](std::string_view line) {
        if (line.empty()) {
            header.clear();
        } else if (header.empty()) {
            header = line;
        } else {
            const std::string block = header + "\n" + std::string(line) + "\n\n";
            EXPECT_EQ(Ask(block), "ACK\n\n" + block);
            EXPECT_EQ(device.TakeTextFor(otherHost), block);
        }
    });
}

TEST_F(SimulatedDeviceTest, EchoesAWholeBlockInOnePiece) {
    const std::string block = "VIDEO PROC AMP:\nGain: 12\nBlack: -3\nSharp: 7\n\n";
    EXPECT_EQ(Ask(block), "ACK\n\n" + block);
}

TEST_F(SimulatedDeviceTest, GreetsLaterHostsWithTheChangedValue) {
    Ask("VIDEO PROC AMP:\nGain: 12\n\n");
    device.Connect(3);
    EXPECT_NE(device.TakeTextFor(3).find("\nGain: 12\n"), std::string::npos);
}

TEST_F(SimulatedDeviceTest, AcknowledgesAPing) {
    EXPECT_EQ(Ask("PING\n\n"), "ACK\n\n");
}

TEST_F(SimulatedDeviceTest, AcknowledgesAnEmptyBlockAndTellsNobodyAnything) {
    EXPECT_EQ(Ask("VIDEO OUTPUT:\n\n"), "ACK\n\n");
    EXPECT_EQ(device.TakeTextFor(otherHost), "");
}

TEST_F(SimulatedDeviceTest, RefusesAnUnknownBlockAndReadsTheNextOne) {
    EXPECT_EQ(Ask("COFFEE:\nSugar: 2\n\n"), "NACK\n\n");
    EXPECT_EQ(Ask("GENLOCK:\nLine offset: 4\n\n"), "ACK\n\nGENLOCK:\nLine offset: 4\n\n");
}

TEST_F(SimulatedDeviceTest, RefusesABlockWithAnUnreadableLineAndTellsTheSenderWhatStillHolds) {
    const std::string answer = Ask("NOISE REDUCTION:\nEnabled: true\nBias: much\n\n");
    EXPECT_EQ(answer, "NACK\n\nNOISE REDUCTION:\nEnabled: false\nBias: 0\nSplit screen: false\nRed overlay: false\n\n");
    EXPECT_EQ(device.TakeTextFor(otherHost), "");
}

TEST_F(SimulatedDeviceTest, LetsNoHostChangeWhatItOffersOrItsPreamble) {
    EXPECT_TRUE(Ask("PRESET AVAILABILITY:\nPreset range: 1 99\n\n").starts_with("NACK\n\n"));
    EXPECT_TRUE(Ask("PROTOCOL PREAMBLE:\nVersion: 2.21\n\n").starts_with("NACK\n\n"));
    EXPECT_EQ(Ask("PRESET AVAILABILITY:\n\n"), "ACK\n\nPRESET AVAILABILITY:\nPreset range: 1 6\n\n");
}

TEST_F(SimulatedDeviceTest, GivesTheSameAnswersForEverySplitOfTheStream) {
    const std::string stream =
        "PING\n\nVIDEO PROC AMP:\r\nGain: 12\r\n\r\nCOFFEE:\nSugar: 2\n\nAUDIO:\nAudioInPhase3: true\n\n";
    const std::string whole = Ask(stream);
    for (std::size_t split = 1; split < stream.size(); ++split) {
        device.Receive(host, std::string_view(stream).substr(0, split));
        device.Receive(host, std::string_view(stream).substr(split));
        EXPECT_EQ(device.TakeTextFor(host), whole) << "split at " << split;
    }
}

TEST_F(SimulatedDeviceTest, KeepsTheConversationsOfItsHostsApart) {
    device.Receive(host, "GENLOCK:\nLine off");
    device.Receive(otherHost, "PING\n\n");
    device.Receive(host, "set: 4\n\n");
    EXPECT_EQ(device.TakeTextFor(otherHost), "ACK\n\nGENLOCK:\nLine offset: 4\n\n");
}

TEST_F(SimulatedDeviceTest, SurvivesALineThatNeverEnds) {
    Ask(std::string(100000, 'x'));
    EXPECT_EQ(Ask("\n\n"), "NACK\n\n");
    EXPECT_EQ(Ask("PING\n\n"), "ACK\n\n");
}

TEST_F(SimulatedDeviceTest, TellsHostsNothingAfterTheyHaveGone) {
    device.Disconnect(otherHost);
    EXPECT_EQ(Ask("GENLOCK:\nLine offset: 4\n\n"), "ACK\n\nGENLOCK:\nLine offset: 4\n\n");
    EXPECT_THROW(device.TakeTextFor(otherHost), std::out_of_range);
}

TEST_F(SimulatedDeviceTest, TellsAllHostsWhatSomebodyChangedAtTheFrontPanel) {
    EXPECT_EQ(device.UsePanel("set VIDEO PROC AMP Gain 12").refusal, "");
    const std::string report = "VIDEO PROC AMP:\nGain: 12\n\n";
    EXPECT_EQ(device.TakeTextFor(host), report);
    EXPECT_EQ(device.TakeTextFor(otherHost), report);
}

TEST_F(SimulatedDeviceTest, TakesWhatDevicesNeverReport) {
    EXPECT_EQ(Ask("ALIGN:\nResetValues: 1\nAlign trim X left: 5\n\n"), "ACK\n\nALIGN:\nAlign trim X left: 5\n\n");
    EXPECT_EQ(Ask("AUDIO:\nMetadata program config: ProgCfg4_4\n\n"), "ACK\n\n");
}

TEST(SimulatedDevice, SaysWhoItIs) {
    SimulatedDevice device(DeviceIdentity{
        .modelName = "Box", .softwareVersion = 0x1a, .fpgaVersion = 2, .protocolVersion = {3, 21}, .remoteLock = true});
    device.Connect(host);
    EXPECT_TRUE(device.TakeTextFor(host).starts_with(
        "PROTOCOL PREAMBLE:\nVersion: 3.21\n\n"
        "MORQUIL DEVICE:\nModel name: Box\nSoftware Version: 0x1a\nFPGA Version: 0x2\nPanel lock: false\n"
        "Remote lock: true\n\n"));
}

}  // namespace
}  // namespace Morquil::Simulator
