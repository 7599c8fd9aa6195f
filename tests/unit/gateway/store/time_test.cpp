#include "gateway/store/time.h"

#include <gtest/gtest.h>

namespace Morquil::Testing {
namespace {

using Gateway::FormatTime;
using Gateway::ParseTime;
using Gateway::Time;

TEST(Times, AreReadAsTheyAreWritten) {
    for (const char* text : {"2026-11-22T09:36:12.345Z", "1970-01-01T00:00:00.000Z", "2024-02-29T23:59:59.999Z"}) {
        const std::optional<Time> time = ParseTime(text);
        ASSERT_TRUE(time) << text;
        EXPECT_EQ(FormatTime(*time), text);
    }
}

TEST(Times, MayHaveAnOffsetAndAnyFraction) {
    EXPECT_EQ(ParseTime("2026-11-22T10:36:12+01:00"), ParseTime("2026-11-22T09:36:12Z"));
    EXPECT_EQ(ParseTime("2026-11-22T04:06:12.5-05:30"), ParseTime("2026-11-22T09:36:12.500Z"));
    EXPECT_EQ(ParseTime("2026-11-22T09:36:12.123456789Z"), ParseTime("2026-11-22T09:36:12.123Z"));
}

TEST(Times, AreRefusedWhenTheyAreNot) {
    for (const char* text :
         {"", "now", "2026-11-22", "2026-13-01T00:00:00Z", "2026-02-30T00:00:00Z", "2026-11-22T24:00:00Z",
          "2026-11-22T09:36:12", "2026-11-22T09:36:12.Z", "2026-11-22T09:36:12ZZ", "2026-11-22T09:36:12+1:00",
          "2026-00-10T00:00:00Z", "2026-11-00T00:00:00Z", "x2026-11-22T09:36:12Z"}) {
        EXPECT_EQ(ParseTime(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace Morquil::Testing
