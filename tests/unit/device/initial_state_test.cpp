// What a connection waits for, and what the host requests until then.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "device/device.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

class InitialState : public DeviceTest {
protected:
    /// An attempt that a test left waiting would keep waiting without the host.
    ~InitialState() override { rig.device->Disconnect(); }

    bool IsConnected() const { return observer->Notifications() == Texts{"connected"}; }
    /// Begins to connect to a device that acknowledges everything and sends nothing by itself. What the test makes it
    /// send comes in whole blocks, with the acknowledgements between them.
    void BeginToConnect() {
        rig.link.AnswerWith([](const std::string&) { return "ACK\n\n"; });
        ASSERT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
        ASSERT_TRUE(rig.link.AwaitIdle());
    }

    Held<ConnectionObserver> observer;
};

/// The blocks of a text, each with its empty line.
Texts BlocksOf(const std::string& text) {
    Texts blocks;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find("\n\n", at) + 2;
        blocks.push_back(text.substr(at, end - at));
        at = end;
    }
    return blocks;
}

TEST_F(InitialState, NeedsEveryBlockButThePreamble) {
    BeginToConnect();
    Texts blocks = BlocksOf(CompleteText());
    blocks.erase(blocks.begin());
    ASSERT_EQ(blocks.size(), 30U);
    for (const std::string& block : blocks) {
        EXPECT_FALSE(rig.link.AwaitIdle() && IsConnected()) << "complete before " << block;
        rig.DeviceSends(block);
    }
    EXPECT_TRUE(observer->AwaitNotified("connected"));
}

TEST(InitialStateWithoutABlock, IsIncomplete) {
    const Texts blocks = BlocksOf(CompleteText());
    for (std::size_t missing = 1; missing < blocks.size(); ++missing) {
        SCOPED_TRACE(HeaderOf(blocks[missing]));
        const Watchdog watchdog;
        DeviceRig rig;
        const Held<ConnectionObserver> observer;
        ASSERT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
        for (std::size_t block = 0; block < blocks.size(); ++block) {
            if (block != missing) {
                rig.link.Push(blocks[block]);
            }
        }
        ASSERT_TRUE(rig.link.AwaitIdle());
        EXPECT_TRUE(observer->Notifications().empty());
        rig.DeviceSends(blocks[missing]);
        EXPECT_TRUE(observer->AwaitNotified("connected"));
    }
}

TEST_F(InitialState, AcceptsAnEmptyTableOfConversions) {
    BeginToConnect();
    std::string text = CompleteText();
    const std::size_t at = text.find("SUPPORTED CONVERSIONS:");
    text.erase(at, text.find("\n\n", at) + 2 - at);
    rig.DeviceSends(text);
    EXPECT_TRUE(observer->Notifications().empty());
    rig.DeviceSends("SUPPORTED CONVERSIONS:\n\n");
    EXPECT_TRUE(observer->AwaitNotified("connected"));
}

TEST_F(InitialState, AcceptsAnEmptyBlockOfMostKinds) {
    BeginToConnect();
    for (const std::string& block : BlocksOf(CompleteText())) {
        const std::string header = HeaderOf(block);
        const bool isPicky = header == "VIDEO INPUT" || header == "VIDEO OUTPUT" || header == "VIDEO PROC AMP" ||
                             header == "VIDEO INPUT AVAILABILITY" || header == "VIDEO OUTPUT AVAILABILITY" ||
                             header == "VIDEO PROC AMP AVAILABILITY" || header == "PRESET AVAILABILITY";
        rig.link.Push(isPicky ? block : BlockOf(header));
    }
    EXPECT_TRUE(observer->AwaitNotified("connected"));
}

class PreambleThatDecidesNothing : public InitialState, public testing::WithParamInterface<const char*> {};

TEST_P(PreambleThatDecidesNothing, AllowsTheConnection) {
    BeginToConnect();
    rig.link.Push(BlockOf("PROTOCOL PREAMBLE", GetParam()) + CompleteText().substr(preambleText.size()));
    EXPECT_TRUE(observer->AwaitNotified("connected"));
}

INSTANTIATE_TEST_SUITE_P(InitialState, PreambleThatDecidesNothing,
                         testing::Values("", "Version: new\n", "Version: 2\n", "Something: 1.21\n"));

TEST_F(InitialState, IsTheSameInPiecesOfOneByte) {
    ASSERT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    for (const char byte : CompleteText()) {
        rig.link.Push(std::string(1, byte));
    }
    EXPECT_TRUE(observer->AwaitNotified("connected"));
    EXPECT_EQ(rig.Gain(), 0);
}

// ---- Requests -------------------------------------------------------------------------------------------------------

Texts AvailabilityRequests() {
    Texts requests;
    for (const auto& [header, lines] : AvailabilityLines()) {
        requests.push_back(BlockOf(header));
    }
    return requests;
}

TEST_F(InitialState, AsksForFourteenBlocksInTheOrderOfThePendingTable) {
    rig.link.AnswerWith(DeviceAnswer);
    rig.link.Push(GreetingText());
    EXPECT_EQ(rig.Connect(), S_OK);
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(rig.link.Sends(), AvailabilityRequests());
}

TEST_F(InitialState, AsksForOneBlockAtATime) {
    rig.link.Push(std::string(deviceText));
    ASSERT_EQ(rig.ConnectAsync(observer.Get()), S_FALSE);
    const Texts requests = AvailabilityRequests();
    for (std::size_t sent = 1; sent <= requests.size(); ++sent) {
        ASSERT_TRUE(rig.link.AwaitSends(sent));
        ASSERT_TRUE(rig.link.AwaitIdle());
        EXPECT_EQ(rig.link.Sends(), Texts(requests.begin(), requests.begin() + static_cast<std::ptrdiff_t>(sent)));
        rig.link.Push(sent % 2 == 0 ? "ACK\n\n" : "NACK\n\n");
    }
    ASSERT_TRUE(rig.link.AwaitIdle());
    EXPECT_EQ(rig.link.Sends(), requests);
}

TEST_F(InitialState, AsksForNothingBeforeTheDeviceHasIdentifiedItself) {
    BeginToConnect();
    rig.DeviceSends(std::string(preambleText));
    EXPECT_EQ(rig.link.Sent(), "");
    rig.DeviceSends("MORQUIL DEVICE:\n\n");
    EXPECT_EQ(rig.link.Sent(), "") << "an empty block says nothing";
    rig.DeviceSends("MORQUIL DEVICE:\nPanel lock: false\n\n");
    EXPECT_EQ(rig.link.Sends(), AvailabilityRequests());
}

TEST_F(InitialState, AsksOnceThoughTheDeviceRepeatsItself) {
    BeginToConnect();
    rig.DeviceSends(std::string(deviceText));
    rig.DeviceSends("MORQUIL DEVICE:\nModel name: Another\n\n" + std::string(deviceText));
    EXPECT_EQ(rig.link.Sends().size(), 14U);
}

TEST_F(InitialState, AsksALockedDeviceTooButFails) {
    rig.link.Push("MORQUIL DEVICE:\nRemote lock: true\n\n");
    EXPECT_EQ(rig.Connect(), E_FAIL);
    EXPECT_EQ(rig.failReason, morquilConnectToFailureRemoteLock);
}

}  // namespace
}  // namespace Morquil
