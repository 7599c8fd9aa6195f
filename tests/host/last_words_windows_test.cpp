// Winsock tells that a device has gone when everything before has been received, so the host learns its reason.
#include <gtest/gtest.h>

#include "tests/host/refusals.h"

namespace Morquil::Test {
namespace {

TEST(LastWords, OfADeviceThatHangsUpAtOnceAreTold) {
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        EXPECT_EQ(ToldOfLastWords(refusal), std::string("disconnected ") + refusal.reason);
    }
}

}  // namespace
}  // namespace Morquil::Test
