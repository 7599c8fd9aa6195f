// What a transport reports to a waiting thread, and what it sends.
#include "tests/kit/watchdog.h"
#include "tests/unit/transport/comms_rig.h"
#include "transport/deadline.h"

namespace Morquil {
namespace {

// --- waiting for the socket ---

TEST_F(CommsTest, ReportsWritableOncePerArming) {
    Connect();
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_EQ(comms->Send("x", 1, 0), 1);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, ReportsReadableAndThenWritableWithoutWaiting) {
    const SocketHandle socket = PlainConnectionWithAByte();
    comms->Attach(socket, false);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Readable);
    EXPECT_TRUE(comms->Signal(signalStop));
    // Found by the previous wait, and therefore reported before the stop.
    EXPECT_EQ(EventAtOnce(), CommsEvent::Writable);
    EXPECT_EQ(EventAtOnce(), CommsEvent::StopRequested);
}

TEST_F(CommsTest, ReportsReadableWhenBytesCome) {
    Connect();
    ASSERT_TRUE(peer->Send("some bytes"));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(), "some bytes");
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    ASSERT_TRUE(peer->Send("more"));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
}

TEST_F(CommsTest, WaitsWithoutALimitForWhatComes) {
    Connect();
    comms->SetWaitMode(true, unlimitedTimeout);
    ASSERT_TRUE(peer->Send("x"));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(), "x");
}

TEST_F(CommsTest, ReportsReadableAgainAfterAReceiveThatLeftBytes) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_EQ(Receive(4), "abcd");
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "ef");
}

TEST_F(CommsTest, ReportsASignalBeforeTheBytesThatAReceiveLeft) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "abcd");
    EXPECT_TRUE(comms->Signal(signalStop));
    EXPECT_EQ(EventAtOnce(), CommsEvent::StopRequested);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Readable);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_EQ(Receive(4), "ef");
}

TEST_F(CommsTest, ReportsNoLeftBytesWhileTheSocketIsLeftOut) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "abcd");
    comms->SetWaitMode(false, 0);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Timeout);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Readable);
}

TEST_F(CommsTest, LosesNothingOfALongTextInSmallPieces) {
    Connect();
    std::string sent;
    for (int number = 0; sent.size() < 50'000; ++number) {
        sent += std::to_string(number) + ' ';
    }
    ASSERT_TRUE(peer->Send(sent));
    std::string received;
    while (received.size() < sent.size()) {
        ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
        received += Receive(300);
    }
    EXPECT_EQ(received, sent);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, ForgetsTheBytesOfAnEarlierConnection) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "abcd");
    comms->Close();
    Connect();
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_EQ(ReceiveResult(), commsWouldBlock);
}

TEST_F(CommsTest, DistinguishesAReceiveThatWouldBlockFromALoss) {
    Connect();
    EXPECT_EQ(ReceiveResult(), commsWouldBlock);
    ASSERT_TRUE(peer->Send("x"));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(), "x");
}

TEST_F(CommsTest, ReportsThatThePeerHasClosed) {
    Connect();
    peer->Close();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    EXPECT_EQ(ReceiveResult(), 0);
}

TEST_F(CommsTest, ReportsBytesAgainAfterAnotherWaitForTheConnection) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "abcd");
    EXPECT_TRUE(comms->WaitForConnect(0));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "ef");
}

TEST_F(CommsTest, HasNoBytesOfAClosedConnection) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "abcd");
    comms->Close();
    EXPECT_EQ(ReceiveResult(), commsFailed);
}

TEST_F(CommsTest, LeavesWhatWasNotAskedForInASocketOfOthers) {
    const SocketHandle socket = PlainConnection();
    ASSERT_TRUE(comms->Attach(socket, true));
    comms->SetWaitMode(true, longMs);
    ASSERT_TRUE(peer->Send("abcdef"));
    CommsEvent event = comms->WaitForEvent();
    if (event == CommsEvent::Writable) {
        event = comms->WaitForEvent();
    }
    ASSERT_EQ(event, CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "abcd");
    const std::unique_ptr<AbstractComms> other = MakeComms();
    ASSERT_TRUE(other->Initialise());
    ASSERT_TRUE(other->Attach(socket, true));
    std::array<char, 8> buffer{};
    EXPECT_EQ(other->Receive(buffer.data(), 8, 0), 2);
    EXPECT_EQ(std::string(buffer.data(), 2), "ef");
}

TEST_F(CommsTest, ReportsThatThePeerSendsNoMore) {
    Connect();
    peer->ShutdownSending();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
}

TEST_F(CommsTest, ReportsThatThePeerHasReset) {
    Connect();
    peer->Reset();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    const int result = ReceiveResult();
    EXPECT_TRUE(result == commsFailed || result == 0) << result;
}

TEST_F(CommsTest, ReportsTheEndOfAConnectionOnce) {
    Connect();
    peer->Close();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, ReportsTheEndAfterTheBytesThatCameBeforeIt) {
    Connect();
    ASSERT_TRUE(peer->Send("abcdef"));
    peer->Close();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "abcd");
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(4), "ef");
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
}

TEST_F(CommsTest, LosesNothingOfALongTextBeforeTheEnd) {
    Connect();
    const std::string sent(100'000, 'x');
    ASSERT_TRUE(peer->Send(sent));
    peer->Close();
    std::string received;
    CommsEvent event = comms->WaitForEvent();
    for (; event == CommsEvent::Readable; event = comms->WaitForEvent()) {
        received += Receive(1000);
    }
    EXPECT_EQ(event, CommsEvent::SocketError);
    EXPECT_EQ(received, sent);
}

TEST_F(CommsTest, WaitsQuietlyForBytesBeforeTheEndToBeReceived) {
    Connect();
    ASSERT_TRUE(peer->Send("x"));
    peer->Close();
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Timeout);
    EXPECT_TRUE(comms->Signal(signalUser));
    EXPECT_EQ(EventAtOnce(), CommsEvent::UserSignal);
    EXPECT_EQ(Receive(), "x");
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
}

TEST_F(CommsTest, ReportsAStopBeforeTheBytesThatCameBeforeTheEnd) {
    Connect();
    ASSERT_TRUE(peer->Send(std::string(20'000, 'x')));
    peer->Close();
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(1000).size(), 1000U);
    EXPECT_TRUE(comms->Signal(signalStop));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::StopRequested);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
}

TEST_F(CommsTest, ReportsTheEndOfAConnectionOnceItIsLookedAt) {
    Connect();
    ASSERT_TRUE(peer->Send("x"));
    peer->Close();
    ASSERT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(), "x");
    comms->SetWaitMode(false, 0);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Timeout);
    comms->SetWaitMode(true, longMs);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
}

TEST_F(CommsTest, LeavesTheSocketOutOnRequest) {
    Connect();
    ASSERT_TRUE(peer->Send("x"));
    EXPECT_EQ(comms->SetWaitMode(false, 5), 1000U);
    const auto begin = Clock::now();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Timeout);
    EXPECT_GE(Clock::now() - begin, milliseconds(1000) - tick);
    EXPECT_EQ(EventAtOnce(), CommsEvent::Readable);
}

TEST_F(CommsTest, ReportsSignalsWithoutTheSocket) {
    comms->SetWaitMode(false, 0);
    EXPECT_TRUE(comms->Signal(signalStop));
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::StopRequested);
}

TEST_F(CommsTest, ReturnsTheTimeOutThatItUses) {
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

TEST_F(CommsTest, ReportsStopThenSendThenUserThenTheSocket) {
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

TEST_F(CommsTest, ReportsASignalOnceHoweverOftenItWasSet) {
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

TEST_F(CommsTest, ReportsWritableAgainOnlyAfterASendThatWouldBlock) {
    Connect();
    const std::size_t sent = SendUntilItWouldBlock();
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

TEST_F(CommsTest, RefusesANegativeLength) {
    Connect();
    char byte = 0;
    EXPECT_EQ(comms->Send("x", -1, 0), commsFailed);
    EXPECT_EQ(comms->Receive(&byte, -1, 0), commsFailed);
}

// --- waiting to send ---

TEST_F(CommsTest, WaitsUntilThePeerReads) {
    const Testing::Watchdog watchdog;
    Connect();
    const std::size_t sent = SendUntilItWouldBlock();
    std::thread reading([&] { EXPECT_EQ(peer->Receive(sent + 1).size(), sent + 1); });
    EXPECT_EQ(SendWhenWritable(), 1);
    reading.join();
}

TEST_F(CommsTest, KeepsWhatHappensWhileItWaitsToSend) {
    const Testing::Watchdog watchdog;
    Connect();
    const std::size_t sent = SendUntilItWouldBlock();
    std::thread reading([&] {
        EXPECT_TRUE(comms->Signal(signalSend));
        EXPECT_TRUE(peer->Send("abc"));
        EXPECT_EQ(peer->Receive(sent + 1).size(), sent + 1);
    });
    EXPECT_EQ(SendWhenWritable(), 1);
    reading.join();
    EXPECT_EQ(EventAtOnce(), CommsEvent::SendRequested);
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::Readable);
    EXPECT_EQ(Receive(), "abc");
}

TEST_F(CommsTest, EndsTheWaitToSendAtAStopAndKeepsTheStop) {
    const Testing::Watchdog watchdog;
    Connect();
    SendUntilItWouldBlock();
    std::thread stopping([&] { EXPECT_TRUE(comms->Signal(signalStop)); });
    comms->WaitUntilWritable();
    stopping.join();
    comms->WaitUntilWritable();
    EXPECT_EQ(EventAtOnce(), CommsEvent::StopRequested);
}

TEST_F(CommsTest, EndsTheWaitToSendWhenTheConnectionBreaks) {
    const Testing::Watchdog watchdog;
    Connect();
    SendUntilItWouldBlock();
    std::thread breaking([&] { peer->Reset(); });
    EXPECT_EQ(SendWhenWritable(), commsFailed);
    breaking.join();
    EXPECT_EQ(comms->WaitForEvent(), CommsEvent::SocketError);
}

}  // namespace
}  // namespace Morquil
