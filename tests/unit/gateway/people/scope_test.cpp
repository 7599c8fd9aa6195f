#include "gateway/people/scope.h"

#include <gtest/gtest.h>

#include "gateway/people/roles.h"

namespace Morquil::Testing {
namespace {

using Gateway::Covers;
using Gateway::CoversDevice;
using Gateway::FindRole;
using Gateway::MatchesPattern;
using Gateway::May;
using Gateway::Right;
using Gateway::Role;
using Gateway::Scope;

TEST(APattern, IsANameOrItsBeginningBeforeAPointOrHasStars) {
    EXPECT_TRUE(MatchesPattern("proc-amp.gain", "proc-amp.gain"));
    EXPECT_TRUE(MatchesPattern("proc-amp", "proc-amp.gain"));
    EXPECT_TRUE(MatchesPattern("*", "proc-amp.gain"));
    EXPECT_TRUE(MatchesPattern("proc-amp.*", "proc-amp.gain"));
    EXPECT_TRUE(MatchesPattern("p*n", "proc-amp.gain"));
    EXPECT_TRUE(MatchesPattern("*a*a*", "proc-amp.gain"));
    EXPECT_TRUE(MatchesPattern("cam-?", "cam-1"));
    EXPECT_TRUE(MatchesPattern("a.b", "a.b.c"));
    EXPECT_TRUE(MatchesPattern("**", ""));
    EXPECT_FALSE(MatchesPattern("proc", "proc-amp.gain"));
    EXPECT_FALSE(MatchesPattern("cam-?", "cam-12"));
    EXPECT_FALSE(MatchesPattern("proc-amp.gain.x", "proc-amp.gain"));
    EXPECT_FALSE(MatchesPattern("", "proc-amp.gain"));
    EXPECT_FALSE(MatchesPattern("*x", "proc-amp.gain"));
}

TEST(APattern, TakesLittleTimeWhateverItSays) {
    std::string pattern;
    for (int i = 0; i < 100; ++i) {
        pattern += "*a";
    }
    EXPECT_FALSE(MatchesPattern(pattern + "b", std::string(2000, 'a')));
}

TEST(Scopes, CoverADeviceAndAPropertyTogether) {
    const std::vector<Scope> scopes{{"cam-*", "proc-amp"}, {"wall", "*"}};
    EXPECT_TRUE(Covers(scopes, "cam-1", "proc-amp.gain"));
    EXPECT_FALSE(Covers(scopes, "cam-1", "output.mode"));
    EXPECT_TRUE(Covers(scopes, "wall", "output.mode"));
    EXPECT_FALSE(Covers(scopes, "desk", "proc-amp.gain"));
    EXPECT_TRUE(CoversDevice(scopes, "cam-2"));
    EXPECT_FALSE(CoversDevice(scopes, "desk"));
    EXPECT_FALSE(Covers({}, "cam-1", "proc-amp.gain"));
}

TEST(Roles, IncludeTheOnesBeforeThem) {
    for (const Gateway::RightRow& row : Gateway::rightTable) {
        for (const Role role : {Role::Viewer, Role::Operator, Role::Engineer, Role::Admin}) {
            EXPECT_EQ(May(role, row.right), role >= row.atLeast) << row.name;
        }
    }
    EXPECT_FALSE(May(Role::Viewer, Right::SetProperty));
    EXPECT_TRUE(May(Role::Operator, Right::SetProperty));
    EXPECT_FALSE(May(Role::Engineer, Right::ManagePeople));
}

TEST(Roles, AreFoundByTheirNames) {
    for (const Role role : {Role::Viewer, Role::Operator, Role::Engineer, Role::Admin}) {
        EXPECT_EQ(FindRole(NameOf(role)), role);
    }
    EXPECT_EQ(FindRole("Admin"), std::nullopt);
    EXPECT_EQ(FindRole(""), std::nullopt);
}

}  // namespace
}  // namespace Morquil::Testing
