#include "transport/link_rules.h"

#include <gtest/gtest.h>

#include <ostream>

namespace Morquil {

// A failure prints the number, not the bytes.
inline void PrintTo(LinkRules::Action action, std::ostream* out) {
    *out << "action " << static_cast<int>(action);
}

namespace {

using Action = LinkRules::Action;
using std::chrono::milliseconds;

constexpr int bufferSize = 1024;

/// The rules of a connection on a clock that the test sets.
class LinkRulesTest : public testing::Test {
protected:
    Action On(CommsEvent event) { return rules.OnEvent(event, false); }

    std::uint32_t WaitAfter(int passedMs) {
        now += milliseconds(passedMs);
        return rules.NextWaitMs(now);
    }

    void SendBlock() {
        ASSERT_EQ(On(CommsEvent::SendRequested), Action::SendNext);
        rules.OnBytesSent();
        rules.OnBlockSent();
    }

    LinkRules rules;
    Silence::Time now{std::chrono::hours(1)};
};

// ---- Sending --------------------------------------------------------------------------------------------------------

TEST_F(LinkRulesTest, SendAtOnceWhenNothingIsInFlight) {
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::SendNext);
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::SendNext) << "the request found no block";
}

TEST_F(LinkRulesTest, SendNothingBeforeTheBlockInFlightIsAcknowledged) {
    SendBlock();
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::Wait);
    EXPECT_EQ(rules.OnAcknowledged(), Action::SendNext);
    rules.OnBlockSent();
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::Wait);
}

TEST_F(LinkRulesTest, SendAtOnceAgainWhenNothingWasPendingAtTheAcknowledgement) {
    SendBlock();
    EXPECT_EQ(rules.OnAcknowledged(), Action::SendNext);
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::SendNext);
}

TEST_F(LinkRulesTest, AcceptAnUnsolicitedAcknowledgement) {
    EXPECT_EQ(rules.OnAcknowledged(), Action::SendNext);
}

// ---- Silence --------------------------------------------------------------------------------------------------------

TEST_F(LinkRulesTest, PingADeviceAfterEachNineSecondsOfSilence) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(WaitAfter(9000), 9000U);
        EXPECT_EQ(On(CommsEvent::Timeout), Action::SendPing);
        rules.OnBytesSent();
    }
}

TEST_F(LinkRulesTest, SendABlockAfterAPingWithoutWaitingForItsAnswer) {
    EXPECT_EQ(On(CommsEvent::Timeout), Action::SendPing);
    rules.OnBytesSent();
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::SendNext);
}

TEST_F(LinkRulesTest, EndWhenABlockIsUnacknowledgedThroughTheSilence) {
    SendBlock();
    EXPECT_EQ(WaitAfter(0), 9000U);
    EXPECT_EQ(On(CommsEvent::Timeout), Action::End);
}

TEST_F(LinkRulesTest, PingAgainOnceTheBlockIsAcknowledged) {
    SendBlock();
    rules.OnAcknowledged();
    EXPECT_EQ(On(CommsEvent::Timeout), Action::SendPing);
}

TEST_F(LinkRulesTest, EndAfterNineSecondsHoweverOftenTheHostSetsSomething) {
    SendBlock();
    EXPECT_EQ(WaitAfter(0), 9000U);
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::Wait);
    EXPECT_EQ(WaitAfter(8000), 1000U);
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::Wait);
    EXPECT_EQ(WaitAfter(999), 1U);
    EXPECT_EQ(On(CommsEvent::SendRequested), Action::Wait);
    EXPECT_EQ(WaitAfter(1), 0U);
    EXPECT_EQ(On(CommsEvent::Timeout), Action::End);
}

TEST_F(LinkRulesTest, DoNotCountAWakeUpWithoutAByteAsASignOfLife) {
    EXPECT_EQ(WaitAfter(0), 9000U);
    for (const CommsEvent event : {CommsEvent::UserSignal, CommsEvent::Writable, CommsEvent::SendRequested}) {
        On(event);
    }
    EXPECT_EQ(rules.OnEvent(CommsEvent::WaitFailed, true), Action::Wait);
    EXPECT_EQ(On(CommsEvent::Readable), Action::Receive);
    EXPECT_EQ(rules.OnReceived(commsWouldBlock, bufferSize), Action::Wait);
    EXPECT_EQ(WaitAfter(5000), 4000U);
}

TEST_F(LinkRulesTest, CountEveryByteAsASignOfLife) {
    EXPECT_EQ(WaitAfter(0), 9000U);
    On(CommsEvent::Readable);
    rules.OnReceived(1, bufferSize);
    EXPECT_EQ(WaitAfter(5000), 9000U);
    rules.OnBytesSent();
    EXPECT_EQ(WaitAfter(5000), 9000U);
    EXPECT_EQ(WaitAfter(5000), 4000U);
}

// ---- Receiving ------------------------------------------------------------------------------------------------------

TEST_F(LinkRulesTest, ReceiveAgainOnlyAfterAFullBuffer) {
    EXPECT_EQ(On(CommsEvent::Readable), Action::Receive);
    EXPECT_EQ(rules.OnReceived(bufferSize, bufferSize), Action::Receive);
    EXPECT_EQ(rules.OnReceived(bufferSize - 1, bufferSize), Action::Wait);
}

TEST_F(LinkRulesTest, LeaveAFloodAfterSixteenReceives) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(On(CommsEvent::Readable), Action::Receive);
        for (int receives = 1; receives < 16; ++receives) {
            EXPECT_EQ(rules.OnReceived(bufferSize, bufferSize), Action::Receive) << receives;
        }
        EXPECT_EQ(rules.OnReceived(bufferSize, bufferSize), Action::Wait);
    }
}

TEST_F(LinkRulesTest, EndWhenTheFirstReceiveFindsTheEnd) {
    for (const int result : {0, int{commsFailed}, -3}) {
        EXPECT_EQ(On(CommsEvent::Readable), Action::Receive);
        EXPECT_EQ(rules.OnReceived(result, bufferSize), Action::End) << result;
    }
}

TEST_F(LinkRulesTest, LeaveAnEndAfterBytesToTheNextWait) {
    for (const int result : {0, int{commsFailed}, int{commsWouldBlock}}) {
        EXPECT_EQ(On(CommsEvent::Readable), Action::Receive);
        EXPECT_EQ(rules.OnReceived(bufferSize, bufferSize), Action::Receive);
        EXPECT_EQ(rules.OnReceived(result, bufferSize), Action::Wait) << result;
    }
}

// ---- The end --------------------------------------------------------------------------------------------------------

TEST_F(LinkRulesTest, EndAtAStopWhateverIsInFlight) {
    EXPECT_EQ(On(CommsEvent::StopRequested), Action::End);
    SendBlock();
    EXPECT_EQ(On(CommsEvent::StopRequested), Action::End);
}

TEST_F(LinkRulesTest, ReportALoss) {
    EXPECT_EQ(On(CommsEvent::SocketError), Action::ReportLoss);
}

TEST_F(LinkRulesTest, GoOnAfterAnInterruptedWaitOnly) {
    EXPECT_EQ(rules.OnEvent(CommsEvent::WaitFailed, true), Action::Wait);
    EXPECT_EQ(rules.OnEvent(CommsEvent::WaitFailed, false), Action::End);
}

TEST_F(LinkRulesTest, IgnoreEventsThatMeanNothingToThem) {
    for (const std::uint32_t event : {2U, 4U, 8U, 0xFFFFFFFFU}) {
        EXPECT_EQ(On(static_cast<CommsEvent>(event)), Action::Wait) << event;
    }
}

}  // namespace
}  // namespace Morquil
