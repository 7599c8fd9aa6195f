#include "simulator/device/simulated_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "simulator/text/text_lines.h"
#include "tests/unit/simulator/listening_host.h"

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
    ForEachBlock<BlockRole::Settings>(
        [&]<class Description>() { expected.emplace_back(Description::block.header.name); });
    ListeningHost listener;
    listener.Receive(greeting);
    EXPECT_EQ(listener.blocks, expected);
    EXPECT_EQ(listener.errors, std::vector<std::string>());
    EXPECT_EQ(greeting, otherGreeting);
    ExpectShortLines(greeting);
}

TEST_F(SimulatedDeviceTest, AnswersEveryRequestForWhatItOffers) {
    ForEachBlock<BlockRole::Offers>([&]<class Description>() {
        const std::string name = Description::block.header.name;
        const std::string answer = Ask(name + ":\n\n");
        ListeningHost listener;
        listener.Receive(answer);
        EXPECT_EQ(listener.blocks, std::vector{name});
        EXPECT_EQ(listener.errors, std::vector<std::string>()) << name;
        EXPECT_EQ(listener.acknowledgements, 1) << name;
        EXPECT_GT(answer.size(), std::string_view("ACK\n\n:\n\n").size() + name.size()) << "nothing is offered";
        ExpectShortLines(answer);
    });
    EXPECT_EQ(device.TakeTextFor(otherHost), "") << "only the host that asks gets the answer";
}

struct Observation {
    const char* block;
    const char* key;
};

// clang-format off
/// What no host can set, but settings files contain.
constexpr Observation observations[] = {
    {"MORQUIL DEVICE", "Model name"}, {"MORQUIL DEVICE", "Software Version"}, {"MORQUIL DEVICE", "FPGA Version"},
    {"MORQUIL DEVICE", "Remote lock"},
    {"VIDEO INPUT", "Signal present"}, {"VIDEO INPUT", "Timecode present"},
    {"VIDEO INPUT", "Closed captioning present"}, {"VIDEO INPUT", "Optical module present"},
    {"VIDEO OUTPUT", "Still frame present"}, {"VIDEO OUTPUT", "Still load complete"},
    {"VIDEO OUTPUT", "Still store complete"}, {"VIDEO OUTPUT", "Still preview complete"},
    {"ANCILLARY DATA", "Ancillary Data last input height"},
    {"GENLOCK", "Signal locked"},
    {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio last input width"},
    {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio last input height"},
    {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio last output width"},
    {"VARIABLE ASPECT RATIO", "Variable Aspect Ratio last output height"},
    {"ALIGN", "Align last input width"}, {"ALIGN", "Align last input height"},
    {"ALIGN", "Align last output width"}, {"ALIGN", "Align last output height"},
    {"NETWORK CONFIG", "DHCP enabled"}, {"NETWORK CONFIG", "IP address"}, {"NETWORK CONFIG", "Gateway"},
    {"NETWORK CONFIG", "Subnet"},
};
// clang-format on

TEST_F(SimulatedDeviceTest, EchoesEverySettingToAllHostsAsItWasSentAndIgnoresWhatItObserves) {
    std::string header;
    std::size_t passedOver = 0;
    ForEachLine(greeting.substr(greeting.find("MORQUIL DEVICE:")), [&](std::string_view line) {
        if (line.empty()) {
            header.clear();
        } else if (header.empty()) {
            header = line;
        } else {
            const std::string block = header + "\n" + std::string(line) + "\n\n";
            const bool observed = std::any_of(std::begin(observations), std::end(observations), [&](const auto& row) {
                return header == std::string(row.block) + ":" && line.starts_with(std::string(row.key) + ": ");
            });
            passedOver += observed ? 1 : 0;
            EXPECT_EQ(Ask(block), "ACK\n\n" + (observed ? "" : block));
            EXPECT_EQ(device.TakeTextFor(otherHost), observed ? "" : block);
        }
    });
    EXPECT_EQ(passedOver, std::size(observations));
}

TEST_F(SimulatedDeviceTest, IgnoresOtherValuesOfWhatItObservesAndAppliesTheSettingsBesideThem) {
    const std::string before = device.CompleteDump();
    EXPECT_EQ(Ask("MORQUIL DEVICE:\nModel name: Mine\nSoftware Version: 0x1\nRemote lock: true\n\n"), "ACK\n\n");
    EXPECT_EQ(Ask("NETWORK CONFIG:\nDHCP enabled: true\nIP address: 1\nGateway: 2\nSubnet: 3\n\n"), "ACK\n\n");
    EXPECT_EQ(device.CompleteDump(), before);
    EXPECT_EQ(Ask("GENLOCK:\nLine offset: 4\nSignal locked: false\n\n"), "ACK\n\nGENLOCK:\nLine offset: 4\n\n");
    EXPECT_EQ(Ask("MORQUIL DEVICE:\nRemote lock: true\nPanel lock: true\n\n"),
              "ACK\n\nMORQUIL DEVICE:\nPanel lock: true\n\n");
}

TEST_F(SimulatedDeviceTest, AllowsThePanelToSetWhatItObserves) {
    EXPECT_EQ(device.UsePanel("set MORQUIL DEVICE Remote lock true").refusal, "");
    EXPECT_EQ(device.TakeTextFor(host), "MORQUIL DEVICE:\nRemote lock: true\n\n");
}

TEST_F(SimulatedDeviceTest, AcceptsEveryBlockThatItHasSent) {
    const std::string settings = greeting.substr(greeting.find("MORQUIL DEVICE:"));
    ListeningHost listener;
    listener.Receive(Ask(settings));
    EXPECT_EQ(listener.refusals, 0);
    EXPECT_EQ(listener.errors, std::vector<std::string>());
}

TEST_F(SimulatedDeviceTest, DumpsEveryBlockInShortLinesThatHostsUnderstand) {
    const std::string dump = device.CompleteDump();
    ListeningHost listener;
    listener.Receive(dump);
    EXPECT_EQ(listener.blocks.size(), blockCount);
    EXPECT_EQ(listener.errors, std::vector<std::string>());
    ExpectShortLines(dump);
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

TEST_F(SimulatedDeviceTest, AcknowledgesAnEmptyBlockAndReportsNothing) {
    EXPECT_EQ(Ask("VIDEO OUTPUT:\n\n"), "ACK\n\n");
    EXPECT_EQ(device.TakeTextFor(otherHost), "");
}

TEST_F(SimulatedDeviceTest, RefusesAnUnknownBlockAndReadsTheNextOne) {
    EXPECT_EQ(Ask("COFFEE:\nSugar: 2\n\n"), "NACK\n\n");
    EXPECT_EQ(Ask("GENLOCK:\nLine offset: 4\n\n"), "ACK\n\nGENLOCK:\nLine offset: 4\n\n");
}

TEST_F(SimulatedDeviceTest, RefusesABlockWithAnUnreadableLineAndSendsTheCurrentValuesToItsSender) {
    const std::string answer = Ask("NOISE REDUCTION:\nEnabled: true\nBias: much\n\n");
    EXPECT_EQ(answer, "NACK\n\nNOISE REDUCTION:\nEnabled: false\nBias: 0\nSplit screen: false\nRed overlay: false\n\n");
    EXPECT_EQ(device.TakeTextFor(otherHost), "");
}

TEST_F(SimulatedDeviceTest, RefusesChangesOfWhatItOffersAndOfItsPreamble) {
    EXPECT_TRUE(Ask("PRESET AVAILABILITY:\nPreset range: 1 99\n\n").starts_with("NACK\n\n"));
    EXPECT_TRUE(Ask("AUDIO AVAILABILITY:\nMetadata dialog level range: 1 2\n\n").starts_with("NACK\n\n"));
    EXPECT_TRUE(Ask("PROTOCOL PREAMBLE:\nVersion: 2.21\n\n").starts_with("NACK\n\n"));
    EXPECT_EQ(Ask("PRESET AVAILABILITY:\n\n"), "ACK\n\nPRESET AVAILABILITY:\nPreset range: 1 6\n\n");
}

TEST_F(SimulatedDeviceTest, ReturnsTheSameAnswersForEverySplitOfTheStream) {
    const std::string tooLong(300, 'x');
    const std::string stream =
        "PING\n\nVIDEO PROC AMP:\r\nGain: 12\r\n\r\nCOFFEE:\nSugar: 2\n\n"
        "PING\nAUDIO:\nAudioInPhase3: true\n\nAUDIO:\nAudioInPhase3:" +
        std::string(300, ' ') + "true\n\nAUDIO" + tooLong + ":\nAES output select: true\n\nALIGN:\nResetValues: 1\n\n" +
        "GENLOCK:\n" + tooLong + "\nType: Input\n\n" + tooLong + "\n\n";
    const std::string whole = Ask(stream);
    for (std::size_t split = 1; split < stream.size(); ++split) {
        device.Receive(host, std::string_view(stream).substr(0, split));
        device.Receive(host, std::string_view(stream).substr(split));
        EXPECT_EQ(device.TakeTextFor(host), whole) << "split at " << split;
    }
    for (const char byte : stream) {
        device.Receive(host, {&byte, 1});
    }
    EXPECT_EQ(device.TakeTextFor(host), whole);
}

TEST_F(SimulatedDeviceTest, AnswersHostileInputAndStaysUnchanged) {
    using namespace std::string_literals;
    const std::string before = device.CompleteDump();
    const std::string genlock =
        "NACK\n\nGENLOCK:\nType: Input\nGen reference: Blackburst\nLine offset: 0\nPixel offset: 0\n"
        "Signal locked: true\n\n";
    const std::string tooLong(300, 'x');
    const std::pair<std::string, std::string> inputs[] = {
        {"GENLOCK:\nLine offset\n\n", genlock},
        {"GENLOCK:\nLine offset:\n\n", genlock},
        {"GENLOCK:\n:::\n\n", genlock},
        {"GENLOCK:\n\0\n\n"s, genlock},
        {"GENLOCK:\nLine offset: 4\n\0Type: Input\n\n"s, genlock},
        {"GENLOCK:\nLine offset: 4\nType: " + tooLong + "\n\n", genlock},
        {"GENLOCK:\n" + tooLong + tooLong + ": 3\nLine offset: 4\n\n", genlock},
        {"\0GENLOCK:\nLine offset: 4\n\n"s, "NACK\n\n"},
        {":\nLine offset: 4\n\n", "NACK\n\n"},
        {tooLong + "\nLine offset: 4\n\n", "NACK\n\n"},
        {"GENLOCK" + std::string(1, '\0') + tooLong + "\nLine offset: 4\n\n", "NACK\n\n"},
        {"GENLOCK:\n%s%n%d: %s%n\n\n", genlock},
        {"\n\n\n\n", ""},
        {"ACK\n\nNACK\n\n", ""},
        {"\xff\xfe\xfd\n\n", "NACK\n\n"},
    };
    for (const auto& [text, answer] : inputs) {
        EXPECT_EQ(Ask(text), answer) << text;
        EXPECT_EQ(device.CompleteDump(), before) << text;
    }
}

TEST_F(SimulatedDeviceTest, KeepsTheConversationsOfItsHostsApart) {
    device.Receive(host, "GENLOCK:\nLine off");
    device.Receive(otherHost, "PING\n\n");
    device.Receive(host, "set: 4\n\n");
    EXPECT_EQ(device.TakeTextFor(otherHost), "ACK\n\nGENLOCK:\nLine offset: 4\n\n");
}

TEST_F(SimulatedDeviceTest, SurvivesALineThatNeverEnds) {
    const std::string piece(std::size_t{1024} * 1024, 'x');
    for (int megabyte = 0; megabyte < 8; ++megabyte) {
        EXPECT_EQ(Ask(piece), "");
    }
    EXPECT_EQ(Ask("\n\n"), "NACK\n\n");
    EXPECT_EQ(Ask("PING\n\n"), "ACK\n\n");
}

TEST_F(SimulatedDeviceTest, AnswersABlockOfEndlessRepetitionsOnce) {
    std::string block = "ALIGN:\n";
    for (int line = 0; line < 10000; ++line) {
        block += "ResetValues: 1\nAlign trim X left: 5\n";
    }
    EXPECT_EQ(Ask(block + "\n"), "ACK\n\nALIGN:\nAlign trim X left: 5\n\nALIGN:\nAlign size X left: 1.000000\n\n");
}

TEST_F(SimulatedDeviceTest, SendsNothingToHostsThatHaveGone) {
    device.Disconnect(otherHost);
    EXPECT_EQ(Ask("GENLOCK:\nLine offset: 4\n\n"), "ACK\n\nGENLOCK:\nLine offset: 4\n\n");
    EXPECT_THROW(device.TakeTextFor(otherHost), std::out_of_range);
}

TEST_F(SimulatedDeviceTest, ReportsAFrontPanelChangeToAllHosts) {
    EXPECT_EQ(device.UsePanel("set VIDEO PROC AMP Gain 12").refusal, "");
    const std::string report = "VIDEO PROC AMP:\nGain: 12\n\n";
    EXPECT_EQ(device.TakeTextFor(host), report);
    EXPECT_EQ(device.TakeTextFor(otherHost), report);
}

TEST_F(SimulatedDeviceTest, AcceptsWhatDevicesNeverReport) {
    Ask("ALIGN:\nAlign size X left: 0.75\n\n");
    EXPECT_EQ(Ask("ALIGN:\nResetValues: 1\nAlign trim X left: 5\n\n"),
              "ACK\n\nALIGN:\nAlign trim X left: 5\n\nALIGN:\nAlign size X left: 1.000000\n\n");
    EXPECT_EQ(Ask("AUDIO:\nMetadata program config: ProgCfg4_4\n\n"), "ACK\n\n");
    EXPECT_EQ(device.CompleteDump().find("Metadata program config"), std::string::npos);
}

TEST(SimulatedDevice, IdentifiesItself) {
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
