// Where the end is reported together with what came right before it only the end counts: the host learns the reason of
// a device, or just that it has gone, but never another reason.
#include <gtest/gtest.h>

#include "tests/host/refusals.h"

namespace Morquil::Test {
namespace {

TEST(LastWords, OfADeviceThatHangsUpAtOnceAreToldUnlessTheEndHidesThem) {
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.what);
        const std::string told = ToldOfLastWords(refusal);
        EXPECT_TRUE(told == std::string("disconnected ") + refusal.reason || told == "disconnected cfnr") << told;
    }
}

}  // namespace
}  // namespace Morquil::Test
