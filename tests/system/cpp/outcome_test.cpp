// From the notifications of a receipt to an outcome, without a device.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/system/cpp/fake_delivery.h"

namespace Morquil::Testing {
namespace {

using morquil::Outcome;
using morquil::Result;
using namespace std::chrono_literals;

const auto setNothing = [] {};

class CppOutcome : public testing::Test {
protected:
    /// What the library notifies of once the receipt is marked.
    void OnMark(std::function<void(IMorquilReceiptObserver& observer)> notify) {
        delivery->onMark = [this, notify = std::move(notify)] { notify(*delivery->observer.Get()); };
    }
    Outcome OutcomeOf(std::function<void(IMorquilReceiptObserver& observer)> notify) {
        OnMark(std::move(notify));
        return device.Apply(setNothing, 0ms);
    }

    static constexpr UINT64 number = FakeDelivery::number;

    const morquil::Pointer<FakeDelivery> delivery = morquil::Pointer<FakeDelivery>::Adopt(new FakeDelivery);
    const morquil::Device device = Wrapped(new FakeDeliveringDevice(delivery));
};

TEST_F(CppOutcome, IsAppliedWhenTheDeviceReportsWhatWasSet) {
    const Outcome outcome = OutcomeOf([](IMorquilReceiptObserver& observer) {
        observer.Answered(number, 2, 0, 0);
        observer.Settled(number, 2, 0);
    });
    EXPECT_TRUE(outcome.IsApplied());
    EXPECT_EQ(outcome, Result::Applied);
    EXPECT_EQ(outcome.acknowledged, 2U);
    EXPECT_EQ(outcome.confirmed, 2U);
    EXPECT_EQ(ToText(outcome), "applied");
}

TEST_F(CppOutcome, IsAdjustedWhenOneBlockIs) {
    const Outcome outcome = OutcomeOf([](IMorquilReceiptObserver& observer) {
        observer.Answered(number, 2, 0, 0);
        observer.Settled(number, 1, 1);
    });
    EXPECT_EQ(outcome, Result::Adjusted);
    EXPECT_EQ(ToText(outcome), "adjusted: the device reports other values in 1 of 2 blocks");
}

TEST_F(CppOutcome, IsRefusedWhenOneMessageIs) {
    const Outcome outcome = OutcomeOf([](IMorquilReceiptObserver& observer) {
        observer.Answered(number, 2, 1, 0);
        observer.Settled(number, 1, 1);
    });
    EXPECT_EQ(outcome, Result::Refused);
    EXPECT_EQ(ToText(outcome), "refused: the device has refused 1 of 3 messages");
}

TEST_F(CppOutcome, IsNotSentWhenOneMessageNeverIs) {
    const Outcome outcome = OutcomeOf([](IMorquilReceiptObserver& observer) {
        observer.Answered(number, 0, 0, 1);
        observer.Settled(number, 0, 0);
    });
    EXPECT_EQ(outcome, Result::NotSent);
    EXPECT_EQ(ToText(outcome), "not sent: 1 message of a kind that is never sent");
}

TEST_F(CppOutcome, IsLostWhenTheConnectionEnds) {
    const Outcome outcome = OutcomeOf([](IMorquilReceiptObserver& observer) { observer.Lost(number, 1, 1, 1, 2); });
    EXPECT_EQ(outcome, Result::Lost);
    EXPECT_EQ(outcome.acknowledged, 1U);
    EXPECT_EQ(outcome.refused, 1U);
    EXPECT_EQ(ToText(outcome), "lost: the connection has ended; 1 message unanswered, 2 not sent");
}

TEST_F(CppOutcome, IsTimedOutWhenTheDeviceDoesNotAnswer) {
    const Outcome outcome = OutcomeOf([](IMorquilReceiptObserver&) {});
    EXPECT_EQ(outcome, Result::TimedOut);
    EXPECT_EQ(ToText(outcome), "timed out: the device has not answered yet");
    EXPECT_TRUE(delivery->isCancelled);
}

TEST_F(CppOutcome, IsTimedOutWhenTheDeviceAcceptsAndDoesNotReport) {
    const Outcome outcome = OutcomeOf([](IMorquilReceiptObserver& observer) { observer.Answered(number, 1, 0, 0); });
    EXPECT_EQ(outcome, Result::TimedOut);
    EXPECT_EQ(outcome.acknowledged, 1U);
    EXPECT_EQ(ToText(outcome), "timed out: the device has accepted the change, but not reported it yet");
}

TEST_F(CppOutcome, IsRefusedEvenWhenTheRestIsNotReportedInTime) {
    const Outcome outcome = OutcomeOf([](IMorquilReceiptObserver& observer) { observer.Answered(number, 1, 1, 0); });
    EXPECT_EQ(outcome, Result::Refused);
}

TEST_F(CppOutcome, CountsWhenItArrivesWhileTheReceiptIsBeingCancelled) {
    delivery->onCancel = [this] {
        delivery->observer->Answered(number, 1, 0, 0);
        delivery->observer->Settled(number, 1, 0);
    };
    EXPECT_EQ(device.Apply(setNothing, 0ms), Result::Applied);
}

TEST_F(CppOutcome, IsLeftAloneByWhatArrivesAfterTheLimit) {
    Outcome outcome = OutcomeOf([](IMorquilReceiptObserver&) {});
    delivery->observer->Settled(number, 1, 0);
    EXPECT_EQ(outcome, Result::TimedOut);
}

TEST_F(CppOutcome, MayBeAwaitedForAnyTime) {
    OnMark([](IMorquilReceiptObserver& observer) { observer.Settled(number, 0, 0); });
    EXPECT_EQ(device.Apply(setNothing, (std::chrono::milliseconds::max)()), Result::Applied);
    EXPECT_EQ(device.Apply(setNothing, (std::chrono::milliseconds::min)()), Result::Applied);
}

TEST_F(CppOutcome, IsLostAtOnceWithoutAConnection) {
    delivery->opened = E_FAIL;
    bool isCalled = false;
    const auto note = [&] { isCalled = true; };
    EXPECT_EQ(device.Apply(note), Result::Lost);
    EXPECT_EQ(device.ApplyAsync(note).get(), Result::Lost);
    std::vector<Outcome> outcomes;
    const morquil::Subscription pending =
        device.ApplyAsync(note, [&](const Outcome& outcome) { outcomes.push_back(outcome); });
    EXPECT_EQ(outcomes, std::vector<Outcome>{Outcome()});
    EXPECT_FALSE(isCalled);
}

TEST_F(CppOutcome, IsLostWhenTheDeviceDropsTheReceiptWithoutAWord) {
    std::future<Outcome> outcome = device.ApplyAsync(setNothing);
    EXPECT_EQ(outcome.wait_for(0ms), std::future_status::timeout);
    delivery->observer = {};
    ASSERT_EQ(outcome.wait_for(0ms), std::future_status::ready);
    EXPECT_EQ(outcome.get(), Result::Lost);
    EXPECT_FALSE(delivery->isCancelled);
}

TEST_F(CppOutcome, IsNotReportedOnceItsSubscriptionHasEnded) {
    int calls = 0;
    morquil::Subscription pending = device.ApplyAsync(setNothing, [&](const Outcome&) { ++calls; });
    pending.Cancel();
    EXPECT_TRUE(delivery->isCancelled);
    delivery->observer->Settled(number, 1, 0);
    EXPECT_EQ(calls, 0);
}

TEST_F(CppOutcome, IsAnExceptionWhenTheFunctionThrowsOne) {
    const auto fail = [] { throw std::invalid_argument("not today"); };
    EXPECT_THROW(device.Apply(fail), std::invalid_argument);
    EXPECT_TRUE(delivery->isCancelled);
    delivery->isCancelled = false;
    EXPECT_THROW(device.ApplyAsync(fail), std::invalid_argument);
    EXPECT_TRUE(delivery->isCancelled);
    delivery->isCancelled = false;
    std::vector<std::function<void()>> queue;
    int calls = 0;
    const auto failAfterLoss = [&] {
        delivery->observer->Lost(number, 0, 0, 0, 1);
        throw std::invalid_argument("not today");
    };
    EXPECT_THROW(static_cast<void>(device.ApplyAsync(
                     failAfterLoss, [&](const Outcome&) { ++calls; },
                     [&](std::function<void()> handler) { queue.push_back(std::move(handler)); })),
                 std::invalid_argument);
    EXPECT_TRUE(delivery->isCancelled);
    ASSERT_EQ(queue.size(), 1U);
    queue[0]();
    EXPECT_EQ(calls, 0);
}

TEST_F(CppOutcome, IsAnErrorWhenTheLibraryCannotBeWoken) {
    delivery->marked = E_FAIL;
    EXPECT_THROW(device.Apply(setNothing), morquil::Error);
}

TEST_F(CppOutcome, IsRefusedToAHandlerThatTheDeviceWouldWaitFor) {
    std::string failure;
    OnMark([&](IMorquilReceiptObserver& observer) { observer.Settled(number, 0, 0); });
    const morquil::Subscription pending = device.ApplyAsync(setNothing, [&](const Outcome&) {
        try {
            device.Apply(setNothing);
        } catch (const morquil::WouldDeadlock& error) {
            failure = error.what();
        }
    });
    EXPECT_EQ(
        failure,
        "Device::Apply: it waits for the library's thread, and this handler runs on it: use ApplyAsync, or run the "
        "handler on another thread with an executor");
    EXPECT_EQ(device.Apply(setNothing), Result::Applied);  // the callback is over
}

TEST_F(CppOutcome, NeedsALibraryThatHasReceipts) {
    const morquil::Device old = Wrapped(new FakeDevice);
    try {
        old.Apply(setNothing);
        FAIL() << "it has none";
    } catch (const morquil::Error& error) {
        EXPECT_EQ(error.Result(), E_NOINTERFACE);
        EXPECT_STREQ(error.what(),
                     "Device::Apply: the library is older than morquil.hpp and cannot do this; install a newer one");
    }
    EXPECT_THROW(static_cast<void>(old.OnReport([](const morquil::Report&) {})), morquil::Error);
    EXPECT_THROW(old.Silence(), morquil::Error);
}

TEST_F(CppOutcome, IsComparedByItsResultAndItsCounts) {
    Outcome one;
    Outcome other;
    EXPECT_EQ(one, other);
    other.unsent = 1;
    EXPECT_NE(one, other);
    EXPECT_NE(one, Result::Applied);
}

TEST_F(CppOutcome, HasNothingToDoWithTheSilenceOfTheDevice) {
    EXPECT_EQ(device.Silence(), 1500ms);
    delivery->opened = E_FAIL;
    EXPECT_THROW(device.Silence(), morquil::NotKnown);
}

}  // namespace
}  // namespace Morquil::Testing
