#include "core/above_standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>

namespace QRN::Core {
namespace {

TEST(AboveStandardStreams, MovesADescriptorThatIsThatOfAStream) {
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    const int low = open("/dev/null", O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(low, STDIN_FILENO);
    const int moved = AboveStandardStreams(low);
    EXPECT_GT(moved, STDERR_FILENO);
    EXPECT_NE(fcntl(moved, F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(fcntl(low, F_GETFD), -1) << "the one that it replaces is closed";
    close(moved);
    dup2(input, STDIN_FILENO);
    close(input);
}

TEST(AboveStandardStreams, LeavesEveryOtherNumber) {
    EXPECT_EQ(AboveStandardStreams(3), 3);
    EXPECT_EQ(AboveStandardStreams(-1), -1);
}

TEST(AboveStandardStreams, ReportsWhyThereIsNoOther) {
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const int input = dup(STDIN_FILENO);
    const rlimit lowered{3, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &lowered), 0);
    errno = 0;
    EXPECT_EQ(AboveStandardStreams(STDIN_FILENO), -1);
    EXPECT_NE(errno, 0);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1);
    dup2(input, STDIN_FILENO);
    close(input);
}

}  // namespace
}  // namespace QRN::Core
