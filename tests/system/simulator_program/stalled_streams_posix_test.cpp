// Pipes that are full, closed or flooded, at each of the program's streams and files.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "simulator/streams/input_file.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/simulator_program/child_program.h"
#include "tests/system/simulator_program/raw_host.h"
#include "tests/system/simulator_program/repeated_text.h"

namespace Morquil::Testing {
namespace {

/// Connects and receives the greeting. Returns: whether all of it came.
bool IsGreeted(RawHost& host) {
    host.Send("PING\n\n");
    return host.ReceiveUntil("\n\nACK\n\n").ends_with("\n\nACK\n\n");
}

TEST(StalledStreams, UnreadOutputDoesNotKeepASignalFromEndingTheProgram) {
    ChildProgram program({});
    RawHost host("127.0.0.1", program.AwaitPort());
    program.Write(Repeated("help\n", 1000) + "wait-for-host\nset VIDEO PROC AMP Gain 12\n");
    EXPECT_TRUE(host.ReceiveUntil("VIDEO PROC AMP:\nGain: 12\n\n").ends_with("Gain: 12\n\n"));
    program.Send(SIGTERM);
    EXPECT_EQ(program.AwaitEnd(), 0);
}

TEST(StalledStreams, ClosedOutputDoesNotEndTheProgram) {
    ChildProgram program({});
    RawHost host("127.0.0.1", program.AwaitPort());
    program.CloseOutput();
    program.Write("help\nhelp\nwait-for-host\nset VIDEO PROC AMP Gain 12\n");
    EXPECT_TRUE(host.ReceiveUntil("VIDEO PROC AMP:\nGain: 12\n\n").ends_with("Gain: 12\n\n"));
    program.Send(SIGTERM);
    EXPECT_EQ(program.AwaitEnd(), 0);
}

TEST(StalledStreams, StandardInputIsReadNoFasterThanItIsCarriedOut) {
    constexpr std::size_t flood = std::size_t{16} * 1024 * 1024;
    ChildProgram program({});
    RawHost host("127.0.0.1", program.AwaitPort());
    EXPECT_LT(program.Flood("after 3600 s lock\n", flood), flood / 16);
    EXPECT_TRUE(IsGreeted(host));
    program.Send(SIGTERM);
    EXPECT_EQ(program.AwaitEnd(), 0);
}

TEST(StalledStreams, AnOverlongLineOfStandardInputIsRefusedAndSkipped) {
    ChildProgram program({});
    program.AwaitPort();
    program.Write("lock" + std::string(1000000, ' ') + "\nquit\n");
    EXPECT_EQ(program.ReadUntil("(end)"), "morquil-sim: the line is longer than 4096 bytes\n");
    EXPECT_EQ(program.AwaitEnd(), 0);
}

TEST(StalledStreams, ASignalEndsTheProgramWhileItWaitsForItsScript) {
    const TemporaryFolder folder;
    const std::string script = folder.PathOf("script");
    ASSERT_EQ(mkfifo(script.c_str(), 0600), 0);
    ChildProgram program({"--script", script});
    const int writer = open(script.c_str(), O_WRONLY | O_CLOEXEC);  // returns once the program has opened it, too
    program.Send(SIGTERM);
    EXPECT_EQ(program.AwaitEnd(), -SIGTERM);
    close(writer);
}

TEST(StalledStreams, ALongScriptDoesNotKeepASignalFromEndingTheProgram) {
    const TemporaryFolder folder;
    ChildProgram program({"--script", folder.Make("script", Repeated("set VIDEO PROC AMP Gain 12\nset VIDEO PROC AMP "
                                                                     "Gain 13\n",
                                                                     70000))});
    program.AwaitPort();
    program.Send(SIGTERM);
    EXPECT_EQ(program.AwaitEnd(), 0);
}

TEST(StalledStreams, AnUnreadRecordingEndsAndTheHostsAreServed) {
    const TemporaryFolder folder;
    const std::string recording = folder.PathOf("recording");
    ASSERT_EQ(mkfifo(recording.c_str(), 0600), 0);
    const int reader = open(recording.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ChildProgram program({"--record", recording});
    const std::uint16_t port = program.AwaitPort();
    for (int i = 0; i < 20; ++i) {
        RawHost host("127.0.0.1", port);
        ASSERT_TRUE(IsGreeted(host)) << "host " << i;
    }
    program.Send(SIGTERM);
    EXPECT_EQ(program.AwaitEnd(), 2);
    EXPECT_EQ(program.ReadUntil("(end)"), "morquil-sim: " + recording + ": could not be written completely\n");
    close(reader);
}

TEST(StalledStreams, AFileWithoutAnEndIsRefused) {
    ChildProgram program({"--script", "/dev/zero"});
    EXPECT_EQ(program.ReadUntil("\n"), "morquil-sim: /dev/zero: is larger than 4 MiB, the limit for such a file\n");
    EXPECT_EQ(program.AwaitEnd(), 2);
}

}  // namespace
}  // namespace Morquil::Testing
