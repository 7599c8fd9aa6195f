// What a command line calls properties.
#include <gtest/gtest.h>

#include "command/arguments/exit_code.h"
#include "command/properties/property.h"

namespace Morquil::Testing {
namespace {

using Command::FindProperty;
using Command::SelectProperties;

TEST(PropertySelection, FindsNamesInAnyCase) {
    EXPECT_EQ(FindProperty("Proc-Amp.GAIN").name, "proc-amp.gain");
}

TEST(PropertySelection, HasEachPropertyOnceInTheOrderOfThePatterns) {
    EXPECT_EQ(SelectProperties({"clip", "clip.luma-low"}), SelectProperties({"clip"}));
    EXPECT_EQ(SelectProperties({"clip.luma-high", "clip"}).front(), &FindProperty("clip.luma-high"));
    EXPECT_EQ(SelectProperties({}).size(), Command::AllProperties().size());
}

TEST(PropertySelection, RefusesAPatternThatMatchesNothing) {
    EXPECT_THROW(SelectProperties({"clip", "proc-am"}), Command::UsageFailure);
    EXPECT_THROW(FindProperty("proc-amp"), Command::UsageFailure);
}

}  // namespace
}  // namespace Morquil::Testing
