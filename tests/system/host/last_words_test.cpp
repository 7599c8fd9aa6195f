// The end of a connection is reported after everything that came before it has been received, so a host gets the reason
// of a device that refuses it and hangs up at once.
#include <gtest/gtest.h>

#include "tests/system/host/refusals.h"

namespace Morquil::Testing {
namespace {

TEST(LastWords, OfADeviceThatHangsUpAtOnceAreReported) {
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        EXPECT_EQ(NotificationOfLastWords(refusal), std::string("disconnected ") + refusal.reason);
    }
}

TEST(LastWords, AreTheReasonWhyConnectFails) {
    constexpr int attemptsEach = 5;
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        for (int attempt = 0; attempt < attemptsEach; ++attempt) {
            const ConnectOutcome outcome = ConnectToLastWords(refusal);
            EXPECT_EQ(outcome.result, failed);
            EXPECT_EQ(outcome.reason, refusal.reason);
            EXPECT_FALSE(outcome.device);
        }
    }
}

}  // namespace
}  // namespace Morquil::Testing
