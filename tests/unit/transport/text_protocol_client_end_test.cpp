// How a client ends, and starts again.
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

#include "tests/unit/transport/client_rig.h"

namespace Morquil {
namespace {

using namespace Testing;
using Morquil::Testing::Threads;

// ---- The other events -----------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, PrintsANetworkErrorAndEnds) {
    testing::internal::CaptureStdout();
    client.CountOnNotices();
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::SocketError);
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Network error on the socket\n");
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
    EXPECT_EQ(link.Closes(), 1);
}

TEST_F(TextProtocolClientTest, IgnoresEventsThatMeanNothingToIt) {
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::UserSignal);
    link.Push(CommsEvent::Writable);
    link.Push(static_cast<CommsEvent>(8));
    link.Push(static_cast<CommsEvent>(0xFFFFFFFF));
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_TRUE(link.IsOpen());
    EXPECT_EQ(link.Sent(), "");
}

TEST_F(TextProtocolClientTest, GoesOnAfterAnInterruptedWait) {
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::WaitFailed, EINTR);
    link.Push("hello");
    EXPECT_TRUE(client.AwaitReceived("hello"));
    EXPECT_TRUE(link.IsOpen());
}

TEST_F(TextProtocolClientTest, EndsWhenTheSystemRefusesToWait) {
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::WaitFailed, EINVAL);
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_FALSE(link.IsOpen());
}

TEST_F(TextProtocolClientTest, SendsNoNoticeOfALossThatWasNotAskedFor) {
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::SocketError);
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(client.Notices(), std::vector<bool>{true});
}

TEST_F(TextProtocolClientTest, EndsWithoutMemoryForWhatItReceived) {
    client.CountOnNotices();
    client.onReceived = [] { throw std::bad_alloc(); };
    ASSERT_TRUE(StartClient());
    link.Push("hello");
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
}

// ---- Stop -----------------------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, HasEndedTheThreadWhenStopReturns) {
    client.CountOnNotices();
    ASSERT_TRUE(StartClient());
    client.Stop();
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
    EXPECT_FALSE(link.IsOpen());
    EXPECT_EQ(link.Closes(), 1);
}

TEST_F(TextProtocolClientTest, StoppingAStoppedClientIsHarmless) {
    client.Stop();
    ASSERT_TRUE(StartClient());
    client.Stop();
    client.Stop();
    EXPECT_EQ(link.Closes(), 1);
}

TEST_F(TextProtocolClientTest, StopsFromItsOwnThread) {
    client.CountOnNotices();
    client.onReceived = [&] { client.Stop(); };
    ASSERT_TRUE(StartClient());
    link.Push("hello");
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
    EXPECT_EQ(client.Received(), "hello");
}

TEST_F(TextProtocolClientTest, ReceivesNoMoreOnceItWasStoppedFromItsOwnThread) {
    client.onReceived = [&] { client.Stop(); };
    ASSERT_TRUE(StartClient());
    link.Push(std::string(3000, 'x'));
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(client.Received().size(), 1024U);
}

TEST_F(TextProtocolClientTest, StopsForSeveralThreadsAtOnce) {
    client.CountOnNotices();
    for (int round = 0; round < 50; ++round) {
        FakeConnection otherLink;
        TestClient other(otherLink);
        ASSERT_TRUE(other.SetServer("device.test", 9800));
        ASSERT_TRUE(other.Start());
        {
            const Threads stopping(4, [&] {
                other.Stop();
                EXPECT_FALSE(otherLink.IsOpen()) << "Stop returned before the thread had ended";
            });
        }
        EXPECT_EQ(otherLink.Closes(), 1);
    }
}

TEST_F(TextProtocolClientTest, PrintsThatTheThreadCouldNotBeSignalled) {
    ASSERT_TRUE(StartClient());
    ASSERT_TRUE(link.AwaitIdle());
    link.RefuseSignals();
    testing::internal::CaptureStdout();
    client.Stop();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Could not signal the connection thread to stop\n");
    EXPECT_TRUE(link.IsOpen());
    link.AllowSignals();
}

TEST_F(TextProtocolClientTest, ReportsThatASenderCouldNotBeWoken) {
    ASSERT_TRUE(StartClient());
    link.RefuseSignals();
    EXPECT_FALSE(client.Queue({"block"}));
    link.AllowSignals();
}

TEST_F(TextProtocolClientTest, StopEndsAnOpenThatBlocks) {
    client.CountOnNotices();
    link.BlockOpen();
    ASSERT_TRUE(client.SetServer("device.test", 9800));
    bool started = true;
    {
        const Threads starting(1, [&] { started = client.Start(); });
        EXPECT_TRUE(link.AwaitBlockedOpen());
        client.Stop();
    }
    EXPECT_FALSE(started);
    EXPECT_FALSE(link.IsOpen());
    EXPECT_EQ(client.ThreadsStarted(), 0);
}

TEST_F(TextProtocolClientTest, StopsWhileItReportsTheConnection) {
    client.CountOnNotices();
    client.onNotice = [&](bool connected) {
        if (connected) {
            client.Stop();
        }
    };
    EXPECT_FALSE(StartClient());
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
    EXPECT_FALSE(link.IsOpen());
}

// ---- Starting again -------------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, StartsAgainAfterAStop) {
    ASSERT_TRUE(StartClient());
    client.Queue({"unacknowledged"});
    ASSERT_TRUE(link.AwaitIdle());
    client.Stop();
    ASSERT_TRUE(client.Start());
    EXPECT_TRUE(link.IsOpen());
    client.Queue({"second"});
    EXPECT_TRUE(link.AwaitSent("second")) << "what was unacknowledged is forgotten with its connection";
}

TEST_F(TextProtocolClientTest, StartsAgainAfterALoss) {
    ASSERT_TRUE(StartClient());
    link.PushReceiveResult(0);
    ASSERT_TRUE(client.AwaitThreadEnd());
    ASSERT_TRUE(client.Start());
    link.Push("hello");
    EXPECT_TRUE(client.AwaitReceived("hello"));
}

TEST_F(TextProtocolClientTest, StartsAgainInTheNoticeOfALoss) {
    client.CountOnNotices();
    client.onNotice = [&](bool connected) {
        if (!connected && client.ThreadsStarted() == 1) {
            EXPECT_TRUE(client.Start());
        }
    };
    ASSERT_TRUE(StartClient());
    link.PushReceiveResult(0);
    ASSERT_TRUE(client.AwaitNotices(3));
    link.Push("hello");
    EXPECT_TRUE(client.AwaitReceived("hello"));
    client.Stop();
    EXPECT_TRUE(client.AwaitThreadEnd());
}

TEST_F(TextProtocolClientTest, StartsAgainAfterAStopThatFoundALostConnection) {
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::SocketError);
    ASSERT_TRUE(client.AwaitThreadEnd());
    client.Stop();
    EXPECT_TRUE(StartClient()) << "the stop of the last connection ends the next one";
}

TEST_F(TextProtocolClientTest, StartsAgainAfterAStopThatFoundNothing) {
    client.Stop();
    EXPECT_TRUE(StartClient()) << "the stop of no connection ends the next one";
}

TEST_F(TextProtocolClientTest, StartsAgainAfterAStopThatCameWhenTheTransportHadFailed) {
    link.RefuseOpen();
    link.CallAfterOpen([this] { client.RequestStop(); });
    EXPECT_FALSE(StartClient());
    link.AllowOpen();
    link.CallAfterOpen(nullptr);
    ASSERT_TRUE(StartClient());
    link.Push("hello");
    EXPECT_TRUE(client.AwaitReceived("hello"));
    EXPECT_TRUE(link.IsOpen());
}

TEST_F(TextProtocolClientTest, StartsAgainAfterAStopThatCameWhenTheTransportHadConnected) {
    link.CallInConnectWait([&] { client.Stop(); });
    EXPECT_FALSE(StartClient());
    EXPECT_FALSE(link.IsOpen());
    link.CallInConnectWait(nullptr);
    EXPECT_TRUE(StartClient()) << "the stop of the last attempt ends the next one";
}

TEST_F(TextProtocolClientTest, StartsAgainAfterAStopInTheNoticeOfTheConnection) {
    client.onNotice = [&](bool connected) {
        if (connected && client.Notices().empty()) {
            client.Stop();
        }
    };
    EXPECT_FALSE(StartClient());
    EXPECT_TRUE(StartClient()) << "the stop of the last attempt ends the next one";
}

TEST_F(TextProtocolClientTest, StopWaitsForTheThreadAlsoRightAfterAStart) {
    client.CountOnNotices();
    ASSERT_TRUE(client.SetServer("device.test", 9800));
    for (int round = 0; round < 100; ++round) {
        // Each round runs on its own thread, to which the system may assign the id of the last connection thread.
        const Threads host(1, [&] {
            EXPECT_TRUE(client.Start());
            client.Stop();
            EXPECT_FALSE(link.IsOpen()) << "Stop returned before the thread had ended";
        });
    }
}

}  // namespace
}  // namespace Morquil
