#include "delivery/receipts.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/kit/threads.h"
#include "tests/unit/device/recording_observers.h"

namespace Morquil {
namespace {

using Testing::Held;
using Testing::ReceiptObserver;
using Testing::Threads;
using Texts = std::vector<std::string>;

bool IsAlwaysReported(std::size_t /*slot*/, std::string_view /*key*/) {
    return true;
}

std::string Block(int gain) {
    return "VIDEO PROC AMP:\nGain: " + std::to_string(gain) + "\n\n";
}

class FollowedReceipts : public testing::Test {
protected:
    FollowedReceipts() { receipts.OnConnected(); }
    ~FollowedReceipts() override { receipts.Silence(); }

    UINT64 Open() {
        UINT64 receipt = 0;
        EXPECT_EQ(receipts.Open(observer.Get(), morquilReceiptThisThread, &receipt), S_OK);
        return receipt;
    }
    void Mark(UINT64 receipt) {
        bool isDue = false;
        EXPECT_EQ(receipts.Mark(receipt, isDue), S_OK);
    }
    /// A receipt that collects nothing: all changes are another thread's.
    UINT64 OpenElsewhere() {
        UINT64 receipt = 0;
        {
            const Threads other(1, [&] { receipt = Open(); });
        }
        return receipt;
    }
    void Queue() {
        receipts.Prepare(slot);
        receipts.OnQueued(slot, true);
    }
    void Send(int gain) {
        receipts.OnTaken(slot);
        receipts.OnSending(++sent, Block(gain));
    }
    /// The device acknowledges it.
    void Change(int gain) {
        Queue();
        Send(gain);
        receipts.OnAnswered(sent, true);
    }
    void Report(int gain) {
        receipts.OnReport(slot, Block(gain));
        receipts.NotifyDue();
    }

    static constexpr std::size_t slot = 6;
    Held<ReceiptObserver> observer;
    Receipts receipts{&IsAlwaysReported};
    std::uint64_t sent = 0;
};

TEST_F(FollowedReceipts, ForgetTheOldestUnreportedChangesThatNoReceiptWaitsFor) {
    OpenElsewhere();
    for (int gain = 1; gain <= static_cast<int>(Receipts::unreportedLimit) + 1; ++gain) {
        Change(gain);
    }
    const UINT64 receipt = Open();
    Change(1);
    Mark(receipt);
    Report(1);
    EXPECT_EQ(observer->Notifications(), (Texts{"2: answered 1 0 0", "2: settled 1 0"}));
}

TEST_F(FollowedReceipts, LeaveALateReportToTheOlderOfTwoEqualChanges) {
    OpenElsewhere();
    Change(1);
    const UINT64 receipt = Open();
    Change(1);
    Mark(receipt);
    Report(1);
    EXPECT_EQ(observer->TakeNotifications(), Texts{"2: answered 1 0 0"});
    Report(1);
    EXPECT_EQ(observer->Notifications(), Texts{"2: settled 1 0"});
}

TEST_F(FollowedReceipts, KeepAnUnreportedChangeThatAReceiptWaitsFor) {
    const UINT64 receipt = Open();
    Change(1);
    Mark(receipt);
    OpenElsewhere();
    for (int gain = 2; gain <= static_cast<int>(Receipts::unreportedLimit) + 10; ++gain) {
        Change(gain);
    }
    Report(1);
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 1 0 0", "1: settled 1 0"}));
}

TEST_F(FollowedReceipts, ForgetACancelledReceipt) {
    OpenElsewhere();
    const UINT64 cancelled = Open();
    Change(1);
    Mark(cancelled);
    EXPECT_EQ(receipts.Cancel(cancelled), S_OK);
    for (int gain = 2; gain <= static_cast<int>(Receipts::unreportedLimit) + 1; ++gain) {
        Change(gain);
    }
    const UINT64 receipt = Open();
    Change(1);
    Mark(receipt);
    Report(1);
    EXPECT_EQ(observer->Notifications(), (Texts{"3: answered 1 0 0", "3: settled 1 0"}));
}

TEST_F(FollowedReceipts, AreNotAttachedToAChangeThatWasPreparedButNotQueued) {
    const UINT64 receipt = Open();
    receipts.Prepare(slot);  // then memory has run out
    Mark(receipt);
    receipts.NotifyDue();
    EXPECT_EQ(observer->Notifications(), (Texts{"1: answered 0 0 0", "1: settled 0 0"}));
}

TEST_F(FollowedReceipts, CountAChangeOnceHoweverOftenItIsMerged) {
    const UINT64 first = Open();
    const UINT64 second = Open();
    Queue();
    Mark(first);
    Queue();
    Mark(second);
    Send(5);
    receipts.OnAnswered(sent, true);
    Report(5);
    EXPECT_EQ(observer->Notifications(),
              (Texts{"1: answered 1 0 0", "1: settled 1 0", "2: answered 1 0 0", "2: settled 1 0"}));
}

TEST_F(FollowedReceipts, CountAReceiptOpenedWhileAChangeIsQueuedOrDoNot) {
    Open();
    receipts.Prepare(slot);
    const UINT64 meanwhile = Open();
    receipts.OnQueued(slot, true);
    Mark(meanwhile);
    Send(5);
    receipts.OnAnswered(sent, true);
    Report(5);
    EXPECT_TRUE(observer->AwaitNotified(2)) << "it is notified in either case";
}

}  // namespace
}  // namespace Morquil
