#include "simulator/link/outbox.h"

#include <gtest/gtest.h>

namespace Morquil::Simulator {
namespace {

using namespace std::chrono_literals;

TEST(Outbox, ReturnsTextInOrderAndNotBeforeItIsDue) {
    Outbox outbox;
    outbox.Add("first", 10ms);
    outbox.Add("second", 5ms);
    EXPECT_TRUE(outbox.Take(9ms).IsNothing());
    EXPECT_EQ(outbox.NextDue(), 10ms);
    EXPECT_EQ(outbox.Take(10ms).bytes, "first");
    EXPECT_EQ(outbox.NextDue(), 10ms) << "nothing overtakes what came before";
    EXPECT_EQ(outbox.Take(10ms).bytes, "second");
    EXPECT_TRUE(outbox.IsEmpty());
    EXPECT_EQ(outbox.NextDue(), std::nullopt);
}

TEST(Outbox, ReturnsPiecesAndCountsWhatIsLeft) {
    Outbox outbox;
    outbox.Add("12345", 0ms);
    EXPECT_EQ(outbox.ByteCount(), 5U);
    EXPECT_EQ(outbox.Take(0ms, 2).bytes, "12");
    EXPECT_EQ(outbox.ByteCount(), 3U);
    EXPECT_EQ(outbox.Take(0ms, 2).bytes, "34");
    EXPECT_EQ(outbox.Take(0ms, 2).bytes, "5");
    EXPECT_EQ(outbox.ByteCount(), 0U);
}

TEST(Outbox, EndsTheConnectionAfterEverythingAndAcceptsNothingMore) {
    Outbox outbox;
    outbox.Add("last words", 0ms);
    outbox.AddHangUp(0ms);
    outbox.Add("too late", 0ms);
    outbox.AddHangUp(0ms);
    EXPECT_TRUE(outbox.IsClosed());
    EXPECT_EQ(outbox.Take(0ms).bytes, "last words");
    const Delivery end = outbox.Take(0ms);
    EXPECT_TRUE(end.hangUp);
    EXPECT_EQ(end.bytes, "");
    EXPECT_TRUE(outbox.Take(0ms).IsNothing());
}

TEST(Outbox, DropsWhatIsNotDueYet) {
    Outbox outbox;
    outbox.Add("now", 0ms);
    outbox.Add("later", 5ms);
    outbox.AddHangUp(6ms);
    outbox.DropAfter(4ms);
    EXPECT_EQ(outbox.ByteCount(), 3U);
    EXPECT_FALSE(outbox.IsClosed());
    EXPECT_EQ(outbox.Take(9ms).bytes, "now");
    EXPECT_TRUE(outbox.Take(9ms).IsNothing());
}

}  // namespace
}  // namespace Morquil::Simulator
