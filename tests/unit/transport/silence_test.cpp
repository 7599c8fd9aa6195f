#include "transport/silence.h"

#include <gtest/gtest.h>

namespace Morquil {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr Silence::Time start{std::chrono::hours(1)};

TEST(Silence, BeginsWithTheFirstWait) {
    Silence silence;
    EXPECT_EQ(silence.RemainingMs(start), 9000U);
    EXPECT_EQ(silence.RemainingMs(start + milliseconds(8000)), 1000U);
}

TEST(Silence, IsOverAtItsLimit) {
    Silence silence;
    silence.RemainingMs(start);
    EXPECT_EQ(silence.RemainingMs(start + milliseconds(8999)), 1U);
    EXPECT_EQ(silence.RemainingMs(start + milliseconds(9000)), 0U);
    EXPECT_EQ(silence.RemainingMs(start + milliseconds(20'000)), 0U);
}

TEST(Silence, StartsAgainWithTheFirstWaitAfterAByte) {
    Silence silence;
    silence.RemainingMs(start);
    silence.Break();
    EXPECT_EQ(silence.RemainingMs(start + milliseconds(5000)), 9000U);
    EXPECT_EQ(silence.RemainingMs(start + milliseconds(6000)), 8000U);
}

TEST(Silence, NeverEndsEarly) {
    Silence silence;
    silence.RemainingMs(start);
    EXPECT_EQ(silence.RemainingMs(start + microseconds(8'999'999)), 1U);
    EXPECT_EQ(silence.RemainingMs(start + microseconds(1)), 9000U);
}

}  // namespace
}  // namespace Morquil
