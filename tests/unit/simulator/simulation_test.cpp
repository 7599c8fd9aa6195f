#include "simulator/program/simulation.h"

#include <gtest/gtest.h>

#include "simulator/program/operator_command.h"
#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {
namespace {

using namespace std::chrono_literals;

constexpr Station::HostId speaker = 1;
constexpr Station::HostId listener = 2;
const std::string gain = "VIDEO PROC AMP:\nGain: 12\n\n";

class SimulationTest : public testing::Test {
protected:
    SimulationTest() {
        for (const Station::HostId id : {speaker, listener}) {
            simulation.Connect(id, 0ms);
            Receive(id);
        }
    }

    std::string Receive(Station::HostId id = speaker) {
        std::string text;
        for (Delivery next = simulation.Take(id, 0ms); !next.IsNothing(); next = simulation.Take(id, 0ms)) {
            text += next.hangUp ? "(end)" : next.bytes;
        }
        return text;
    }
    std::string Ask(std::string_view text) {
        simulation.Receive(speaker, text, 0ms);
        return Receive();
    }
    PanelOutcome Order(std::string_view text) {
        const CommandReading reading = ReadCommand(text);
        EXPECT_TRUE(reading.command) << text << ": " << reading.error;
        return CarryOut(*reading.command, simulation, 0ms);
    }

    Simulation simulation{DeviceIdentity{}, Faults{}};
};

TEST_F(SimulationTest, PassesOnWhatDeviceAndHostsSend) {
    EXPECT_EQ(Ask(gain), "ACK\n\n" + gain);
    EXPECT_EQ(Receive(listener), gain);
}

TEST_F(SimulationTest, TurnsKnobs) {
    EXPECT_EQ(Order("set VIDEO PROC AMP Gain 12").report, gain);
    EXPECT_EQ(Receive(), gain);
    EXPECT_EQ(Receive(listener), gain);
}

TEST_F(SimulationTest, LocksAndUnlocksRemoteControlAndNotifiesTheHosts) {
    Order("lock");
    EXPECT_EQ(Receive(), "MORQUIL DEVICE:\nRemote lock: true\n\n");
    Order("unlock");
    EXPECT_EQ(Receive(listener), "MORQUIL DEVICE:\nRemote lock: true\n\nMORQUIL DEVICE:\nRemote lock: false\n\n");
}

TEST_F(SimulationTest, HangsUpOnAllHosts) {
    Order("drop");
    EXPECT_EQ(Receive(), "(end)");
    EXPECT_EQ(Receive(listener), "(end)");
}

TEST_F(SimulationTest, HangsUpInTheMiddleOfTheNextBlock) {
    Order("drop mid-block");
    EXPECT_EQ(Receive(), "");
    EXPECT_EQ(Ask(gain), "ACK\n\n" + gain.substr(0, gain.size() / 2) + "(end)");
}

TEST_F(SimulationTest, RefusesEverythingWithTheUnchangedBlockUntilCommandedOtherwise) {
    Order("nack on");
    const std::string answer = Ask(gain);
    EXPECT_TRUE(answer.starts_with("NACK\n\nVIDEO PROC AMP:\nGain: 0\n")) << answer;
    EXPECT_EQ(Receive(listener), "");
    EXPECT_EQ(Ask("PING\n\n"), "NACK\n\n");
    EXPECT_TRUE(Ask("PRESET AVAILABILITY:\n\n").starts_with("NACK\n\nPRESET AVAILABILITY:\n"));
    Order("nack off");
    EXPECT_EQ(Ask(gain), "ACK\n\n" + gain);
}

TEST_F(SimulationTest, AcknowledgesOrDoesNot) {
    Order("ack off");
    EXPECT_EQ(Ask(gain), gain);
    Order("ack on");
    EXPECT_EQ(Ask("PING\n\n"), "ACK\n\n");
}

TEST_F(SimulationTest, FallsSilentAndResumes) {
    Order("silent");
    EXPECT_EQ(Ask(gain), "");
    Order("speak");
    EXPECT_EQ(Ask("PING\n\n"), "ACK\n\n");
}

TEST_F(SimulationTest, SendsNonsenseOnce) {
    Order("garbage");
    EXPECT_TRUE(Receive().ends_with("?\n\n"));
    EXPECT_EQ(Receive(), "");
}

TEST_F(SimulationTest, ForgetsHostsThatHaveGone) {
    simulation.Disconnect(listener, 0ms);
    EXPECT_EQ(Ask(gain), "ACK\n\n" + gain);
    EXPECT_THROW(simulation.Take(listener, 0ms), std::out_of_range);
}

TEST(CommandHelp, ListsCommandsThatCanAllBeRead) {
    int count = 0;
    ForEachLine(CommandHelp(), [&](std::string_view line) {
        const std::string_view word = Trimmed(line.substr(0, 24));
        const bool isSet = word.starts_with("set ");
        EXPECT_TRUE(ReadCommand(isSet ? "set VIDEO PROC AMP Gain 12" : word).command) << line;
        ++count;
    });
    EXPECT_EQ(count, static_cast<int>(CommandKind::Quit) + 1);
}

}  // namespace
}  // namespace Morquil::Simulator
