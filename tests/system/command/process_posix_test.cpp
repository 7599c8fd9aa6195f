// The command as a process: the effects of signals and of its streams.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/command/simulated_device.h"
#include "tests/system/command/started_command_posix.h"

namespace Morquil::Testing {
namespace {

bool HasExited(int status, int code) {
    return WIFEXITED(status) && WEXITSTATUS(status) == code;
}
bool WasEndedBy(int status, int signal) {
    return WIFSIGNALED(status) && WTERMSIG(status) == signal;
}

class ReaderGone : public testing::TestWithParam<bool> {};

TEST_P(ReaderGone, EndsAWatchQuietlyEvenWhenNothingChangesAnyMore) {
    SimulatedOnNetwork device;
    StartedCommand watch(device.Address(), {.words = {"watch"}, .ignoresBrokenPipes = GetParam()});
    ASSERT_TRUE(watch.AwaitErr("watching"));
    device.UsePanel("set VIDEO PROC AMP Gain 12");
    ASSERT_TRUE(watch.AwaitOut("0 -> 12"));
    const std::string said = watch.Err();
    watch.CloseOut();
    EXPECT_TRUE(HasExited(watch.AwaitEnd(), 0));
    EXPECT_EQ(watch.Err(), said);
}

TEST_P(ReaderGone, IsNotAFailureOfAFinishedCommand) {
    SimulatedOnNetwork device;
    StartedCommand set(device.Address(), {.words = {"set", "proc-amp.gain", "12"}, .ignoresBrokenPipes = GetParam()});
    set.CloseOut();
    EXPECT_TRUE(HasExited(set.AwaitEnd(), 0));
    EXPECT_EQ(set.Err(), "");
}

INSTANTIATE_TEST_SUITE_P(Signals, ReaderGone, testing::Bool(),
                         [](const auto& ignored) { return ignored.param ? "Ignored" : "AsUsual"; });

TEST(Interrupting, EndsAnAttemptToConnectByTheSignalItself) {
    for (const char* const word : {"status", "watch"}) {
        for (const int signal : {SIGINT, SIGTERM}) {
            ScriptedDevice device({.greeting = preamble});
            StartedCommand command(device.Address(), {.words = {word, "-t", "60"}});
            ASSERT_TRUE(device.AwaitHost());
            command.Signal(signal);
            EXPECT_TRUE(WasEndedBy(command.AwaitEnd(), signal)) << word;
            EXPECT_EQ(command.Err(), "");
        }
    }
}

TEST(Interrupting, EndsAnUnreadWatch) {
    SimulatedOnNetwork device;
    StartedCommand watch(device.Address(), {.words = {"watch", "proc-amp"}});
    ASSERT_TRUE(watch.AwaitErr("watching"));
    for (int at = 0; at < 3000; ++at) {
        device.UsePanel("set VIDEO PROC AMP Gain " + std::to_string(at % 60));
    }
    watch.Signal(SIGINT);
    const int status = watch.AwaitEnd();
    EXPECT_TRUE(HasExited(status, 0) || WasEndedBy(status, SIGINT)) << status;
}

TEST(TimingOut, DoesNotWaitForAnUnreadStandardError) {
    ScriptedDevice device(CompleteDevice());
    StartedCommand set(device.Address(), {.words = {"--trace", "set", "-t", "0.5", "proc-amp.gain", "12"}});
    EXPECT_EQ(device.NextChange(), "VIDEO PROC AMP:\nGain: 12\n\n");
    std::string flood = "GENLOCK:\n";
    for (int line = 0; line < 20'000; ++line) {
        flood += "x: 1\n";
    }
    device.Send(flood + "\n");
    EXPECT_TRUE(HasExited(set.AwaitEnd(), 3));
    device.HangUp();
}

// Interrupts it as soon as `folder` holds a file.
void InterruptAtFirstFile(const StartedCommand& command, const TemporaryFolder& folder) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (folder.Names().empty() && std::chrono::steady_clock::now() < end) {
    }
    command.Signal(SIGINT);
}

// The window is short, so it is tried several times.
TEST(Interrupting, LeavesNoTemporaryFiles) {
    constexpr int tries = 5;
    for (int attempt = 0; attempt < tries; ++attempt) {
        ScriptedDevice device(CompleteDevice());
        const TemporaryFolder folder;
        const TemporaryFolder input;
        StartedCommand load(device.Address(), {.words = {"load", "--partial", "-t", "20",
                                                         input.Make("settings.txt", "VIDEO PROC AMP:\nGain: 40\n\n")},
                                               .temporaryFolder = folder.PathOf("")});
        InterruptAtFirstFile(load, folder);
        EXPECT_TRUE(WasEndedBy(load.AwaitEnd(), SIGINT));
        EXPECT_TRUE(folder.Names().empty()) << *folder.Names().begin();
    }
}

TEST(Interrupting, LeavesASavedFileWholeOrNone) {
    constexpr int tries = 5;
    for (int attempt = 0; attempt < tries; ++attempt) {
        ScriptedDevice device(CompleteDevice());
        const TemporaryFolder folder;
        StartedCommand save(device.Address(), {.words = {"save", folder.PathOf("settings.txt")}});
        InterruptAtFirstFile(save, folder);
        const int status = save.AwaitEnd();
        EXPECT_TRUE(HasExited(status, 0) || WasEndedBy(status, SIGINT)) << status;
        EXPECT_EQ(folder.Names(), std::set<std::string>{"settings.txt"});
    }
}

TEST(FullDevices, MakeSavingFailWithTheSystemsReason) {
    SimulatedOnNetwork device;
    StartedCommand save(device.Address(), {.words = {"save", "/dev/full"}});
    EXPECT_TRUE(HasExited(save.AwaitEnd(), 1));
    EXPECT_EQ(save.Err(), "morquilctl: /dev/full: cannot be written: No space left on device\n");
}

TEST(ClosedStreams, AFailureToWriteIsAFailure) {
    SimulatedOnNetwork device;
    StartedCommand get(device.Address(), {.words = {"get", "proc-amp.gain"}, .closedStreams = {1}});
    EXPECT_TRUE(HasExited(get.AwaitEnd(), 1));
    EXPECT_EQ(get.Err(), "morquilctl: the output cannot be written\n");
}

}  // namespace
}  // namespace Morquil::Testing
