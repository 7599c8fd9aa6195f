// What a transport does with connections.
#include "tests/unit/transport/comms_rig.h"

namespace Morquil {
namespace {

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
    // All other sockets keep working.
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

TEST_F(CommsTest, DoesNotWaitForAnEstablishedConnection) {
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

TEST_F(CommsTest, ReportsARefusedConnectionInTheOpenOrInTheWait) {
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

TEST_F(CommsTest, AbandonsAPendingConnectionAfterTwoSeconds) {
    const StalledListener stalled;
    const std::size_t before = OpenHandleCount();
    const auto begin = Clock::now();
    EXPECT_FALSE(comms->Open("127.0.0.1", stalled.Port(), false));
    const auto taken = Clock::now() - begin;
    EXPECT_GE(taken, milliseconds(2000) - tick);
    EXPECT_LT(taken, milliseconds(3500));
    EXPECT_EQ(OpenHandleCount(), before);
}

TEST_F(CommsTest, StopsConnectingAtOnceOnRequest) {
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

TEST_F(CommsTest, DoesNotConnectAfterAStopAndConsumesTheStop) {
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
    round();  // one-time setup of the system
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

TEST_F(CommsTest, TreatsAnAttachedConnectionAsEstablished) {
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
    // Whatever now has the number of the closed socket must not be affected.
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

}  // namespace
}  // namespace Morquil
