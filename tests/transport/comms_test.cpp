#include "transport/make_comms.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "core/event.h"
#include "tests/support/loopback_peer.h"
#include "tests/support/process_counts.h"

namespace Morquil {

// A failure prints the event, not its bytes.
static void PrintTo(CommsEvent event, std::ostream* out) {
    *out << "event " << static_cast<std::uint32_t>(event);
}

namespace {

using Testing::LoopbackListener;
using Testing::LoopbackPeer;
using Testing::OpenHandleCount;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::uint32_t longMs = 5000;

// The system may count in ticks of 16 ms.
constexpr milliseconds tick{16};

class CommsTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(comms->Initialise()); }
    void TearDown() override { comms->Close(); }

    // A standing connection, watched, whose first `Writable` has been told.
    void Connect() {
        ASSERT_TRUE(comms->Open("127.0.0.1", listener.Port(), false));
        ASSERT_TRUE(comms->WaitForConnect(2000));
        peer = listener.Accept();
        ASSERT_NE(peer, nullptr);
        comms->SetWaitMode(true, longMs);
        ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Writable);
    }

    // An existing connection of a plain socket, whose far end is `peer`; nothing is watched yet.
    SocketHandle PlainConnection() {
        const std::unique_ptr<LoopbackPeer> plain = listener.Connect();
        peer = listener.Accept();
        return plain->Detach();
    }

    // The same; a byte from the peer is there already.
    SocketHandle PlainConnectionWithAByte() {
        const std::unique_ptr<LoopbackPeer> plain = listener.Connect();
        peer = listener.Accept();
        EXPECT_TRUE(peer->Send("x"));
        EXPECT_TRUE(plain->HasReceived());
        return plain->Detach();
    }

    // What comes without waiting; `Timeout` for nothing.
    CommsEvent EventAtOnce() {
        comms->SetWaitMode(true, 0);
        const CommsEvent event = comms->WaitForEvent();
        comms->SetWaitMode(true, longMs);
        return event;
    }

    std::string Receive(int length = 1024) {
        std::array<char, 1024> buffer{};
        const int size = comms->Receive(buffer.data(), length, 0);
        return size > 0 ? std::string(buffer.data(), static_cast<std::size_t>(size)) : std::string();
    }

    int ReceiveResult() {
        char byte = 0;
        return comms->Receive(&byte, 1, 0);
    }

    LoopbackListener listener;
    std::unique_ptr<LoopbackPeer> peer;
    std::unique_ptr<AbstractComms> comms = MakeComms();
};

// Takes no further connection and refuses none: attempts to connect neither stand nor fail.
class StalledListener {
public:
    StalledListener() {
        for (int count = 0; count < 3; ++count) {
            fillers_.push_back(listener_.BeginConnect());
        }
    }
    std::uint32_t Port() const { return listener_.Port(); }

private:
    LoopbackListener listener_{0};
    std::vector<std::unique_ptr<LoopbackPeer>> fillers_;
};

std::uint32_t RefusingPort() {
    LoopbackListener listener;
    return listener.Port();
}

// --- before and without a connection ---

TEST(Comms, CannotBeSignalledBeforeItIsInitialised) {
    const std::unique_ptr<AbstractComms> comms = MakeComms();
    EXPECT_FALSE(comms->Signal(signalSend));
    EXPECT_FALSE(comms->Signal(signalStop));
    EXPECT_FALSE(comms->Signal(signalUser));
}

TEST(Comms, CanBeDestroyedWithoutBeingInitialised) {
    const LoopbackListener listener;
    MakeComms().reset();
    // The sockets of everybody else go on working.
    EXPECT_NE(listener.Connect(), nullptr);
}

TEST_F(CommsTest, OpensNothingWithoutAHostOrAPort) {
    const std::size_t before = OpenHandleCount();
    EXPECT_FALSE(comms->Open("", listener.Port(), false));
    EXPECT_FALSE(comms->Open("127.0.0.1", 0, false));
    EXPECT_FALSE(comms->Open("127.0.0.1", 65536 + listener.Port(), false));
    EXPECT_FALSE(comms->Open("127.0.0.1", 0, true));
    EXPECT_EQ(OpenHandleCount(), before);
}

TEST_F(CommsTest, DoesNotOpenAHostThatHasNoAddress) {
    const std::string noName(300, 'x');
    EXPECT_FALSE(comms->Open(noName, listener.Port(), false));
}

TEST_F(CommsTest, HasTwoSlotsWithoutEffect) {
    comms->Reserved1();
    comms->Reserved2();
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, NeitherSendsNorReceivesWithoutAConnection) {
    EXPECT_EQ(comms->Send("x", 1, 0), commsFailed);
    EXPECT_EQ(ReceiveResult(), commsFailed);
    EXPECT_FALSE(comms->WaitForConnect(0));
}

// --- connecting ---

TEST_F(CommsTest, OpensAnAddress) {
    EXPECT_TRUE(comms->Open("127.0.0.1", listener.Port(), false));
    EXPECT_NE(listener.Accept(), nullptr);
}

TEST_F(CommsTest, OpensAName) {
    EXPECT_TRUE(comms->Open("localhost", listener.Port(), false));
    EXPECT_NE(listener.Accept(), nullptr);
}

TEST_F(CommsTest, WaitsNoLongerForAConnectionThatStands) {
    ASSERT_TRUE(comms->Open("127.0.0.1", listener.Port(), false));
    const auto begin = Clock::now();
    EXPECT_TRUE(comms->WaitForConnect(2000));
    EXPECT_TRUE(comms->WaitForConnect(0));
    EXPECT_TRUE(comms->WaitForConnect(-1));
    EXPECT_LT(Clock::now() - begin, milliseconds(1000));
}

TEST_F(CommsTest, LeavesALossRightAfterConnectingToTheNextWait) {
    ASSERT_TRUE(comms->Open("127.0.0.1", listener.Port(), false));
    listener.Accept()->Reset();
    EXPECT_TRUE(comms->WaitForConnect(0));
    comms->SetWaitMode(true, longMs);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
}

TEST_F(CommsTest, DoesNotOpenARefusingPort) {
    EXPECT_FALSE(comms->Open("127.0.0.1", RefusingPort(), false));
}

TEST_F(CommsTest, OpensWithoutBlockingAndWaitsForTheConnection) {
    ASSERT_TRUE(comms->Open("127.0.0.1", listener.Port(), true));
    EXPECT_TRUE(comms->WaitForConnect(longMs));
    EXPECT_TRUE(comms->WaitForConnect(0));
    EXPECT_NE(listener.Accept(), nullptr);
}

TEST_F(CommsTest, TellsThatAConnectionWasRefusedInTheOpenOrInTheWait) {
    EXPECT_FALSE(comms->Open("127.0.0.1", RefusingPort(), true) && comms->WaitForConnect(longMs));
}

TEST_F(CommsTest, WaitsForAConnectionAsLongAsAsked) {
    const StalledListener stalled;
    ASSERT_TRUE(comms->Open("127.0.0.1", stalled.Port(), true));
    const auto begin = Clock::now();
    EXPECT_FALSE(comms->WaitForConnect(50));
    EXPECT_GE(Clock::now() - begin, milliseconds(50) - tick);
    EXPECT_FALSE(comms->WaitForConnect(0));
}

TEST_F(CommsTest, GivesAConnectionThatNeitherStandsNorFailsTwoSeconds) {
    const StalledListener stalled;
    const std::size_t before = OpenHandleCount();
    const auto begin = Clock::now();
    EXPECT_FALSE(comms->Open("127.0.0.1", stalled.Port(), false));
    const auto taken = Clock::now() - begin;
    EXPECT_GE(taken, milliseconds(2000) - tick);
    EXPECT_LT(taken, milliseconds(3500));
    EXPECT_EQ(OpenHandleCount(), before);
}

TEST_F(CommsTest, StopsConnectingAtOnceWhenToldTo) {
    const StalledListener stalled;
    QRN::Core::Event returned;
    ASSERT_EQ(returned.Create(), 0U);
    bool opened = true;
    std::thread opener([&] {
        opened = comms->Open("127.0.0.1", stalled.Port(), false);
        returned.Set();
    });
    bool timedOut = false;
    returned.Wait(50'000, timedOut);
    EXPECT_TRUE(timedOut) << "the attempt was over before anyone could stop it";
    EXPECT_TRUE(comms->Signal(signalStop));
    returned.Wait(1'000'000, timedOut);
    EXPECT_FALSE(timedOut);
    opener.join();
    EXPECT_FALSE(opened);
}

TEST_F(CommsTest, DoesNotConnectAfterAStopAndUsesTheStopUp) {
    const std::size_t before = OpenHandleCount();
    EXPECT_TRUE(comms->Signal(signalStop));
    EXPECT_FALSE(comms->Open("127.0.0.1", listener.Port(), false));
    EXPECT_EQ(OpenHandleCount(), before);
    EXPECT_TRUE(comms->Open("127.0.0.1", listener.Port(), false));
    EXPECT_EQ(EventAtOnce(), CommsEvent::Writable);
}

TEST_F(CommsTest, KeepsTheOtherSignalsWhileConnecting) {
    EXPECT_TRUE(comms->Signal(signalSend));
    EXPECT_TRUE(comms->Open("127.0.0.1", listener.Port(), false));
    EXPECT_EQ(EventAtOnce(), CommsEvent::SendRequested);
}

TEST_F(CommsTest, LeavesNoHandleBehind) {
    const std::uint32_t refusing = RefusingPort();
    const auto round = [&] {
        const std::unique_ptr<AbstractComms> fresh = MakeComms();
        fresh->Initialise();
        EXPECT_FALSE(fresh->Open("127.0.0.1", refusing, false));
        EXPECT_TRUE(fresh->Open("127.0.0.1", listener.Port(), false));
        EXPECT_TRUE(fresh->WaitForConnect(2000));
        fresh->Close();
        EXPECT_NE(listener.Accept(), nullptr);
    };
    round();  // whatever the system sets up once
    const std::size_t before = OpenHandleCount();
    for (int count = 0; count < 20; ++count) {
        round();
    }
    EXPECT_EQ(OpenHandleCount(), before);
}

// --- sockets of the caller ---

TEST_F(CommsTest, WatchesAnAttachedSocket) {
    EXPECT_TRUE(comms->Attach(PlainConnection(), false));
    ASSERT_TRUE(peer->Send("hello"));
    comms->SetWaitMode(true, longMs);
    CommsEvent event = comms->WaitForEvent();
    if (event == CommsEvent::Writable) {
        event = comms->WaitForEvent();
    }
    EXPECT_EQ(event, CommsEvent::Readable);
    EXPECT_EQ(Receive(), "hello");
}

TEST_F(CommsTest, NeverBlocksOnAnAttachedSocket) {
    for (const bool nonBlocking : {false, true}) {
        EXPECT_TRUE(comms->Attach(PlainConnection(), nonBlocking));
        EXPECT_EQ(ReceiveResult(), commsWouldBlock);
        comms->Close();
    }
}

TEST_F(CommsTest, CountsAnAttachedConnectionAsStanding) {
    EXPECT_TRUE(comms->Attach(PlainConnection(), true));
    EXPECT_TRUE(comms->WaitForConnect(0));
}

TEST_F(CommsTest, SendsSmallBlocksOfAnAttachedSocketAtOnce) {
    auto plain = listener.Connect();
    peer = listener.Accept();
    EXPECT_FALSE(plain->SendsAtOnce());
    const SocketHandle socket = plain->Detach();
    EXPECT_TRUE(comms->Attach(socket, false));
    comms = MakeComms();
    EXPECT_TRUE(LoopbackPeer(socket).SendsAtOnce());
}

TEST_F(CommsTest, LeavesAnAttachedSocketOpenWhenDestroyed) {
    const SocketHandle socket = PlainConnection();
    EXPECT_TRUE(comms->Attach(socket, false));
    comms = MakeComms();
    LoopbackPeer plain(socket);
    EXPECT_TRUE(plain.Send("still here"));
    EXPECT_EQ(peer->Receive(10), "still here");
}

// --- closing ---

TEST_F(CommsTest, ClosesOnceAndForgetsTheSocket) {
    Connect();
    const std::size_t before = OpenHandleCount();
    comms->Close();
    EXPECT_TRUE(peer->SeesClose());
    EXPECT_EQ(OpenHandleCount(), before - 1);
    // What has the number of the closed socket now is none of its business.
    const std::unique_ptr<LoopbackPeer> successor = listener.Connect();
    ASSERT_NE(successor, nullptr);
    comms->Close();
    EXPECT_TRUE(successor->Send("x"));
    EXPECT_EQ(comms->Send("x", 1, 0), commsFailed);
    EXPECT_FALSE(comms->WaitForConnect(0));
}

TEST_F(CommsTest, OpensAgainAfterClosing) {
    Connect();
    comms->Close();
    Connect();
    EXPECT_EQ(comms->Send("again", 5, 0), 5);
    EXPECT_EQ(peer->Receive(5), "again");
}

// --- waiting for the socket ---

TEST_F(CommsTest, TellsWritableOncePerArming) {
    Connect();
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_EQ(comms->Send("x", 1, 0), 1);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, TellsReadableAndThenWritableWithoutWaiting) {
    const SocketHandle socket = PlainConnectionWithAByte();
    comms->Attach(socket, false);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Readable);
    EXPECT_TRUE(comms->Signal(signalStop));
    // Found by the wait before, and so told before the stop.
    EXPECT_EQ(EventAtOnce(), CommsEvent::Writable);
    EXPECT_EQ(EventAtOnce(), CommsEvent::StopRequested);
}

TEST_F(CommsTest, TellsReadableWhenBytesCome) {
    Connect();
    ASSERT_TRUE(peer->Send("some bytes"));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(), "some bytes");
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    ASSERT_TRUE(peer->Send("more"));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
}

TEST_F(CommsTest, TellsReadableAgainAfterAReceiveThatLeftBytes) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_EQ(Receive(4), "abcd");
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "ef");
}

TEST_F(CommsTest, TellsAReceiveThatWouldBlockFromALoss) {
    Connect();
    EXPECT_EQ(ReceiveResult(), commsWouldBlock);
    ASSERT_TRUE(peer->Send("x"));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(), "x");
}

TEST_F(CommsTest, TellsThatThePeerHasClosed) {
    Connect();
    peer->Close();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    EXPECT_EQ(ReceiveResult(), 0);
}

TEST_F(CommsTest, TellsThatThePeerSendsNoMore) {
    Connect();
    peer->ShutdownSending();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
}

TEST_F(CommsTest, TellsThatThePeerHasReset) {
    Connect();
    peer->Reset();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    const int result = ReceiveResult();
    EXPECT_TRUE(result == commsFailed || result == 0) << result;
}

TEST_F(CommsTest, TellsTheEndOfAConnectionOnce) {
    Connect();
    peer->Close();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, LeavesTheSocketOutWhenToldTo) {
    Connect();
    ASSERT_TRUE(peer->Send("x"));
    EXPECT_EQ(comms->SetWaitMode(false, 5), 1000U);
    const auto begin = Clock::now();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Timeout);
    EXPECT_GE(Clock::now() - begin, milliseconds(1000) - tick);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Readable);
}

TEST_F(CommsTest, HearsSignalsWithoutTheSocket) {
    comms->SetWaitMode(false, 0);
    EXPECT_TRUE(comms->Signal(signalStop));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::StopRequested);
}

TEST_F(CommsTest, TellsTheTimeOutThatItUses) {
    EXPECT_EQ(comms->SetWaitMode(true, 9000), 9000U);
    EXPECT_EQ(comms->SetWaitMode(true, 0), 0U);
    EXPECT_EQ(comms->SetWaitMode(false, 9000), 1000U);
}

TEST_F(CommsTest, TimesOutAfterTheTimeAskedFor) {
    Connect();
    comms->SetWaitMode(true, 60);
    const auto begin = Clock::now();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Timeout);
    const auto taken = Clock::now() - begin;
    EXPECT_GE(taken, milliseconds(60) - tick);
    EXPECT_LT(taken, milliseconds(1000));
}

// --- signals ---

TEST_F(CommsTest, TellsStopThenSendThenUserThenTheSocket) {
    Connect();
    ASSERT_TRUE(peer->Send("x"));
    EXPECT_TRUE(comms->Signal(signalUser));
    EXPECT_TRUE(comms->Signal(signalSend));
    EXPECT_TRUE(comms->Signal(signalStop));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::StopRequested);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SendRequested);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::UserSignal);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
}

TEST_F(CommsTest, TellsASignalOnceHoweverOftenItWasGiven) {
    for (int count = 0; count < 3; ++count) {
        EXPECT_TRUE(comms->Signal(signalSend));
    }
    EXPECT_EQ(EventAtOnce(), CommsEvent::SendRequested);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, HasNoOtherSignals) {
    for (const int which : {-1, 3, 4, 255, 1 << 30}) {
        EXPECT_FALSE(comms->Signal(which)) << which;
    }
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, IsWokenByAnotherThread) {
    Connect();
    for (int round = 0; round < 50; ++round) {
        std::thread signaller([&] { EXPECT_TRUE(comms->Signal(signalSend)); });
        EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SendRequested);
        signaller.join();
    }
}

// --- sending ---

TEST_F(CommsTest, SendsBytes) {
    Connect();
    EXPECT_EQ(comms->Send("PING\n\n", 6, 0), 6);
    EXPECT_EQ(peer->Receive(6), "PING\n\n");
}

TEST_F(CommsTest, TellsWritableAgainOnlyAfterASendThatWouldBlock) {
    Connect();
    const std::string block(65536, 'x');
    std::size_t sent = 0;
    int result = 0;
    while ((result = comms->Send(block.data(), static_cast<int>(block.size()), 0)) > 0) {
        sent += static_cast<std::size_t>(result);
    }
    EXPECT_EQ(result, commsWouldBlock);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_EQ(peer->Receive(sent).size(), sent);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Writable);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, FailsToSendOnABrokenConnection) {
    Connect();
    peer->Reset();
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    EXPECT_EQ(comms->Send("x", 1, 0), commsFailed);
    EXPECT_EQ(comms->Send("x", 1, 0), commsFailed);
}

TEST_F(CommsTest, TakesNoNegativeLength) {
    Connect();
    char byte = 0;
    EXPECT_EQ(comms->Send("x", -1, 0), commsFailed);
    EXPECT_EQ(comms->Receive(&byte, -1, 0), commsFailed);
}

}  // namespace
}  // namespace Morquil
