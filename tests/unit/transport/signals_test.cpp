#include "transport/signals.h"

#include <gtest/gtest.h>

namespace Morquil {
namespace {

TEST(Signals, WakeNoThreadThatDoesNotWait) {
    Signals signals;
    EXPECT_FALSE(signals.Raise(signalSend));
    EXPECT_EQ(signals.TakeFirst(), CommsEvent::SendRequested);
}

TEST(Signals, WakeAWaitOnceForEachOfThem) {
    Signals signals;
    const Signals::Wait wait(signals);
    EXPECT_TRUE(signals.Raise(signalSend));
    EXPECT_FALSE(signals.Raise(signalSend));
    EXPECT_TRUE(signals.Raise(signalStop));
    EXPECT_FALSE(signals.Raise(signalStop));
}

TEST(Signals, WakeAWaitAgainAfterTheyWereTaken) {
    Signals signals;
    const Signals::Wait wait(signals);
    EXPECT_TRUE(signals.Raise(signalUser));
    EXPECT_TRUE(signals.Take(signalUser));
    EXPECT_TRUE(signals.Raise(signalUser));
}

TEST(Signals, WakeNoThreadThatNoLongerWaits) {
    Signals signals;
    { const Signals::Wait wait(signals); }
    EXPECT_FALSE(signals.Raise(signalStop));
}

TEST(Signals, AreThereUntilTheyAreTaken) {
    Signals signals;
    EXPECT_FALSE(signals.Has(signalStop));
    signals.Raise(signalStop);
    EXPECT_TRUE(signals.Has(signalStop));
    EXPECT_FALSE(signals.Has(signalSend));
    EXPECT_TRUE(signals.Take(signalStop));
    EXPECT_FALSE(signals.Has(signalStop));
}

TEST(Signals, AreTakenOnceInTheirOrderHoweverOftenTheyWereSet) {
    Signals signals;
    for (const CommsSignal signal : {signalUser, signalSend, signalStop, signalSend}) {
        signals.Raise(signal);
    }
    EXPECT_EQ(signals.TakeFirst(), CommsEvent::StopRequested);
    EXPECT_EQ(signals.TakeFirst(), CommsEvent::SendRequested);
    EXPECT_EQ(signals.TakeFirst(), CommsEvent::UserSignal);
    EXPECT_EQ(signals.TakeFirst(), std::nullopt);
}

TEST(Signals, AreTakenAloneWithoutTheOthers) {
    Signals signals;
    signals.Raise(signalSend);
    EXPECT_FALSE(signals.Take(signalStop));
    EXPECT_TRUE(signals.Take(signalSend));
    EXPECT_FALSE(signals.Take(signalSend));
}

}  // namespace
}  // namespace Morquil
