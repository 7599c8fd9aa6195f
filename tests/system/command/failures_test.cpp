// What the command line prints and returns when something fails.
#include <gtest/gtest.h>

#include <chrono>

#include "command/properties/value.h"
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"
#include "tests/system/command/invocation.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using namespace std::chrono_literals;

// These make no connection.
constexpr const char* nowhere = "127.0.0.1";

// A device with this gain that acknowledges everything and reports nothing.
DeviceScript UnresponsiveDevice() {
    return CompleteDevice();
}

// A device that echoes everything.
DeviceScript EchoingDevice() {
    DeviceScript script = CompleteDevice();
    script.respond = [answers = script.answers](const std::string& block) {
        const auto found = answers.find(block.substr(0, block.find(':')));
        return "ACK\n\n" + (found != answers.end() ? found->second : block);
    };
    return script;
}

TEST(CommandFailures, AWrongWordIsRefusedBeforeConnecting) {
    const Outcome outcome = RunCommand(nowhere, {"set", "output.video-mode", "1080i51"});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_EQ(outcome.err, "morquilctl: output.video-mode: '1080i51' is not a video mode; nearest: 1080i50\n");
    EXPECT_EQ(outcome.out, "");
}

TEST(CommandFailures, AWrongNameIsRefusedWithTheNearest) {
    const Outcome outcome = RunCommand(nowhere, {"get", "proc-amp.gian"});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_EQ(outcome.err, "morquilctl: 'proc-amp.gian' is not a property; nearest: proc-amp.gain\n");
}

TEST(CommandFailures, MisuseIsReportedInOneLine) {
    const std::vector<std::vector<std::string>> lines = {{},
                                                         {"dance"},
                                                         {"set", "proc-amp.gain"},
                                                         {"set", "input.signal-present", "true"},
                                                         {"get", "timecode.start"},
                                                         {"watch", "timecode.start"},
                                                         {"get", "--timeout", "0", "device.name"},
                                                         {"get", "--timeout", "soon", "device.name"},
                                                         {"preset", "name", "7"},
                                                         {"preset", "save", "first"},
                                                         {"load", "there is no such file"},
                                                         {"completion", "csh"},
                                                         {"-d", "", "status"},
                                                         {"ranges", "device.name"},
                                                         {"-d"},
                                                         {"get", "--valeu"},
                                                         {"preset"},
                                                         {"preset", "forget", "1"},
                                                         {"status", "now"},
                                                         {"diff"},
                                                         {"apply", "there is no such file"},
                                                         {"copy"},
                                                         {"-d", "a", "-d", "b", "watch"}};
    for (const std::vector<std::string>& line : lines) {
        const Outcome outcome = RunCommand(nowhere, line);
        EXPECT_EQ(outcome.code, ExitCode::Usage) << outcome.err;
        EXPECT_EQ(outcome.err.find("morquilctl: "), 0u) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
    }
}

TEST(CommandFailures, AnUnknownCommandOrOptionIsNamedWithTheNearest) {
    const auto failureOf = [](const std::vector<std::string>& line) { return RunCommand(nowhere, line).err; };
    EXPECT_EQ(failureOf({"wacth"}), "morquilctl: 'wacth' is not a command; nearest: watch\n");
    EXPECT_EQ(failureOf({"-t", "3", "stat"}), "morquilctl: 'stat' is not a command; nearest: status\n");
    EXPECT_EQ(failureOf({"preset", "recal", "1"}), "morquilctl: preset: 'recal' is not a command; nearest: recall\n");
    EXPECT_EQ(failureOf({"get", "--jsn"}), "morquilctl: '--jsn' is not an option; nearest: --json\n");
    EXPECT_EQ(failureOf({}), "morquilctl: a command is missing; see: morquilctl --help\n");
    EXPECT_EQ(failureOf({"-d"}), "morquilctl: --device: the value is missing; see: morquilctl --help\n");
    EXPECT_EQ(failureOf({"status", "now"}),
              "morquilctl: status: unexpected argument 'now'; see: morquilctl status --help\n");
}

TEST(CommandFailures, ANumberOutsideTheDevicesRangeIsRefused) {
    ScriptedDevice device(CompleteDevice());
    const Outcome outcome = RunCommand(device.Address(), {"set", "proc-amp.gain", "61"});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_EQ(outcome.err, "morquilctl: proc-amp.gain: 61 is outside -60 to 60\n");
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_FALSE(device.HasReceivedChange());
}

TEST(CommandFailures, AMissingDeviceIsUnreachable) {
    const LoopbackListener unused;  // only to find an address where nothing listens
    const Outcome outcome = RunCommand("127.255.255.1", {"status"});
    EXPECT_EQ(outcome.code, ExitCode::Unreachable);
    EXPECT_EQ(outcome.err, "morquilctl: 127.255.255.1: refuses the connection: nothing listens on port 9800\n");
}

TEST(CommandFailures, ASilentDeviceTimesOutInTime) {
    ScriptedDevice device({.greeting = preamble});
    const auto start = std::chrono::steady_clock::now();
    const Outcome outcome = RunCommand(device.Address(), {"get", "-t", "0.4", "device.name"});
    const auto duration = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(outcome.code, ExitCode::TimedOut);
    EXPECT_EQ(outcome.err, "morquilctl: " + device.Address() +
                               ": connected, but the device has not sent its complete state within 0.4 s\n");
    EXPECT_GE(duration, 400ms);
    EXPECT_LT(duration, 650ms);
    device.HangUp();
}

TEST(CommandFailures, AnInterruptionEndsAnAttemptToConnectAtOnce) {
    ScriptedDevice device({.greeting = preamble});
    RunningCommand command(device.Address(), {"get", "-t", "20", "device.name"});
    ASSERT_TRUE(device.AwaitHost());
    const auto start = std::chrono::steady_clock::now();
    command.Interrupt();
    const Outcome outcome = command.Join();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    EXPECT_EQ(outcome.code, ExitCode::Interrupted);
    EXPECT_EQ(outcome.out + outcome.err, "");
    device.HangUp();
}

TEST(CommandFailures, AnInterruptionEndsTheWaitForAValueAndShowsWhatWasNotApplied) {
    ScriptedDevice device(UnresponsiveDevice());
    RunningCommand command(device.Address(), {"--json", "set", "-t", "20", "proc-amp.gain", "12"});
    EXPECT_EQ(device.NextChange(), "VIDEO PROC AMP:\nGain: 12\n\n");
    command.Interrupt();
    const Outcome outcome = command.Join();
    EXPECT_EQ(outcome.code, ExitCode::Interrupted);
    EXPECT_EQ(Command::Json::parse(outcome.out).at("changes").at(0).at("reason"), "interrupted");
}

TEST(CommandFailures, AWatchThatReconnectsTimesOutToo) {
    ScriptedDevice device({.greeting = preamble});
    const Outcome outcome = RunCommand(device.Address(), {"watch", "--wait-reconnect", "-t", "0.2"});
    EXPECT_EQ(outcome.code, ExitCode::TimedOut) << outcome.err;
    device.HangUp();
}

TEST(CommandFailures, AValueThatTheDeviceDoesNotReportIsNotApplied) {
    ScriptedDevice device(UnresponsiveDevice());
    const auto start = std::chrono::steady_clock::now();
    const Outcome outcome = RunCommand(device.Address(), {"set", "-t", "0.5", "proc-amp.gain", "12"});
    EXPECT_LT(std::chrono::steady_clock::now() - start, 750ms);
    EXPECT_EQ(outcome.code, ExitCode::NotApplied);
    EXPECT_EQ(outcome.err, "morquilctl: proc-amp.gain: not applied within 0.5 s: the device reports 0, not 12\n");
    device.HangUp();
}

TEST(CommandFailures, WhatWasAppliedBeforeAFailureIsShown) {
    DeviceScript script = EchoingDevice();
    script.respond = [echo = script.respond](const std::string& block) {
        return block.find("Gain: 9") != std::string::npos ? "NACK\n\n" : echo(block);
    };
    ScriptedDevice device(script);
    const Outcome outcome =
        RunCommand(device.Address(), {"--json", "set", "proc-amp.gain", "-12", "proc-amp.gain", "9"});
    EXPECT_EQ(outcome.code, ExitCode::NotApplied);
    const Command::Json changes = Command::Json::parse(outcome.out).at("changes");
    EXPECT_EQ(changes.at(0).at("result"), "applied");
    EXPECT_EQ(changes.at(0).at("value"), -12);
    EXPECT_EQ(changes.at(1).at("result"), "failed");
}

TEST(CommandFailures, AConnectionThatEndsWhileItSetsIsLost) {
    DeviceScript script = CompleteDevice();
    ScriptedDevice device(script);
    RunningCommand command(device.Address(), {"set", "proc-amp.gain", "12"});
    EXPECT_EQ(device.NextChange(), "VIDEO PROC AMP:\nGain: 12\n\n");
    device.HangUp();
    const Outcome outcome = command.Join();
    EXPECT_EQ(outcome.code, ExitCode::ConnectionLost);
    EXPECT_EQ(outcome.err, "morquilctl: " + device.Address() + ": the connection was lost\n");
}

TEST(CommandFailures, AMissingValueIsReportedWhenAskedByName) {
    ScriptedDevice device(CompleteDevice());
    const Outcome one = RunCommand(device.Address(), {"get", "color.green"});
    EXPECT_EQ(one.code, ExitCode::NotApplied);
    EXPECT_EQ(one.err, "morquilctl: color.green: the device has not reported the value\n");
    const Outcome all = RunCommand(device.Address(), {"get", "color"});
    EXPECT_EQ(all.code, ExitCode::Done);
    EXPECT_EQ(all.out, "color.red    0\ncolor.green  -\ncolor.blue   -\n");
}

TEST(CommandFailures, ALockedDeviceSaysSo) {
    std::string locked = deviceBlock;
    const std::string open = "Remote lock: false";
    locked.replace(locked.find(open), open.size(), "Remote lock: true");
    ScriptedDevice device({.greeting = std::string(preamble) + locked});
    const Outcome outcome = RunCommand(device.Address(), {"status"});
    EXPECT_EQ(outcome.code, ExitCode::Unreachable);
    EXPECT_NE(outcome.err.find("locked against remote control"), std::string::npos) << outcome.err;
}

TEST(CommandFailures, NegativeNumbersAreNotOptions) {
    ScriptedDevice device(EchoingDevice());
    const Outcome outcome = RunCommand(device.Address(), {"set", "proc-amp.gain", "-5"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_EQ(outcome.out, "proc-amp.gain  -5\n");
}

TEST(CommandFailures, TextsMayBeginWithAHyphenAfterTheMark) {
    ScriptedDevice device(EchoingDevice());
    const Outcome outcome = RunCommand(device.Address(), {"set", "network.name", "--", "--json"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_EQ(outcome.out, "network.name  --json\n");
}

}  // namespace
}  // namespace Morquil::Testing
