// How a client connects, sends and receives.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/unit/transport/client_rig.h"

namespace Morquil {
namespace {

using namespace Testing;
using QRN::Core::CurrentThreadId;

// ---- Start ----------------------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, OpensABlockingConnectionAndWaitsTwoSecondsForIt) {
    ASSERT_TRUE(StartClient());
    ASSERT_EQ(link.Openings().size(), 1U);
    EXPECT_EQ(link.Openings()[0].host, "device.test");
    EXPECT_EQ(link.Openings()[0].port, 9800U);
    EXPECT_FALSE(link.Openings()[0].nonBlocking);
    EXPECT_EQ(link.ConnectWaits(), std::vector<std::int32_t>{2000});
}

TEST_F(TextProtocolClientTest, ReportsTheConnectionOnTheStartingThread) {
    QRN::Core::ThreadId notifiedThread = 0;
    client.onNotice = [&](bool connected) { notifiedThread = connected ? CurrentThreadId() : notifiedThread; };
    ASSERT_TRUE(StartClient());
    EXPECT_EQ(notifiedThread, CurrentThreadId());
    EXPECT_EQ(client.Notices(), std::vector<bool>{true});
}

TEST_F(TextProtocolClientTest, WatchesTheSocketForNineSecondsOfSilence) {
    ASSERT_TRUE(StartClient());
    ASSERT_TRUE(link.AwaitIdle());
    ASSERT_FALSE(link.WaitModes().empty());
    for (const FakeConnection::WaitMode& mode : link.WaitModes()) {
        EXPECT_TRUE(mode.includeSocket);
        EXPECT_EQ(mode.timeoutMs, 9000U);
    }
}

TEST_F(TextProtocolClientTest, StartingTwiceConnectsOnce) {
    ASSERT_TRUE(StartClient());
    EXPECT_TRUE(client.Start());
    EXPECT_EQ(link.Openings().size(), 1U);
    EXPECT_EQ(client.ThreadsStarted(), 1);
    EXPECT_EQ(client.Notices(), std::vector<bool>{true});
}

TEST_F(TextProtocolClientTest, RefusesAnotherServerWhileItRuns) {
    ASSERT_TRUE(StartClient());
    EXPECT_FALSE(client.SetServer("other.test", 1));
    client.Stop();
    EXPECT_TRUE(client.Start());
    EXPECT_EQ(link.Openings().back().host, "device.test");
    EXPECT_EQ(link.Openings().back().port, 9800U);
}

TEST_F(TextProtocolClientTest, AcceptsAnotherServerOnceItHasStopped) {
    ASSERT_TRUE(StartClient());
    client.Stop();
    EXPECT_TRUE(client.SetServer("other.test", 1));
    EXPECT_TRUE(client.Start());
    EXPECT_EQ(link.Openings().back().host, "other.test");
    EXPECT_EQ(link.Openings().back().port, 1U);
}

TEST_F(TextProtocolClientTest, FailsToStartWhenTheConnectionIsRefused) {
    link.RefuseOpen();
    client.CountOnNotices();
    testing::internal::CaptureStdout();
    EXPECT_FALSE(StartClient());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error connecting to server\n");
    EXPECT_TRUE(link.ConnectWaits().empty());
    EXPECT_TRUE(client.Notices().empty());
    EXPECT_EQ(client.ThreadsStarted(), 0);
}

TEST_F(TextProtocolClientTest, FailsToStartWhenTheConnectionIsNotEstablishedInTime) {
    link.RefuseConnect();
    testing::internal::CaptureStdout();
    EXPECT_FALSE(StartClient());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error connecting to server\n");
    EXPECT_FALSE(link.IsOpen()) << "a socket is left open";
    EXPECT_TRUE(client.Notices().empty());
}

TEST_F(TextProtocolClientTest, CanStartAfterARefusal) {
    link.RefuseOpen();
    EXPECT_FALSE(StartClient());
    link.AllowOpen();
    EXPECT_TRUE(client.Start());
}

TEST(TextProtocolClient, FailsToStartOnATransportThatCannotBeInitialised) {
    const Watchdog watchdog;
    FakeConnection link;
    link.RefuseInitialise();
    TestClient client(link);
    EXPECT_TRUE(client.SetServer("device.test", 9800));
    EXPECT_FALSE(client.Start());
    EXPECT_TRUE(link.Openings().empty());
    client.Stop();
}

TEST(TextProtocolClient, DestroysItsTransport) {
    const Watchdog watchdog;
    FakeConnection link;
    {
        TestClient client(link);
        ASSERT_TRUE(client.SetServer("device.test", 9800));
        ASSERT_TRUE(client.Start());
    }
    EXPECT_TRUE(link.IsDestroyed());
    EXPECT_FALSE(link.IsOpen());
}

// ---- Sending --------------------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, SendsABlockOfManyPiecesWithOneSend) {
    ASSERT_TRUE(StartClient());
    EXPECT_TRUE(client.Queue({"VIDEO OUTPUT:\n", "Gain: ", "5", "\n", "\n"}));
    ASSERT_TRUE(link.AwaitSends(1));
    EXPECT_EQ(link.Sends(), std::vector<std::string>{"VIDEO OUTPUT:\nGain: 5\n\n"});
}

TEST_F(TextProtocolClientTest, SendsOneBlockAtATime) {
    ASSERT_TRUE(StartClient());
    client.Queue({"first"});
    client.Queue({"second"});
    client.Queue({"third"});
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(link.Sent(), "first");
    link.Push("ACK\n");
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(link.Sent(), "firstsecond");
    link.Push("ACK\n");
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(link.Sent(), "firstsecondthird");
}

TEST_F(TextProtocolClientTest, SendsAtOnceAgainWhenNothingWaitedForTheAcknowledgement) {
    ASSERT_TRUE(StartClient());
    client.Queue({"first"});
    ASSERT_TRUE(link.AwaitIdle());
    link.Push("ACK\n");
    ASSERT_TRUE(link.AwaitIdle());
    client.Queue({"second"});
    EXPECT_TRUE(link.AwaitSent("firstsecond"));
}

TEST_F(TextProtocolClientTest, AnUnsolicitedAcknowledgementReleasesTheNextBlockToo) {
    ASSERT_TRUE(StartClient());
    link.Push("ACK\n");
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(link.Sent(), "");
    client.Queue({"first"});
    EXPECT_TRUE(link.AwaitSent("first"));
}

TEST_F(TextProtocolClientTest, SendsWhatWasQueuedBeforeTheStart) {
    EXPECT_TRUE(client.Queue({"early"}));
    ASSERT_TRUE(StartClient());
    EXPECT_TRUE(link.AwaitSent("early"));
}

TEST_F(TextProtocolClientTest, CutsAPieceAfter255Characters) {
    ASSERT_TRUE(StartClient());
    const std::string fits(255, 'f');
    const std::string longer(256, 'l');
    client.Queue({fits, longer, "end"});
    ASSERT_TRUE(link.AwaitSends(1));
    EXPECT_EQ(link.Sent(), fits + std::string(255, 'l') + "end");
    client.SendFormatted("%s!", fits.c_str());
    EXPECT_EQ(link.Sends().back(), fits);
}

TEST_F(TextProtocolClientTest, SendsNoEmptyPiece) {
    ASSERT_TRUE(StartClient());
    client.SendFormatted("%s", "");
    EXPECT_TRUE(link.Sends().empty());
}

TEST_F(TextProtocolClientTest, SendsAPieceOfACallerAtOnceWithoutWaitingForAcknowledgement) {
    ASSERT_TRUE(StartClient());
    client.SendFormatted("%s: %d\n", "Gain", -5);
    client.SendFormatted("\n");
    EXPECT_EQ(link.Sends(), (std::vector<std::string>{"Gain: -5\n", "\n"}));
    client.Queue({"block"});
    EXPECT_TRUE(link.AwaitSent("block"));
}

TEST_F(TextProtocolClientTest, SendsTheRestOfWhatTheSystemAcceptedInPart) {
    link.LimitSends(4);
    ASSERT_TRUE(StartClient());
    client.Queue({"0123", "456", "789"});
    ASSERT_TRUE(link.AwaitSends(3));
    EXPECT_EQ(link.Sends(), (std::vector<std::string>{"0123", "4567", "89"}));
}

TEST_F(TextProtocolClientTest, TriesASendThatWouldBlockAgain) {
    link.BlockSends(3);
    ASSERT_TRUE(StartClient());
    client.Queue({"block"});
    ASSERT_TRUE(link.AwaitSent("block"));
    EXPECT_TRUE(link.AwaitBlockedSends(3));
    EXPECT_EQ(link.Sends().size(), 1U);
}

TEST_F(TextProtocolClientTest, WaitsForADeviceThatDoesNotRead) {
    link.BlockSends(-1);
    ASSERT_TRUE(StartClient());
    client.Queue({"block"});
    ASSERT_TRUE(link.AwaitWritableWaits(1));
    client.Queue({"next"});
    EXPECT_EQ(link.BlockedSends(), 1) << "a send is tried again before the socket takes bytes";
    link.BlockSends(0);
    EXPECT_TRUE(link.AwaitSent("block"));
}

TEST_F(TextProtocolClientTest, BlocksOnlyItsOwnThreadForADeviceThatDoesNotRead) {
    ASSERT_TRUE(StartClient());
    ASSERT_TRUE(link.AwaitIdle());
    link.BlockSends(3);
    client.SendFormatted("text\n");
    EXPECT_EQ(link.Sent(), "text\n");
    EXPECT_EQ(link.WritableWaits(), 0);
}

TEST_F(TextProtocolClientTest, StopsWhileADeviceDoesNotRead) {
    link.BlockSends(-1);
    ASSERT_TRUE(StartClient());
    client.Queue({"block"});
    ASSERT_TRUE(link.AwaitBlockedSends(1));
    client.Stop();
    EXPECT_FALSE(link.IsOpen());
    EXPECT_EQ(link.Sent(), "");
}

TEST_F(TextProtocolClientTest, EndsTheConnectionWhenASendFails) {
    client.CountOnNotices();
    link.BreakSends();
    ASSERT_TRUE(StartClient());
    client.Queue({"block"});
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
    EXPECT_FALSE(link.IsOpen());
}

TEST_F(TextProtocolClientTest, HasEndedTheConnectionWhenASendOfTheCallersHasFailed) {
    client.CountOnNotices();
    ASSERT_TRUE(StartClient());
    ASSERT_TRUE(link.AwaitIdle());
    link.BreakSends();
    client.SendFormatted("text\n");
    EXPECT_FALSE(link.IsOpen());
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
}

// ---- Silence --------------------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, PingsASilentDevice) {
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::Timeout);
    link.Push(CommsEvent::Timeout);
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(link.Sends(), (std::vector<std::string>{"PING\n\n", "PING\n\n"}));
}

TEST_F(TextProtocolClientTest, GoesOnWithTheSilenceAfterAWakeUpThatSendsNothing) {
    constexpr std::chrono::milliseconds spent{30};
    ASSERT_TRUE(StartClient());
    client.Queue({"unacknowledged"});
    ASSERT_TRUE(link.AwaitIdle());
    std::this_thread::sleep_for(spent);
    client.Queue({"waiting"});
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_LE(link.WaitModes().back().timeoutMs, 9000U - spent.count());
    link.Push("not an answer");
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(link.WaitModes().back().timeoutMs, 9000U) << "a byte is a sign of life";
}

TEST_F(TextProtocolClientTest, SendsABlockAfterAPingWithoutWaitingForItsAnswer) {
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::Timeout);
    ASSERT_TRUE(link.AwaitIdle());
    client.Queue({"block"});
    EXPECT_TRUE(link.AwaitSent("PING\n\nblock"));
}

TEST_F(TextProtocolClientTest, EndsWhenABlockIsUnacknowledgedThroughTheSilence) {
    client.CountOnNotices();
    ASSERT_TRUE(StartClient());
    client.Queue({"block"});
    ASSERT_TRUE(link.AwaitIdle());
    link.Push(CommsEvent::Timeout);
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
    EXPECT_EQ(link.Sent(), "block");
}

TEST_F(TextProtocolClientTest, PingsAgainOnceTheBlockIsAcknowledged) {
    ASSERT_TRUE(StartClient());
    client.Queue({"block"});
    ASSERT_TRUE(link.AwaitIdle());
    link.Push("ACK\n");
    link.Push(CommsEvent::Timeout);
    EXPECT_TRUE(link.AwaitSent("blockPING\n\n"));
}

// ---- Receiving ------------------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, HandsOverAndPrintsEveryByte) {
    testing::internal::CaptureStdout();
    ASSERT_TRUE(StartClient());
    link.Push("VIDEO INPUT:\nGain %d %s: 1\n");
    link.Push("\n");
    ASSERT_TRUE(link.AwaitIdle());
    client.Stop();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "VIDEO INPUT:\nGain %d %s: 1\n\n");
    EXPECT_EQ(client.Received(), "VIDEO INPUT:\nGain %d %s: 1\n\n");
}

TEST_F(TextProtocolClientTest, PrintsAPieceUpToAZeroByteAndHandsAllOfItOver) {
    const std::string bytes("ab\0cd", 5);
    testing::internal::CaptureStdout();
    ASSERT_TRUE(StartClient());
    link.Push(bytes);
    ASSERT_TRUE(link.AwaitIdle());
    client.Stop();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ab");
    EXPECT_EQ(client.Received(), bytes);
}

TEST_F(TextProtocolClientTest, ReceivesMoreThanOneBufferful) {
    std::string bytes;
    for (int line = 0; bytes.size() < 40'000; ++line) {
        bytes += "line " + std::to_string(line) + "\n";
    }
    ASSERT_TRUE(StartClient());
    link.Push(bytes);
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(client.Received(), bytes);
}

TEST_F(TextProtocolClientTest, LooksForAWakeUpInAFlood) {
    std::string order;
    client.onReceived = [&] { order += order.empty() || order.back() != 'r' ? "r" : ""; };
    link.Push(std::string(std::size_t{64} * 1024, 'x'));
    EXPECT_TRUE(client.SetServer("device.test", 9800));
    client.onNotice = [&](bool) { link.AnswerWith([&](const std::string&) { return order += 's', std::string(); }); };
    client.onReceived = [&, queued = false]() mutable {
        order += order.empty() || order.back() != 'r' ? "r" : "";
        if (!std::exchange(queued, true)) {
            client.Queue({"block"});
        }
    };
    ASSERT_TRUE(client.Start());
    ASSERT_TRUE(link.AwaitIdle());
    client.Stop();
    EXPECT_EQ(order, "rsr");
}

TEST_F(TextProtocolClientTest, GoesOnAfterAReceiveThatWouldBlock) {
    ASSERT_TRUE(StartClient());
    link.PushReceiveResult(commsWouldBlock);
    link.Push("hello");
    EXPECT_TRUE(client.AwaitReceived("hello"));
    EXPECT_TRUE(link.IsOpen());
}

TEST_F(TextProtocolClientTest, GoesOnAfterAFullBufferThatWasTheLast) {
    ASSERT_TRUE(StartClient());
    link.Push(std::string(1024, 'x'));
    ASSERT_TRUE(link.AwaitIdle());
    link.Push("hello");
    EXPECT_TRUE(client.AwaitReceived("xhello"));
}

class LossByReceive : public TextProtocolClientTest, public testing::WithParamInterface<int> {};

TEST_P(LossByReceive, EndsTheConnectionAndReportsIt) {
    client.CountOnNotices();
    ASSERT_TRUE(StartClient());
    link.PushReceiveResult(GetParam());
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
    EXPECT_FALSE(link.IsOpen());
}

INSTANTIATE_TEST_SUITE_P(TextProtocolClient, LossByReceive, testing::Values(0, commsFailed, -3));

}  // namespace
}  // namespace Morquil
