// What the command line says of a device that cannot be reached, or that has stopped answering.
#include <gtest/gtest.h>

#include "command/properties/value.h"
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"
#include "tests/system/command/talking_port.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using namespace std::chrono_literals;
using Then = TalkingPort::Then;

std::string Message(const std::string& address, const std::string& sentence) {
    return "morquilctl: " + address + ": " + sentence + "\n";
}

TEST(Connecting, RefusesAPortAndIpv6AtOnce) {
    const Outcome port = RunCommand("", {"-d", "10.0.0.1:9800", "status"});
    EXPECT_EQ(port.code, ExitCode::Usage);
    EXPECT_EQ(port.err, Message("10.0.0.1:9800", "has a port: write 10.0.0.1, the port is always 9800"));
    const Outcome version6 = RunCommand("[::1]", {"status"});
    EXPECT_EQ(version6.code, ExitCode::Usage);
    EXPECT_NE(version6.err.find("is an IPv6 address"), std::string::npos) << version6.err;
}

TEST(Connecting, ChecksEveryAddressOfAGroupFirst) {
    const TemporaryFolder folder;
    const std::string groups = folder.Make("groups", "rack: 127.0.0.1 10.0.0.1:80\n");
    const Outcome outcome = RunCommand("@rack", {"status"}, {.groupsFile = groups});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_EQ(outcome.out, "");
}

TEST(Connecting, SaysThatANameIsUnknown) {
    const Outcome outcome = RunCommand("nowhere.invalid", {"status"});
    EXPECT_EQ(outcome.code, ExitCode::Unreachable);
    EXPECT_NE(outcome.err.find("nowhere.invalid: cannot be resolved"), std::string::npos) << outcome.err;
}

TEST(Connecting, SaysThatAnotherProgramAnswersBeforeTheTimeIsUp) {
    const TalkingPort port("SSH-2.0-OpenSSH_9.2\r\n", Then::StaysOpen, 2);
    const Outcome outcome = RunCommand(port.Address(), {"get", "-t", "20", "device.name"});
    EXPECT_EQ(outcome.code, ExitCode::Unreachable);
    EXPECT_EQ(outcome.err, Message(port.Address(),
                                   "is not a Morquil device: another program answers on port 9800, which says "
                                   "'SSH-2.0-OpenSSH_9.2'"));
}

TEST(Connecting, SaysThatADeviceBreaksOffInTheMiddleOfItsState) {
    const TalkingPort port(std::string(preamble) + "VIDEO PROC AMP:\nGain: 1", Then::HangsUp, 2);
    const Outcome outcome = RunCommand(port.Address(), {"get", "device.name"});
    EXPECT_EQ(outcome.code, ExitCode::Unreachable);
    EXPECT_EQ(outcome.err, Message(port.Address(), "ends the connection before it has sent its complete state"));
}

TEST(Connecting, SaysThatTheDeviceSpeaksAnotherVersion) {
    const TalkingPort port("PROTOCOL PREAMBLE:\nVersion: 1.21\n\n", Then::StaysOpen, 1);
    const Outcome outcome = RunCommand(port.Address(), {"get", "device.name"});
    EXPECT_EQ(outcome.code, ExitCode::Unreachable);
    EXPECT_EQ(outcome.err, Message(port.Address(), "the device's firmware speaks another version of the protocol"));
}

TEST(Connecting, SaysTheSameToAWatchThatReconnects) {
    const Outcome outcome = RunCommand("127.255.255.1", {"watch", "--wait-reconnect"});
    EXPECT_EQ(outcome.code, ExitCode::Unreachable);
    EXPECT_EQ(outcome.err, Message("127.255.255.1", "refuses the connection: nothing listens on port 9800"));
}

TEST(FrozenDevice, EndsAWatch) {
    SimulatedOnNetwork device;
    const Outcome outcome = RunCommand(device.Address(), {"watch"}, {.longestSilence = 300ms});
    EXPECT_EQ(outcome.code, ExitCode::ConnectionLost);
    EXPECT_NE(outcome.err.find(Message(device.Address(), "the device has not answered for 0.3 s")), std::string::npos)
        << outcome.err;
}

TEST(FrozenDevice, IsConnectedAgainByAWatchThatReconnects) {
    SimulatedOnNetwork device;
    RunningCommand watch(device.Address(), {"watch", "--json", "--wait-reconnect"}, {.longestSilence = 300ms});
    EXPECT_TRUE(watch.AwaitOut("the device has not answered for 0.3 s"));
    EXPECT_TRUE(watch.AwaitOut("connected again"));
    watch.Interrupt();
    const Outcome outcome = watch.Join();
    EXPECT_EQ(outcome.code, ExitCode::Done);
    const Command::Json first = Command::Json::parse(outcome.out.substr(0, outcome.out.find('\n')));
    EXPECT_EQ(first.at("event"), "lost");
}

TEST(PresetRecall, SaysWhatCanBeKnownOfAPresetThatChangesNothing) {
    ScriptedDevice device(CompleteDevice());
    const Outcome outcome = RunCommand(device.Address(), {"preset", "recall", "3"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_EQ(outcome.err,
              "morquilctl: preset 3: no setting has changed: it holds the settings that the device already had, or was "
              "never saved; devices do not report which\n");
}

TEST(PresetRecall, SaysNothingOfAPresetThatHasChangedSomething) {
    const SimulatedOnNetwork device;
    RunCommand(device.Address(), {"preset", "save", "1"});
    RunCommand(device.Address(), {"set", "proc-amp.gain", "12"});
    const Outcome outcome = RunCommand(device.Address(), {"preset", "recall", "1"});
    EXPECT_EQ(outcome.code, ExitCode::Done);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(RunCommand(device.Address(), {"get", "--value", "proc-amp.gain"}).out, "0\n");
}

}  // namespace
}  // namespace Morquil::Testing
