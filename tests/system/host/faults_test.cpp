// How the library handles each fault that the simulated device can have.
#include <gtest/gtest.h>

#include <chrono>

#include "simulator/device/simulated_device.h"
#include "simulator/text/text_lines.h"
#include "tests/kit/watchdog.h"
#include "tests/system/host/faulty_device.h"

namespace Morquil::Testing {
namespace {

using namespace std::chrono_literals;
using Recording = FaultyDevice::Recording;
using Simulator::Fragmentation;
using Simulator::Options;
using Simulator::SimulatedDevice;
using std::chrono::steady_clock;

const Strings connectedAndDisconnected = {"connected", "disconnected cfnr"};
const Strings neverConnected = {"disconnected cfnr"};

constexpr int setVideoGain = 3;
constexpr int getGain = 4;
constexpr int getGainRange = 5;

class Faults : public testing::Test {
protected:
    // What a system sets up once for all devices, and keeps, must also exist before anything is counted.
    static void SetUpTestSuite() { HealthyMirror(); }
};

/// The blocks of `text`, each of which ends with an empty line, without that line.
Strings BlocksOf(std::string text) {
    Strings blocks;
    for (std::size_t end = text.find("\n\n"); end != std::string::npos; end = text.find("\n\n")) {
        blocks.push_back(text.substr(0, end + 1));
        text.erase(0, text.find_first_not_of('\n', end));
    }
    return blocks;
}

std::size_t CountOf(const std::string& part, const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

/// What a device sends, as a host saves it: without the device's identity, and with its phases, which are numbers on
/// the wire, as flags.
std::string AsSaved(const std::string& said) {
    std::string saved;
    Simulator::ForEachLine(said, [&](std::string_view line) {
        const bool isIdentity = line.starts_with("Model name:") || line.find("Version: 0x") != std::string_view::npos;
        const bool isPhase = line.find("Phase") != std::string_view::npos && line.ends_with(": 0");
        if (!isIdentity) {
            saved += std::string(line.substr(0, line.size() - (isPhase ? 1 : 0))) + (isPhase ? "false\n" : "\n");
        }
    });
    return saved;
}

/// Connects and waits. If the device is lost meanwhile, the call returns a device that is not connected, or is about to
/// lose its connection.
void ExpectLostMeanwhile(const std::string& address) {
    ConnectOutcome outcome = Connect(address);
    EXPECT_EQ(outcome.result, ok);
    EXPECT_EQ(outcome.reason, "cfnr");
    ASSERT_TRUE(outcome.device);
    EXPECT_TRUE(Eventually([&] { return MirrorOf(outcome.device) == EmptyMirror(); }));
    EXPECT_EQ(WithinASecond([&] { return outcome.device.Release(); }), 0U);
}

void ExpectRefused(const std::string& address, const std::string& reason) {
    const auto start = steady_clock::now();
    const ConnectOutcome outcome = Connect(address);
    EXPECT_LT(steady_clock::now() - start, 3s);
    EXPECT_EQ(outcome.result, failed);
    EXPECT_EQ(outcome.reason, reason);
    EXPECT_FALSE(outcome.device);
}

// ---- How the device sends: the host notices nothing ----

TEST_F(Faults, NoneLeavesAMirrorOfWhatTheDeviceReports) {
    FaultyDevice device({});
    device.ExpectConnected();

    const std::string said = AsSaved(SimulatedDevice({}).CompleteDump());
    int compared = 0;
    for (const std::string& block : BlocksOf(MirrorOf(device.Object()))) {
        EXPECT_NE(said.find("\n\n" + block + "\n"), std::string::npos) << block;
        ++compared;
    }
    EXPECT_EQ(compared, 14);
    device.ExpectConversation();
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, LatencyDelaysEveryAnswerByItself) {
    constexpr auto latency = 10ms;
    const auto start = steady_clock::now();
    FaultyDevice device(Options{.faults = {.latency = latency}});
    device.ExpectConnected();
    // The greeting, followed by fourteen requests, each of which waits for the answer to the previous one.
    EXPECT_GE(steady_clock::now() - start, 14 * latency);
    device.ExpectConversation();
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, SingleBytesAreReadLikeWholeBlocks) {
    FaultyDevice device(Options{.faults = {.fragmentation = Fragmentation::Byte}}, Recording::Yes);
    device.ExpectConnected();
    device.ExpectConversation();
    EXPECT_EQ(device.LongestPiece(), 1U);
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, PiecesOfAnyLengthAreReadLikeWholeBlocks) {
    FaultyDevice device(Options{.faults = {.fragmentation = Fragmentation::Random, .seed = 7}}, Recording::Yes);
    device.ExpectConnected();
    device.ExpectConversation();
    EXPECT_EQ(device.LongestPiece(), 32U);
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, CarriageReturnsAreIgnored) {
    FaultyDevice device(Options{.faults = {.crlf = true}}, Recording::Yes);
    device.ExpectConnected();
    device.ExpectConversation();
    EXPECT_EQ(CountOf("\n", device.DeviceSaid()), CountOf("\r\n", device.DeviceSaid()));
    device.ExpectEnd(connectedAndDisconnected);
}

// ---- What the device sends too much: the host receives the rest ----

TEST_F(Faults, GarbageBetweenBlocksIsSkipped) {
    FaultyDevice device(Options{.faults = {.garbage = true, .seed = 7}}, Recording::Yes);
    device.ExpectConnected();
    device.ExpectConversation();
    device.Submit("garbage");
    EXPECT_EQ(device.TakeNotifications(), "");
    EXPECT_GT(CountOf("?\n\n", device.DeviceSaid()), 20U);
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, LongLinesAreSkippedAndTheirBlocksRead) {
    FaultyDevice device(Options{.faults = {.longLines = true}}, Recording::Yes);
    device.ExpectConnected();
    device.ExpectConversation();
    EXPECT_GT(CountOf(std::string(5000, 'x') + "\n", device.DeviceSaid()), 20U);
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, AFloodIsNotifiedOnceAndCanBeDisconnected) {
    FaultyDevice device(Options{.faults = {.flood = true}}, Recording::Yes);
    device.ExpectConnected();
    device.ExpectConversation();
    device.ExpectEnd(connectedAndDisconnected);
    EXPECT_GT(device.TimesRecorded("Friendly name: Mark "), 100U);
}

TEST_F(Faults, AFloodEndsWithTheLastRelease) {
    FaultyDevice device(Options{.faults = {.flood = true}});
    device.ExpectConnected();
    device.ExpectReleased();
    EXPECT_EQ(device.ConnectionCalls(), Strings{"connected"});
}

TEST_F(Faults, EverythingThatCanBeReadAtOnceIsRead) {
    FaultyDevice device(Options{.faults = {.latency = 2ms,
                                           .fragmentation = Fragmentation::Random,
                                           .crlf = true,
                                           .garbage = true,
                                           .longLines = true,
                                           .seed = 3}});
    device.ExpectConnected();
    device.ExpectConversation();
    device.ExpectEnd(connectedAndDisconnected);
}

// ---- What the device does not send ----

TEST_F(Faults, WithoutAcknowledgementsTheFirstQuestionStaysTheOnlyOne) {
    FaultyDevice device(Options{.faults = {.neverAcknowledge = true}}, Recording::Yes);
    const std::string question = "SUPPORTED CONVERSIONS:\n\n";
    ASSERT_TRUE(Eventually([&] { return device.HostSaid() == question; }));
    device.TakeNotifications();

    // Everything that the device has sent is known, including the answer; nothing else is requested, so nothing is
    // complete.
    std::int32_t supported = 0;
    EXPECT_EQ(device.Object().Call(Slot::isConversionSupported, 7, 4, 0, &supported), ok);
    EXPECT_EQ(supported, 1);
    EXPECT_EQ(device.Number(Iid::videoProcAmp, getGain), 0);
    int least = 0;
    int greatest = 0;
    EXPECT_EQ(device.Object().QueryInterface(Iid::videoProcAmp).Call(getGainRange, &least, &greatest), failed);
    EXPECT_EQ(device.ConnectionCalls(), Strings{});
    EXPECT_EQ(device.HostSaid(), question);
    device.ExpectEnd(neverConnected);
}

TEST_F(Faults, WithoutAnAcknowledgementTheNextSetterWaits) {
    FaultyDevice device({}, Recording::Yes);
    device.ExpectConnected();
    device.Submit("ack off");
    device.TakeNotifications();

    device.Set(Iid::videoProcAmp, setVideoGain, 7);
    EXPECT_TRUE(Eventually([&] { return device.Number(Iid::videoProcAmp, getGain) == 7; }));
    device.Set(Iid::videoProcAmp, setVideoGain, 8);
    EXPECT_EQ(device.TakeNotifications(), "");

    EXPECT_EQ(device.Number(Iid::videoProcAmp, getGain), 7);
    EXPECT_TRUE(device.HostSaid().ends_with("VIDEO PROC AMP:\nGain: 7\n\n"));
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, RefusalsCountAsAnswersAndChangeNothing) {
    FaultyDevice device(Options{.faults = {.refuseAll = true}}, Recording::Yes);
    device.ExpectConnected();

    for (const int gain : {7, 8}) {
        const std::string block = "VIDEO PROC AMP:\nGain: " + std::to_string(gain) + "\n\n";
        device.Set(Iid::videoProcAmp, setVideoGain, gain);
        EXPECT_TRUE(Eventually([&] { return device.HostSaid().ends_with(block); }));
        EXPECT_EQ(device.TakeNotifications(), "");
        EXPECT_EQ(device.Number(Iid::videoProcAmp, getGain), 0);
    }

    device.Submit("nack off");
    device.TakeNotifications();
    device.ExpectConversation();
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, ASilentDeviceIsAskedNothingAndCanBeDisconnected) {
    FaultyDevice device(Options{.faults = {.silent = true}}, Recording::Yes);
    std::int32_t supported = 0;
    ASSERT_TRUE(Eventually(
        [&] { return device.Object().Call(Slot::getNetworkUpdateSupported, &supported) == ok && supported != 0; }));
    EXPECT_EQ(DeviceName(device.Object()), u"");
    EXPECT_EQ(device.HostSaid(), "");
    EXPECT_EQ(device.ConnectionCalls(), Strings{});
    device.ExpectEnd(neverConnected);
}

TEST_F(Faults, WhileTheDeviceIsSilentTheMirrorKeepsItsLastReport) {
    FaultyDevice device({});
    device.ExpectConnected();
    device.Submit("silent");
    device.Submit("set VIDEO PROC AMP Gain 12");
    device.Submit("speak");

    EXPECT_EQ(device.TakeNotifications(), "");
    EXPECT_EQ(MirrorOf(device.Object()), HealthyMirror());
    device.Submit("set VIDEO PROC AMP Gain 13");
    EXPECT_EQ(device.TakeNotifications(), "vpap");
    EXPECT_EQ(device.Number(Iid::videoProcAmp, getGain), 13);
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, ADeviceThatDoesNotAcknowledgeIsDropped) {
    FaultyDevice device({});
    device.ExpectConnected();
    device.Submit("ack off");
    device.Set(Iid::videoProcAmp, setVideoGain, 7);
    device.Set(Iid::videoProcAmp, setVideoGain, 8);
    device.ExpectReleased();
    EXPECT_EQ(device.ConnectionCalls(), Strings{"connected"});
}

// ---- Where the device ends the connection ----

TEST_F(Faults, ADropBeforeTheMirrorIsCompleteEndsTheAttempt) {
    const std::size_t all = SimulatedDevice({}).CompleteDump().size();
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, std::size_t{100}, std::size_t{3000}, all / 2}) {
        SCOPED_TRACE(bytes);
        FaultyDevice device(Options{.faults = {.dropAfter = bytes}});
        ASSERT_TRUE(device.AwaitConnectionCalls(1));
        EXPECT_EQ(device.ConnectionCalls(), neverConnected);
        ExpectLostMeanwhile(device.Address());
        device.ExpectEnd(neverConnected);
    }
}

TEST_F(Faults, ADropAfterTheCompleteMirrorEndsTheConnection) {
    // Enough for the answers to requests that are sent twice.
    const std::size_t bytes = 2 * SimulatedDevice({}).CompleteDump().size();
    FaultyDevice device(Options{.faults = {.dropAfter = bytes}});
    device.ExpectConnected();

    const std::string name(40, 'n');
    for (std::size_t said = 0; said < bytes; said += name.size()) {
        device.Submit("set DEVICE FILENAMES Still frame name " + name);
    }

    ASSERT_TRUE(device.AwaitConnectionCalls(2));
    EXPECT_EQ(MirrorOf(device.Object()), EmptyMirror());
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, AHangUpInsideTheFirstBlockEndsTheAttempt) {
    FaultyDevice device(Options{.faults = {.closeMidBlock = true}});
    ASSERT_TRUE(device.AwaitConnectionCalls(1));
    EXPECT_EQ(device.ConnectionCalls(), neverConnected);
    ExpectLostMeanwhile(device.Address());
    device.ExpectEnd(neverConnected);
}

TEST_F(Faults, HalfABlockIsNotNotified) {
    FaultyDevice device({});
    device.ExpectConnected();
    device.Submit("drop mid-block");
    device.Submit("set DEVICE FILENAMES Still frame name Half of this name never arrives");

    ASSERT_TRUE(device.AwaitConnectionCalls(2));
    EXPECT_EQ(device.TakeNotificationsUntilTheEnd(), "");
    device.ExpectEnd(connectedAndDisconnected);
}

TEST_F(Faults, AfterADropANewDeviceObjectConnects) {
    FaultyDevice device({});
    device.ExpectConnected();
    device.Submit("drop");
    ASSERT_TRUE(device.AwaitConnectionCalls(2));

    ConnectOutcome again = Connect(device.Address());

    ASSERT_EQ(again.result, ok);
    EXPECT_EQ(DeviceName(again.device), u"Morquil Simulator");
    EXPECT_EQ(MirrorOf(again.device), HealthyMirror());
    EXPECT_EQ(MirrorOf(device.Object()), EmptyMirror());
    WithinASecond([&] { Disconnect(again.device); });
    EXPECT_EQ(WithinASecond([&] { return again.device.Release(); }), 0U);
    device.ExpectEnd(connectedAndDisconnected);
}

// ---- What the device refuses ----

TEST_F(Faults, ARemoteLockRefusesTheHost) {
    FaultyDevice device(Options{.identity = {.remoteLock = true}});
    ASSERT_TRUE(device.AwaitConnectionCalls(1));
    ExpectRefused(device.Address(), "cfrm");
    device.ExpectEnd({"disconnected cfrm"});
}

TEST_F(Faults, ALaterRemoteLockIsNotifiedAndBecomesTheReason) {
    FaultyDevice device({});
    device.ExpectConnected();
    for (const bool locked : {true, false}) {
        device.Submit(locked ? "lock" : "unlock");
        EXPECT_EQ(device.TakeNotifications(), "devc");
        std::int32_t lock = 9;
        EXPECT_EQ(device.Object().Call(Slot::getRemoteLock, &lock), ok);
        EXPECT_EQ(lock != 0, locked);
        device.ExpectConversation();
    }
    device.ExpectEnd({"connected", "disconnected cfrm"});
}

struct OtherVersion {
    const char* what;
    ProtocolVersion version;
    const char* reason;
};
const OtherVersion otherVersions[] = {{"older", {1, 21}, "cfif"},
                                      {"older, can be updated", {2, 21}, "cfus"},
                                      {"newer", {4, 23}, "cfif"},
                                      {"newer, can be updated", {7, 23}, "cfus"}};

TEST_F(Faults, AnotherProtocolVersionRefusesTheHost) {
    for (const OtherVersion& other : otherVersions) {
        SCOPED_TRACE(other.what);
        FaultyDevice device(Options{.identity = {.protocolVersion = other.version}});
        ASSERT_TRUE(device.AwaitConnectionCalls(1));
        ExpectRefused(device.Address(), other.reason);
        device.ExpectEnd({std::string("disconnected ") + other.reason});
    }
}

}  // namespace
}  // namespace Morquil::Testing
