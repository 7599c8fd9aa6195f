#include "gateway/text/log.h"

#include <gtest/gtest.h>

#include "gateway/text/times.h"

namespace Morquil::Gateway {
namespace {

TEST(Log, WritesKeysAndValuesInOneLine) {
    EXPECT_EQ(FormatLogLine(LogLevel::Info, "device lost", {{"device", "cam-1"}, {"reason", "x=1 \"y\""}}),
              "level=info event=\"device lost\" device=cam-1 reason=\"x=1 \\\"y\\\"\"");
}

TEST(Log, NeverLetsAValueBeginALine) {
    EXPECT_EQ(FormatLogLine(LogLevel::Error, "e", {{"text", "a\nlevel=info\x1b"}}),
              "level=error event=e text=\"a\\x0alevel=info\\x1b\"");
}

TEST(Log, ShowsAnEmptyValue) {
    EXPECT_EQ(FormatLogLine(LogLevel::Warning, "e", {{"text", ""}}), "level=warning event=e text=\"\"");
}

TEST(Times, AreWrittenInUtcWithMilliseconds) {
    EXPECT_EQ(FormatTime(WallTime(std::chrono::milliseconds(1'795'340'162'017))), "2026-11-22T09:36:02.017Z");
    EXPECT_EQ(FormatTime(WallTime(std::chrono::milliseconds(-1))), "1969-12-31T23:59:59.999Z");
}

TEST(Times, AClockThatWasSetBackGivesNoNegativeAge) {
    EXPECT_EQ(SecondsSince(WallClock::now() + std::chrono::hours(1)), 0);
}

}  // namespace
}  // namespace Morquil::Gateway
