// Several devices in one program, each at its own address.
#include <gtest/gtest.h>

#include "tests/kit/temporary_folder.h"
#include "tests/system/simulator_program/raw_host.h"
#include "tests/system/simulator_program/running_program.h"
#include "tests/system/simulator_program/started_program.h"

namespace Morquil::Simulator {
namespace {

using Morquil::Testing::ProgramRun;
using Morquil::Testing::RawHost;
using Morquil::Testing::RunningProgram;
using Morquil::Testing::RunProgram;
using Morquil::Testing::StartedProgram;
using Morquil::Testing::TemporaryFolder;

const std::string ready = "listening on 127.0.0.1:";

/// The port in the line that says that a program listens.
std::uint16_t PortOf(const std::string& line) {
    EXPECT_TRUE(line.starts_with(ready)) << line;
    return line.starts_with(ready) ? static_cast<std::uint16_t>(std::stoi(line.substr(ready.size()))) : 0;
}

/// What a script prints with three devices, after the line that says that they listen.
std::string OutputOf(const std::string& script, const std::string& devices = "3") {
    const TemporaryFolder folder;
    const std::string file = folder.Make("script.txt", script + "\nquit\n");
    const ProgramRun run = RunProgram({"--port", "0", "--devices", devices, "--script", file});
    return run.output.starts_with(ready) ? run.output.substr(run.output.find('\n') + 1) : run.output;
}

class FleetTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(program, nullptr);
        for (const char* address : {"127.0.0.1", "127.0.0.2", "127.0.0.3"}) {
            hosts.push_back(std::make_unique<RawHost>(address, program->Port()));
            greetings.push_back(Ask(hosts.size(), "PING\n\n"));
        }
    }

    /// What a host has received up to the answer to its ping.
    std::string Ask(std::size_t number, const std::string& text) {
        hosts[number - 1]->Send(text);
        return hosts[number - 1]->ReceiveUntil("ACK\n\n");
    }
    /// What a host has received meanwhile.
    std::string News(std::size_t number) {
        const std::string text = Ask(number, "PING\n\n");
        return text.substr(0, text.size() - std::string_view("ACK\n\n").size());
    }

    std::unique_ptr<RunningProgram> program = RunningProgram::AtAnyPort(Options{.devices = 3});
    std::vector<std::unique_ptr<RawHost>> hosts;
    std::vector<std::string> greetings;
};

TEST_F(FleetTest, GivesEachDeviceItsOwnNameAndAddress) {
    for (std::size_t number = 1; number <= 3; ++number) {
        const std::string own = std::to_string(number);
        const std::string ipAddress = std::to_string(0x7f000000 + number);
        const std::string& greeting = greetings[number - 1];
        EXPECT_NE(greeting.find("\nModel name: Morquil Simulator " + own + "\n"), std::string::npos) << greeting;
        EXPECT_NE(greeting.find("\nFriendly name: Rack " + own + "\n"), std::string::npos) << greeting;
        EXPECT_NE(greeting.find("\nIP address: " + ipAddress + "\n"), std::string::npos) << greeting;
    }
}

TEST_F(FleetTest, KeepsAHostsChangeToTheDeviceThatItWasMadeAt) {
    hosts[1]->Send("VIDEO PROC AMP:\nGain: 12\n\n");
    const std::string echo = "VIDEO PROC AMP:\nGain: 12\n\n";
    EXPECT_EQ(hosts[1]->ReceiveUntil(echo), "ACK\n\n" + echo);
    EXPECT_EQ(News(1), "");
    EXPECT_EQ(News(3), "");
    RawHost later("127.0.0.3", program->Port());
    later.Send("PING\n\n");
    EXPECT_NE(later.ReceiveUntil("ACK\n\n").find("VIDEO PROC AMP:\nGain: 0\n"), std::string::npos);
}

TEST_F(FleetTest, CarriesACommandOutAtTheDevicesThatItNames) {
    const std::string report = "VIDEO PROC AMP:\nGain: 12\n\n";
    program->Submit("@2-3 set VIDEO PROC AMP Gain 12");
    EXPECT_EQ(hosts[1]->ReceiveUntil(report), report);
    EXPECT_EQ(hosts[2]->ReceiveUntil(report), report);
    EXPECT_EQ(News(1), "");
}

TEST_F(FleetTest, HangsUpOnTheHostsOfOneDevice) {
    program->Submit("@2 drop");
    EXPECT_EQ(hosts[1]->ReceiveToEnd(), "");
    EXPECT_TRUE(hosts[1]->SeesClose());
    EXPECT_EQ(News(1), "");
    EXPECT_EQ(News(3), "");
}

TEST_F(FleetTest, HangsUpOnTheHostsOfAllDevices) {
    program->Submit("@* drop");
    for (const auto& host : hosts) {
        EXPECT_EQ(host->ReceiveToEnd(), "");
        EXPECT_TRUE(host->SeesClose());
    }
}

TEST_F(FleetTest, GivesADeviceFaultsOfItsOwn) {
    program->Submit("@2 nack on");
    program->Submit("@2 lock");
    hosts[1]->ReceiveUntil("Remote lock: true\n\n");
    hosts[1]->Send("PING\n\n");
    EXPECT_EQ(hosts[1]->ReceiveUntil("ACK\n\n"), "NACK\n\n");
    EXPECT_EQ(Ask(3, "PING\n\n"), "ACK\n\n");
}

TEST_F(FleetTest, RefusesHostsOfADeviceThatIsOfflineUntilItIsOnlineAgain) {
    program->Submit("@2 offline");
    program->Submit("@1 lock");  // carried out after it
    EXPECT_EQ(hosts[1]->ReceiveToEnd(), "");
    hosts[0]->ReceiveUntil("Remote lock: true\n\n");
    EXPECT_FALSE(RawHost("127.0.0.2", program->Port()).IsConnected());
    EXPECT_TRUE(RawHost("127.0.0.3", program->Port()).IsConnected());
    program->Submit("@2 online");
    program->Submit("@1 unlock");
    hosts[0]->ReceiveUntil("Remote lock: false\n\n");
    RawHost host("127.0.0.2", program->Port());
    EXPECT_TRUE(host.ReceiveUntil("\n\n").starts_with("PROTOCOL PREAMBLE:\n"));
}

TEST(Fleet, IsReadyWhenItHasPrintedFirstAndLastAddress) {
    const TemporaryFolder folder;
    const std::string script = folder.Make("script.txt", "@300 wait-for-host\n@300 wait-for-no-host\nquit\n");
    StartedProgram program({"--port", "0", "--devices", "300", "--script", script});
    const std::string line = program.NextLine();
    const std::string port = ":" + std::to_string(PortOf(line));
    EXPECT_EQ(line, "listening on 127.0.0.1" + port + " to 127.0.1.44" + port + " (300 devices)");
    {
        RawHost host("127.0.1.44", PortOf(line));
        EXPECT_TRUE(host.ReceiveUntil("\n\n").starts_with("PROTOCOL PREAMBLE:\n"));
    }
    EXPECT_EQ(program.AwaitEnd(), 0);
}

TEST(Fleet, RepliesWithTheNumberOfTheDevice) {
    EXPECT_EQ(OutputOf("@3 set VIDEO PROC AMP Gain 12"), "@3 panel: VIDEO PROC AMP: Gain: 12\n");
    EXPECT_EQ(OutputOf("@2-3 set VIDEO PROC AMP Gain 61"),
              "morquil-sim: @2 VIDEO PROC AMP, Gain: 61: the device does not offer this value\n"
              "morquil-sim: @3 VIDEO PROC AMP, Gain: 61: the device does not offer this value\n");
    const std::string status = OutputOf("@2 offline\n@* status");
    EXPECT_TRUE(status.starts_with("@1 status: 127.0.0.1:")) << status;
    EXPECT_NE(status.find(" online, hosts: 0\n@2 status: 127.0.0.2:"), std::string::npos) << status;
    EXPECT_NE(status.find(" offline, hosts: 0\n@3 status: 127.0.0.3:"), std::string::npos) << status;
}

TEST(Fleet, OfOneDevicePrintsWhatADeviceOnItsOwnPrints) {
    EXPECT_EQ(OutputOf("set VIDEO PROC AMP Gain 12\n@1 set VIDEO PROC AMP Gain 13", "1"),
              "panel: VIDEO PROC AMP: Gain: 12\npanel: VIDEO PROC AMP: Gain: 13\n");
    const auto program = RunningProgram::AtAnyPort(Options{.devices = 1});
    const auto lone = RunningProgram::AtAnyPort({});
    RawHost host("127.0.0.1", program->Port());
    RawHost loneHost("127.0.0.1", lone->Port());
    host.Send("PING\n\n");
    loneHost.Send("PING\n\n");
    EXPECT_EQ(host.ReceiveUntil("\n\nACK\n\n"), loneHost.ReceiveUntil("\n\nACK\n\n"));
}

TEST(Fleet, DoesNotStartWithAScriptThatNamesNoDevices) {
    const std::string output = OutputOf("\n@2 lock\ndrop");
    EXPECT_TRUE(
        output.ends_with("script.txt: line 3: expected a device from @1 to @3, a range such as @1-3, or @* for all "
                         "before \"drop\"\n"))
        << output;
}

TEST(Fleet, OccupiesNoAddressWhenOneIsTaken) {
    // Another port could be taken at the first address, too, be it by a connection that has just ended.
    const std::uint16_t freePort = RunningProgram::AtAnyPort(Options{.devices = 3})->Port();
    Options second{.port = freePort};
    second.address = "127.0.0.2";
    const auto taken = RunningProgram::At(second);
    ASSERT_NE(taken, nullptr);
    const std::string port = std::to_string(freePort);
    const ProgramRun run = RunProgram({"--port", port, "--devices", "3"});
    EXPECT_TRUE(run.output.starts_with("morquil-sim: cannot listen on 127.0.0.2:" + port + ": ")) << run.output;
    EXPECT_EQ(run.exitStatus, 1);

    Options fleet{.devices = 3};
    fleet.port = freePort;
    Program program(fleet);
    EXPECT_EQ(program.Start(), 1);
    EXPECT_FALSE(RawHost("127.0.0.1", freePort).IsConnected());
    EXPECT_FALSE(RawHost("127.0.0.3", freePort).IsConnected());
}

}  // namespace
}  // namespace Morquil::Simulator
