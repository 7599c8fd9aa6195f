#include "transport/console.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "tests/worlds/simulation/quiet_console.h"

namespace Morquil::Testing::Worlds {
namespace {

std::string Printed(std::string_view text) {
    testing::internal::CaptureStdout();
    Print(text);
    return testing::internal::GetCapturedStdout();
}

TEST(Console, PrintsAgainAfterTheNullDevice) {
    for (int round = 0; round < 3; ++round) {
        {
            const QuietConsole quiet;
            Print("unheard\n");
            Print("unheard again\n");
        }
        EXPECT_EQ(Printed("heard\n"), "heard\n");
    }
}

TEST(Console, PrintsAfterWhatTheHostHasPrinted) {
    testing::internal::CaptureStdout();
    std::printf("host, ");
    Print("library, ");
    std::printf("host\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "host, library, host\n");
}

TEST(Console, PrintsNoText) {
    EXPECT_EQ(Printed(""), "");
}

}  // namespace
}  // namespace Morquil::Testing::Worlds
