// The traffic between a connected host and its device, byte for byte, over a real socket.
#include <gtest/gtest.h>

#include <optional>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/system/host/host.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {
namespace {

/// Slots of the video proc amp, the reference and the output.
enum Setters { setGain = 3, setBlackLevel = 6, setHue = 12, setLineOffset = 8, setOutputMode = 3 };

const char* const requestsInOrder[] = {
    "SUPPORTED CONVERSIONS",
    "VIDEO INPUT AVAILABILITY",
    "VIDEO OUTPUT AVAILABILITY",
    "VIDEO PROC AMP AVAILABILITY",
    "VIDEO ADJUST AVAILABILITY",
    "NOISE REDUCTION AVAILABILITY",
    "TEST PATTERN AVAILABILITY",
    "VIDEO ADVANCED AVAILABILITY",
    "ANCILLARY DATA AVAILABILITY",
    "GENLOCK AVAILABILITY",
    "VARIABLE ASPECT RATIO AVAILABILITY",
    "AUDIO AVAILABILITY",
    "MODE3D AVAILABILITY",
    "PRESET AVAILABILITY",
};

TEST(Requests, GoOutOneAtATimeInTheirOrder) {
    ScriptedDevice device(DeviceScript{.acknowledges = false});
    ConnectionObserver observer;
    const RawObject connecting = ConnectAsync(device.Address(), observer);
    ASSERT_TRUE(device.AwaitHost());
    WatchedDevice watched(device, connecting);

    for (const char* const header : requestsInOrder) {
        watched.Report("");
        EXPECT_EQ(device.NextBlock(), std::string(header) + ":\n\n");
        EXPECT_FALSE(device.HasReceivedMore());
        device.Acknowledge();
    }
    watched.Report("");
    EXPECT_FALSE(device.HasReceivedMore());
    Disconnect(connecting);
}

// A connected host; the device acknowledges nothing by itself.
class Conversation : public testing::Test {
protected:
    void SetUp() override {
        object = Connect(device.Address()).device;
        ASSERT_TRUE(object);
        watched.emplace(device, object);
        amp = object.QueryInterface(Iid::videoProcAmp);
        reference = object.QueryInterface(Iid::reference);
        watched->Report("");
        while (device.HasReceivedMore()) {
            device.NextBlock();
        }
        device.SetAcknowledging(false);
    }
    void TearDown() override {
        watched.reset();
        if (object) {
            Disconnect(object);
        }
    }

    int Gain() const {
        int gain = -9999;
        EXPECT_EQ(amp.Call(4, &gain), ok);
        return gain;
    }
    /// The setter's block, acknowledged.
    std::string SetGain(int gain) {
        EXPECT_EQ(amp.Call(setGain, gain), ok);
        std::string block = device.NextBlock();
        device.Acknowledge();
        return block;
    }

    ScriptedDevice device{CompleteDevice()};
    RawObject object;
    std::optional<WatchedDevice> watched;
    RawObject amp;
    RawObject reference;
};

TEST_F(Conversation, HasOneBlockInFlight) {
    EXPECT_EQ(amp.Call(setGain, 1), ok);
    EXPECT_EQ(device.NextBlock(), "VIDEO PROC AMP:\nGain: 1\n\n");
    EXPECT_EQ(reference.Call(setLineOffset, 2), ok);
    watched->Report("");
    EXPECT_FALSE(device.HasReceivedMore());

    device.Acknowledge();

    EXPECT_EQ(device.NextBlock(), "GENLOCK:\nLine offset: 2\n\n");
    device.Acknowledge();
    watched->Report("");
    EXPECT_FALSE(device.HasReceivedMore());
}

TEST_F(Conversation, GoesOnAfterARefusal) {
    EXPECT_EQ(amp.Call(setGain, 1), ok);
    EXPECT_FALSE(device.NextBlock().empty());
    EXPECT_EQ(reference.Call(setLineOffset, 2), ok);

    device.Send("NACK\n\n");

    EXPECT_EQ(device.NextBlock(), "GENLOCK:\nLine offset: 2\n\n");
}

TEST_F(Conversation, MergesPendingChanges) {
    EXPECT_EQ(amp.Call(setGain, 1), ok);
    EXPECT_EQ(device.NextBlock(), "VIDEO PROC AMP:\nGain: 1\n\n");
    EXPECT_EQ(amp.Call(setHue, 2), ok);
    EXPECT_EQ(amp.Call(setHue, 3), ok);
    EXPECT_EQ(amp.Call(setBlackLevel, 4), ok);

    device.Acknowledge();

    EXPECT_EQ(device.NextBlock(), "VIDEO PROC AMP:\nBlack: 4\nHue: 3\n\n");
}

TEST_F(Conversation, SendsPendingChangesInTheOrderOfTheTypes) {
    EXPECT_EQ(amp.Call(setGain, 1), ok);
    EXPECT_FALSE(device.NextBlock().empty());
    EXPECT_EQ(reference.Call(setLineOffset, 2), ok);
    EXPECT_EQ(amp.Call(setGain, 3), ok);
    EXPECT_EQ(object.Call(Slot::setPanelLock, 1), ok);
    device.SetAcknowledging(true);

    device.Acknowledge();

    EXPECT_EQ(device.NextBlock(), "MORQUIL DEVICE:\nPanel lock: true\n\n");
    EXPECT_EQ(device.NextBlock(), "VIDEO PROC AMP:\nGain: 3\n\n");
    EXPECT_EQ(device.NextBlock(), "GENLOCK:\nLine offset: 2\n\n");
}

TEST_F(Conversation, ChangesTheMirrorOnlyWithTheDevicesAnswer) {
    const std::string sent = SetGain(5);
    EXPECT_EQ(watched->Report(""), "");
    EXPECT_EQ(Gain(), 0);

    EXPECT_EQ(watched->Report(sent), "");
    EXPECT_EQ(Gain(), 5);
}

TEST_F(Conversation, NotifiesOfAnAnswerThatIsNotAnEcho) {
    SetGain(5);
    EXPECT_EQ(watched->Report("VIDEO PROC AMP:\nGain: 4\n\n"), "vpap");
    EXPECT_EQ(Gain(), 4);
}

TEST_F(Conversation, NotifiesOfAFrontPanelChangeOnce) {
    EXPECT_EQ(watched->Report("VIDEO PROC AMP:\nGain: 12\n\n"), "vpap");
    EXPECT_EQ(Gain(), 12);
    EXPECT_EQ(watched->Report("VIDEO PROC AMP:\nGain: 12\n\n"), "");
}

TEST_F(Conversation, ForgetsWhatWasSentBeforeAnEcho) {
    const std::string first = SetGain(1);
    const std::string second = SetGain(2);

    EXPECT_EQ(watched->Report(second), "");
    EXPECT_EQ(watched->Report(first), "vpap");
    EXPECT_EQ(watched->Report(second), "vpap");
}

TEST_F(Conversation, NotifiesOfItsOwnOutputChanges) {
    const RawObject output = object.QueryInterface(Iid::outputConfiguration);
    EXPECT_EQ(output.Call(setOutputMode, 11), ok);
    const std::string sent = device.NextBlock();
    EXPECT_EQ(sent, "VIDEO OUTPUT:\nVideo mode: 1080p25\n\n");

    EXPECT_EQ(watched->Report(sent), "ouco");
}

struct FollowUp {
    const char* report;
    std::vector<const char*> requests;
};

TEST_F(Conversation, AsksAgainForWhatAChangeAffects) {
    const char* const shape = "VARIABLE ASPECT RATIO AVAILABILITY";
    const char* const noise = "NOISE REDUCTION AVAILABILITY";
    const char* const advanced = "VIDEO ADVANCED AVAILABILITY";
    const char* const genlock = "GENLOCK AVAILABILITY";
    // In the order in which they are sent.
    const FollowUp followUps[] = {
        {"VIDEO INPUT:\nVideo source: HDMI\n\n", {"VIDEO INPUT AVAILABILITY"}},
        {"VIDEO INPUT:\nVideo mode: 720p50\n\n", {noise, advanced, shape}},
        {"VIDEO INPUT:\nWide SD aspect: true\n\n", {shape}},
        {"VIDEO INPUT:\nHDMI 3D Full: true\n\n", {noise, advanced}},
        {"VIDEO INPUT:\nVideo source: HDMI\nVideo mode: 720p50\nSignal present: false\n\n", {}},
        {"VIDEO OUTPUT:\nVideo mode: 720p50\n\n", {noise, advanced, genlock, shape}},
        {"VIDEO OUTPUT:\nAspect ratio: Smart\n\n", {shape}},
        {"VIDEO OUTPUT:\nVideo mode: 720p50\nOutput option: Black\n\n", {}},
        {"VIDEO ADVANCED:\nProcessing: Lowest Latency\n\n", {advanced}},
        {"VIDEO ADVANCED:\nScenecut detect: true\n\n", {advanced}},
        {"VIDEO ADVANCED:\nRP177: true\n\n", {}},
        {"GENLOCK:\nSignal locked: false\n\n", {genlock}},
        {"GENLOCK:\nLine offset: 3\n\n", {}},
    };
    for (const FollowUp& followUp : followUps) {
        SCOPED_TRACE(followUp.report);
        watched->Report(followUp.report);
        for (const char* const header : followUp.requests) {
            EXPECT_EQ(device.NextBlock(), std::string(header) + ":\n\n");
            device.Acknowledge();
        }
        watched->Report("");
        EXPECT_FALSE(device.HasReceivedMore());
    }
}

struct Noise {
    const char* what;
    std::string bytes;
};

TEST_F(Conversation, FollowsTheGoodBlockAfterAnyNoise) {
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    const Noise noises[] = {
        {"nothing", ""},
        {"empty lines", "\n\n\r\n\n"},
        {"an unknown block", "WEATHER:\nGain: 77\nRain: true\n\n"},
        {"unknown keys and bad values", "VIDEO PROC AMP:\nTint: 3\nBlack: x\nno colon\nHue:\n\n"},
        {"an over-long line", std::string(1000, 'x') + "\n\n"},
        {"an over-long line in a block", "VIDEO PROC AMP:\nTint: " + std::string(600, 'x') + "\n\n"},
        {"a line of just 256 characters", std::string(256, ':') + "\n\n"},
        {"every byte", everyByte + "\n\n"},
        {"many zero bytes", std::string(3000, '\0') + "\n\n"},
        {"a format", "%s%n%x:\n%s%n: %s%n\n\n"},
        {"a repeated acknowledgement", "ACK\n\nNACK\n\nACK\nACK\n\n"},
        {"a ping", "PING\n\n"},
        {"bad numbers", "VIDEO PROC AMP:\nHue: 99999999999999999999\nHue: 0x\nHue: --1\nHue: 1e\n\n"},
    };
    int gain = 100;
    for (const Noise& noise : noises) {
        SCOPED_TRACE(noise.what);
        const std::string block = "VIDEO PROC AMP:\nGain: " + std::to_string(++gain) + "\n\n";
        watched->Report(noise.bytes + block);
        EXPECT_EQ(Gain(), gain);
        EXPECT_EQ(SetGain(-gain), "VIDEO PROC AMP:\nGain: -" + std::to_string(gain) + "\n\n");
    }
}

TEST_F(Conversation, ReadsBytesThatAreSplitAnywhere) {
    const std::string block = "video proc amp:\r\nGAIN: 31\r\nBlack : 5\r\n\r\n";
    for (std::size_t split = 0; split <= block.size(); ++split) {
        SCOPED_TRACE(split);
        watched->Report("VIDEO PROC AMP:\nGain: 0\n\n");
        device.Send(block.substr(0, split));
        EXPECT_EQ(watched->Report(block.substr(split)), "vpap");
        EXPECT_EQ(Gain(), 31);
    }
}

TEST_F(Conversation, ReadsBytesThatComeOneByOne) {
    for (const char byte : std::string("VIDEO PROC AMP:\nGain: 31\nHue: -7\n\n")) {
        device.Send(std::string(1, byte));
    }
    watched->Report("");
    EXPECT_EQ(Gain(), 31);
}

TEST_F(Conversation, KeepsUpWithAFlood) {
    std::string flood;
    for (int gain = 1; gain <= 5000; ++gain) {
        flood += "VIDEO PROC AMP:\nGain: " + std::to_string(gain) + "\n\n";
    }
    watched->Report(flood);
    EXPECT_EQ(Gain(), 5000);
}

}  // namespace
}  // namespace Morquil::Testing
