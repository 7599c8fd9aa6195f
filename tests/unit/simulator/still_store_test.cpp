#include "simulator/device/still_store.h"

#include <gtest/gtest.h>

#include "tests/unit/simulator/lone_host.h"

namespace Morquil::Simulator {
namespace {

using std::chrono::milliseconds;

constexpr const char* capture = "VIDEO OUTPUT:\nStill frame action: Capture\n\n";
constexpr const char* captured = "VIDEO OUTPUT:\nStill frame present: true\nStill store complete: true\n\n";

class StillStoreTest : public testing::Test {
protected:
    std::string ReceiveAt(int time) {
        host.device.Advance(milliseconds(time));
        return host.Receive();
    }

    LoneHost host;
};

TEST_F(StillStoreTest, NeedsTimeToCapture) {
    EXPECT_EQ(ReceiveAt(1000), "");
    EXPECT_EQ(host.Ask(capture), std::string("ACK\n\n") + capture + "VIDEO OUTPUT:\nStill store complete: false\n\n");
    EXPECT_EQ(host.device.NextDue(), milliseconds(1300));
    EXPECT_EQ(ReceiveAt(1299), "");
    EXPECT_EQ(host.Value("VIDEO OUTPUT", "Still frame present"), "false");
    EXPECT_EQ(ReceiveAt(1300), captured);
    EXPECT_EQ(host.device.NextDue(), std::nullopt);
    EXPECT_EQ(ReceiveAt(5000), "");
}

TEST_F(StillStoreTest, NeedsTimeToShow) {
    EXPECT_EQ(host.Ask("VIDEO OUTPUT:\nStill frame action: Preview\n\n"),
              "ACK\n\nVIDEO OUTPUT:\nStill frame action: Preview\n\n"
              "VIDEO OUTPUT:\nStill load complete: false\nStill preview complete: false\n\n");
    EXPECT_EQ(ReceiveAt(300), "VIDEO OUTPUT:\nStill load complete: true\nStill preview complete: true\n\n");
}

TEST_F(StillStoreTest, IsEmptiedAtOnceAndDropsWhatWasInProgress) {
    host.Ask(capture);
    ReceiveAt(300);
    host.Ask(capture);
    EXPECT_EQ(host.Ask("VIDEO OUTPUT:\nStill frame action: Delete\n\n"),
              "ACK\n\nVIDEO OUTPUT:\nStill frame action: Delete\n\n"
              "VIDEO OUTPUT:\nStill frame present: false\nStill load complete: false\nStill store complete: false\n"
              "Still preview complete: false\n\n");
    EXPECT_EQ(host.device.NextDue(), std::nullopt);
    EXPECT_EQ(ReceiveAt(1000), "");
}

TEST_F(StillStoreTest, CapturesAndShowsSideBySide) {
    host.Ask(capture);
    EXPECT_EQ(ReceiveAt(100), "");
    host.Ask("VIDEO OUTPUT:\nStill frame action: Preview\n\n");
    EXPECT_EQ(ReceiveAt(300), captured);
    EXPECT_EQ(host.device.NextDue(), milliseconds(400));
    EXPECT_EQ(ReceiveAt(400), "VIDEO OUTPUT:\nStill load complete: true\nStill preview complete: true\n\n");
}

TEST_F(StillStoreTest, StartsOverWhenAskedAgain) {
    host.Ask(capture);
    EXPECT_EQ(ReceiveAt(200), "");
    host.Ask(capture);
    EXPECT_EQ(ReceiveAt(499), "");
    EXPECT_EQ(ReceiveAt(500), captured);
}

TEST_F(StillStoreTest, DoesNotGoBackInTime) {
    ReceiveAt(1000);
    ReceiveAt(10);
    host.Ask(capture);
    EXPECT_EQ(host.device.NextDue(), milliseconds(1300));
}

TEST_F(StillStoreTest, NotifiesAllHosts) {
    host.device.Connect(2);
    host.device.TakeTextFor(2);
    host.Ask(capture);
    host.device.TakeTextFor(2);
    host.device.Advance(milliseconds(300));
    EXPECT_EQ(host.device.TakeTextFor(2), captured);
}

TEST_F(StillStoreTest, DoesNothingWhenTheBlockIsRefused) {
    EXPECT_FALSE(host.Set("VIDEO OUTPUT", "Still frame action: Capture\nTransition setting: 101"));
    EXPECT_EQ(host.device.NextDue(), std::nullopt);
}

TEST(StillStore, IsAsFastAsTheDeviceIsMade) {
    LoneHost host(DeviceIdentity{.stillFrameTime = milliseconds(7)});
    host.Ask(capture);
    EXPECT_EQ(host.device.NextDue(), milliseconds(7));
}

}  // namespace
}  // namespace Morquil::Simulator
