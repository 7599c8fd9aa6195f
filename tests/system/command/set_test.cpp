// Setting is all or nothing as far as can be known before, and ends as soon as the device has decided.
#include <gtest/gtest.h>

#include <chrono>

#include "command/properties/value.h"
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using Command::Json;
using namespace std::chrono_literals;

// A time limit that a command reaches only if it waits for something that never comes, and the bound for noticing.
const std::string longLimit = "30";
constexpr auto atOnce = 10s;

// Answers each change, but not the requests for what is available.
DeviceScript DeviceThatAnswers(std::function<std::string(const std::string& block)> answer) {
    DeviceScript script = CompleteDevice();
    script.respond = [answers = script.answers, answer = std::move(answer)](const std::string& block) {
        const auto found = answers.find(block.substr(0, block.find(':')));
        return found != answers.end() ? "ACK\n\n" + found->second : answer(block);
    };
    return script;
}

std::string Echo(const std::string& block) {
    return "ACK\n\n" + block;
}

Outcome RunAtOnce(const std::string& address, const std::vector<std::string>& words) {
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome = RunCommand(address, words);
    EXPECT_LT(std::chrono::steady_clock::now() - start, atOnce) << outcome.err;
    return outcome;
}

TEST(Setting, SendsNothingUnlessEveryValueIsAccepted) {
    ScriptedDevice device(DeviceThatAnswers(Echo));
    const Outcome outcome =
        RunCommand(device.Address(), {"set", "proc-amp.hue", "1", "proc-amp.gain", "99", "proc-amp.ry", "7"});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_EQ(outcome.err, "morquilctl: proc-amp.gain: 99 is outside -60 to 60; proc-amp.ry: 7 is outside -1 to 1\n");
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_FALSE(device.HasReceivedChange());
}

TEST(Setting, RefusesAWordThatIsNotOfferedAtOnceWithTheNearest) {
    ScriptedDevice device(DeviceThatAnswers(Echo));
    const Outcome outcome =
        RunAtOnce(device.Address(), {"set", "-t", longLimit, "proc-amp.gain", "1", "input.video-source", "SDI2"});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_EQ(outcome.err, "morquilctl: input.video-source: SDI2 is not offered now; nearest: SDI1, HDMI\n");
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_FALSE(device.HasReceivedChange());
}

TEST(Setting, SaysAtOnceThatTheDeviceRefuses) {
    ScriptedDevice device(DeviceThatAnswers([](const std::string&) { return "NACK\n\n"; }));
    const Outcome outcome = RunAtOnce(device.Address(), {"set", "-t", longLimit, "proc-amp.gain", "12"});
    EXPECT_EQ(outcome.code, ExitCode::NotApplied);
    EXPECT_EQ(outcome.err, "morquilctl: proc-amp.gain: the device has refused 12: the device reports 0\n");
}

TEST(Setting, SaysAtOnceThatTheDeviceReportsAnotherValue) {
    ScriptedDevice device(DeviceThatAnswers([](const std::string&) { return "ACK\n\nVIDEO PROC AMP:\nGain: 10\n\n"; }));
    const Outcome outcome = RunAtOnce(device.Address(), {"set", "-t", longLimit, "proc-amp.gain", "12"});
    EXPECT_EQ(outcome.code, ExitCode::NotApplied);
    EXPECT_EQ(outcome.err, "morquilctl: proc-amp.gain: not applied: the device reports 10, not 12\n");
}

TEST(Setting, SaysThatACommandWasNotAcknowledged) {
    DeviceScript script = DeviceThatAnswers([](const std::string&) { return ""; });
    ScriptedDevice device(script);
    const Outcome outcome = RunCommand(device.Address(), {"set", "-t", "0.5", "preset.save", "2"});
    EXPECT_EQ(outcome.code, ExitCode::TimedOut);
    EXPECT_EQ(outcome.err, "morquilctl: preset.save: the device has not acknowledged it within 0.5 s\n");
    device.HangUp();
}

TEST(Setting, SaysAtOnceThatTheDeviceRefusesACommand) {
    ScriptedDevice device(DeviceThatAnswers([](const std::string&) { return "NACK\n\n"; }));
    const Outcome outcome = RunAtOnce(device.Address(), {"set", "-t", longLimit, "preset.save", "2"});
    EXPECT_EQ(outcome.code, ExitCode::NotApplied);
    EXPECT_EQ(outcome.err, "morquilctl: preset.save: the device has refused it\n");
}

TEST(Setting, LeavesToTheDeviceWhatAnEarlierModeMayAllow) {
    SimulatedOnNetwork device;
    const Outcome outcome =
        RunCommand(device.Address(), {"set", "output.video-mode", "2160p50", "output.demux-mode", "QuadLink"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    const Outcome refused = RunCommand(device.Address(), {"set", "output.demux-mode", "SingleLink"});
    EXPECT_EQ(refused.code, ExitCode::Usage) << refused.err;
}

TEST(Setting, NeverCallsAChangeThatFailsAfterAnotherAMisuse) {
    SimulatedOnNetwork device;
    const Outcome outcome = RunAtOnce(device.Address(), {"--json", "set", "-t", longLimit, "output.video-mode",
                                                         "2160p50", "output.demux-mode", "DualLink"});
    EXPECT_EQ(outcome.code, ExitCode::NotApplied) << outcome.err;
    const Json changes = Json::parse(outcome.out).at("changes");
    EXPECT_EQ(changes.at(0).at("result"), "applied");
    EXPECT_EQ(changes.at(1).at("result"), "failed");
}

TEST(Setting, AcceptsTheDevicesOwnSpellingOfAText) {
    ScriptedDevice device(
        DeviceThatAnswers([](const std::string&) { return "ACK\n\nNETWORK CONFIG:\nFriendly name: studio\n\n"; }));
    const Outcome outcome = RunAtOnce(device.Address(), {"set", "-t", longLimit, "network.name", "STUDIO"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
}

}  // namespace
}  // namespace Morquil::Testing
