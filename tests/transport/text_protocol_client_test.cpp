#include "transport/text_protocol_client.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/thread.h"
#include "tests/core/threads.h"
#include "tests/support/fake_comms.h"
#include "tests/support/monitor.h"
#include "tests/support/watchdog.h"

namespace Morquil {
namespace {

using QRN::Core::CurrentThreadId;
using QRN::Core::Testing::Threads;
using Testing::FakeConnection;
using Testing::Monitor;
using Testing::Watchdog;

/// A message that is a list of pieces.
class PiecesMessage final : public TextProtocolMessageBase {
public:
    explicit PiecesMessage(std::vector<std::string> pieces) : pieces_(std::move(pieces)) {}
    bool WriteTo(IMessageSender& sender) const override {
        sender.BeginMessage();
        for (const std::string& piece : pieces_) {
            sender.SendFormatted("%s", piece.c_str());
        }
        return sender.EndMessage();
    }

private:
    std::vector<std::string> pieces_;
};

/// Sends what the test gives it and takes every received piece that holds "ACK" for an acknowledgement.
class TestClient final : public TextProtocolClient {
public:
    explicit TestClient(FakeConnection& connection) : TextProtocolClient(connection.MakeComms()) {}
    ~TestClient() override { Stop(); }

    bool Queue(std::vector<std::string> pieces) {
        {
            const auto lock = Monitor::Enter();
            waiting_.push_back(std::move(pieces));
        }
        return WakeSender();
    }
    void CountOnNotices() { ++disconnectNoticeCount_; }
    bool AwaitReceived(const std::string& text) const {
        return Monitor::Await([&] { return received_.find(text) != std::string::npos; });
    }
    bool AwaitNotices(std::size_t count) const {
        return Monitor::Await([&] { return notices_.size() >= count; });
    }
    bool AwaitThreadEnd() const {
        return Monitor::Await([&] { return threadsEnded_ == threadsStarted_; });
    }
    std::string Received() const { return Locked(received_); }
    std::vector<bool> Notices() const { return Locked(notices_); }
    int ThreadsStarted() const { return Locked(threadsStarted_); }

    /// Run on the connection thread for whatever is received. To be set before the client is started.
    std::function<void()> onReceived;
    std::function<void(bool)> onNotice;

private:
    template <class Value>
    static Value Locked(const Value& value) {
        const auto lock = Monitor::Enter();
        return value;
    }

    std::unique_ptr<TextProtocolMessageBase> TakeNextMessage() override {
        const auto lock = Monitor::Enter();
        if (waiting_.empty()) {
            return nullptr;
        }
        auto message = std::make_unique<PiecesMessage>(std::move(waiting_.front()));
        waiting_.pop_front();
        return message;
    }
    void OnDataReceived(const char* bytes, std::size_t length) override {
        const std::string text(bytes, length);
        if (text.find("ACK") != std::string::npos) {
            Acknowledge();
        }
        if (onReceived) {
            onReceived();
        }
        const auto lock = Monitor::Enter();
        received_ += text;
        Monitor::Changed();
    }
    void OnConnectionChanged(bool connected) override {
        if (onNotice) {
            onNotice(connected);
        }
        const auto lock = Monitor::Enter();
        notices_.push_back(connected);
        Monitor::Changed();
    }
    void OnThreadStarting() override {
        const auto lock = Monitor::Enter();
        ++threadsStarted_;
    }
    void OnThreadEnding() override {
        const auto lock = Monitor::Enter();
        ++threadsEnded_;
        Monitor::Changed();
    }

    std::deque<std::vector<std::string>> waiting_;
    std::string received_;
    std::vector<bool> notices_;
    int threadsStarted_ = 0;
    int threadsEnded_ = 0;
};

class TextProtocolClientTest : public testing::Test {
protected:
    bool StartClient() { return client.SetServer("device.test", 9800) && client.Start(); }

    Watchdog watchdog;
    FakeConnection link;
    TestClient client{link};
};

// ---- Start ----------------------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, OpensABlockingConnectionAndWaitsTwoSecondsForIt) {
    ASSERT_TRUE(StartClient());
    ASSERT_EQ(link.Openings().size(), 1U);
    EXPECT_EQ(link.Openings()[0].host, "device.test");
    EXPECT_EQ(link.Openings()[0].port, 9800U);
    EXPECT_FALSE(link.Openings()[0].nonBlocking);
    EXPECT_EQ(link.ConnectWaits(), std::vector<std::int32_t>{2000});
}

TEST_F(TextProtocolClientTest, TellsTheConnectionOnTheStartingThread) {
    QRN::Core::ThreadId told = 0;
    client.onNotice = [&](bool connected) { told = connected ? CurrentThreadId() : told; };
    ASSERT_TRUE(StartClient());
    EXPECT_EQ(told, CurrentThreadId());
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

TEST_F(TextProtocolClientTest, TakesAnotherServerWhenItHasStopped) {
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

TEST_F(TextProtocolClientTest, FailsToStartWhenTheConnectionDoesNotStandInTime) {
    link.RefuseConnect();
    testing::internal::CaptureStdout();
    EXPECT_FALSE(StartClient());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error connecting to server\n");
    EXPECT_FALSE(link.IsOpen()) << "a socket is left over";
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

TEST_F(TextProtocolClientTest, AnUnaskedAcknowledgementReleasesTheNextBlockToo) {
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

TEST_F(TextProtocolClientTest, SendsTheRestOfWhatTheSystemTookInPart) {
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

TEST_F(TextProtocolClientTest, EndsTheConnectionWhenASendOfTheCallersFails) {
    ASSERT_TRUE(StartClient());
    ASSERT_TRUE(link.AwaitIdle());
    link.BreakSends();
    client.SendFormatted("text\n");
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_FALSE(link.IsOpen());
}

// ---- Silence --------------------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, PingsASilentDevice) {
    ASSERT_TRUE(StartClient());
    link.Push(CommsEvent::Timeout);
    link.Push(CommsEvent::Timeout);
    ASSERT_TRUE(link.AwaitIdle());
    EXPECT_EQ(link.Sends(), (std::vector<std::string>{"PING\n\n", "PING\n\n"}));
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
    link.Push(std::string(64 * 1024, 'x'));
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

TEST_P(LossByReceive, EndsTheConnectionAndTellsIt) {
    client.CountOnNotices();
    ASSERT_TRUE(StartClient());
    link.PushReceiveResult(GetParam());
    EXPECT_TRUE(client.AwaitThreadEnd());
    EXPECT_EQ(client.Notices(), (std::vector<bool>{true, false}));
    EXPECT_FALSE(link.IsOpen());
}

INSTANTIATE_TEST_SUITE_P(TextProtocolClient, LossByReceive, testing::Values(0, commsFailed, -3));

// ---- The other events -----------------------------------------------------------------------------------------------

TEST_F(TextProtocolClientTest, TellsANetworkErrorOnTheConsoleAndEnds) {
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

TEST_F(TextProtocolClientTest, GivesNoNoticeOfALossThatNobodyCountsOn) {
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

TEST_F(TextProtocolClientTest, StoppingWhatDoesNotRunIsHarmless) {
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
                EXPECT_FALSE(otherLink.IsOpen()) << "Stop came back before the thread had ended";
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

TEST_F(TextProtocolClientTest, SaysThatASenderCouldNotBeWoken) {
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

TEST_F(TextProtocolClientTest, StopsWhileItTellsTheConnection) {
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
        // Each round runs on a thread of its own, to which the system may give the id of the last connection thread.
        const Threads host(1, [&] {
            EXPECT_TRUE(client.Start());
            client.Stop();
            EXPECT_FALSE(link.IsOpen()) << "Stop came back before the thread had ended";
        });
    }
}

}  // namespace
}  // namespace Morquil
