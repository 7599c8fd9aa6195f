#include "transport/pending_events.h"

#include <gtest/gtest.h>

namespace Morquil {
namespace {

TEST(PendingEvents, ReportsReadableBeforeWritable) {
    PendingEvents pending;
    pending.AddSocket({.readable = true, .writable = true});
    EXPECT_EQ(pending.TakeOldest(), CommsEvent::Readable);
    EXPECT_FALSE(pending.IsEmpty());
    EXPECT_EQ(pending.TakeOldest(), CommsEvent::Writable);
    EXPECT_TRUE(pending.IsEmpty());
}

TEST(PendingEvents, ReportsOnlyTheEndOfAConnectionThatEnded) {
    PendingEvents pending;
    pending.AddSocket({.readable = true, .writable = true, .gone = true});
    EXPECT_EQ(pending.TakeOldest(), CommsEvent::SocketError);
    EXPECT_TRUE(pending.IsEmpty());
}

TEST(PendingEvents, StaysEmptyWhenNothingWasFound) {
    PendingEvents pending;
    pending.AddSocket({});
    EXPECT_TRUE(pending.IsEmpty());
}

TEST(PendingEvents, ReportsAnEventAddedAfterAllOthersWereReported) {
    PendingEvents pending;
    for (int round = 0; round < 5; ++round) {
        pending.AddSocket({.readable = true, .writable = true});
        pending.TakeOldest();
        pending.TakeOldest();
        pending.AddOne(CommsEvent::Timeout);
        EXPECT_EQ(pending.TakeOldest(), CommsEvent::Timeout);
    }
}

TEST(PendingEvents, ForgetsUnreportedEventsWhenCleared) {
    PendingEvents pending;
    pending.AddSocket({.readable = true, .writable = true});
    pending.TakeOldest();
    pending.Clear();
    EXPECT_TRUE(pending.IsEmpty());
}

}  // namespace
}  // namespace Morquil
