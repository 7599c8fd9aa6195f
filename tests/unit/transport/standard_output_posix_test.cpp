#include "transport/standard_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "transport/file_descriptor.h"

namespace Morquil {
namespace {

// Standard output refers to `descriptor` as long as this exists; what the stream buffers is dropped at the end.
class OutputTo {
public:
    explicit OutputTo(const FileDescriptor& descriptor) {
        std::fflush(stdout);
        dup2(descriptor.Get(), STDOUT_FILENO);
    }
    ~OutputTo() {
        std::fflush(stdout);
        dup2(before_.Get(), STDOUT_FILENO);
    }
    OutputTo(const OutputTo&) = delete;
    OutputTo& operator=(const OutputTo&) = delete;

private:
    const FileDescriptor before_{dup(STDOUT_FILENO)};
};

struct Ends {
    FileDescriptor ours;
    FileDescriptor output;
};

Ends OpenPipe() {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

Ends OpenSocket() {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

Ends OpenTerminal() {
    FileDescriptor master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    EXPECT_EQ(grantpt(master.Get()), 0);
    EXPECT_EQ(unlockpt(master.Get()), 0);
    std::array<char, 64> name{};
    EXPECT_EQ(ptsname_r(master.Get(), name.data(), name.size()), 0);
    return {std::move(master), FileDescriptor(open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC))};
}

std::string ReadSome(const FileDescriptor& from, std::size_t size) {
    std::string text(size, '\0');
    const ssize_t count = read(from.Get(), text.data(), text.size());
    text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return text;
}

// Writes until something is not accepted whole. Returns: how much of that was accepted.
std::size_t Fill(std::string_view piece) {
    for (;;) {
        const std::size_t written = WriteAtOnce(piece);
        if (written < piece.size()) {
            return written;
        }
    }
}

TEST(StandardOutput, ToAPipeAcceptsWholePiecesUntilItIsFull) {
    const Ends pipe = OpenPipe();
    const OutputTo output(pipe.output);
    EXPECT_EQ(Fill(std::string(1000, 'x')), 0U);
    ReadSome(pipe.ours, 4096);
    EXPECT_EQ(WriteAtOnce(std::string(1000, 'x')), 1000U);
}

TEST(StandardOutput, ToAnUnreadTerminalDoesNotWait) {
    const Ends terminal = OpenTerminal();
    const OutputTo output(terminal.output);
    EXPECT_LT(Fill(std::string(1000, 'x')), 1000U);
}

TEST(StandardOutput, ToAnUnreadSocketDoesNotWait) {
    const Ends socket = OpenSocket();
    const OutputTo output(socket.output);
    EXPECT_LT(Fill(std::string(1000, 'x')), 1000U);
}

TEST(StandardOutput, WithoutAReaderRaisesNoSignal) {
    const auto before = std::signal(SIGPIPE, SIG_DFL);
    for (const auto openEnds : {&OpenPipe, &OpenSocket}) {
        Ends ends = openEnds();
        ends.ours = FileDescriptor();
        const OutputTo output(ends.output);
        EXPECT_EQ(WriteAtOnce("this is not read\n"), 0U);
    }
    std::signal(SIGPIPE, before);
}

TEST(StandardOutput, LeavesTheFlagsOfTheHostsFileAlone) {
    for (const auto openEnds : {&OpenPipe, &OpenSocket, &OpenTerminal}) {
        const Ends ends = openEnds();
        const int before = fcntl(ends.output.Get(), F_GETFL);
        const OutputTo output(ends.output);
        Fill(std::string(1000, 'x'));
        EXPECT_EQ(fcntl(ends.output.Get(), F_GETFL), before);
    }
}

TEST(StandardOutput, ComesAfterWhatTheHostHasPrinted) {
    for (const auto openEnds : {&OpenPipe, &OpenSocket, &OpenTerminal}) {
        const Ends ends = openEnds();
        const OutputTo output(ends.output);
        std::printf("host, ");
        EXPECT_EQ(WriteAtOnce("library, "), 9U);
        std::printf("host");
        std::fflush(stdout);
        std::string text;
        while (text.size() < 19) {
            text += ReadSome(ends.ours, 100);
        }
        EXPECT_EQ(text, "host, library, host");
    }
}

TEST(StandardOutput, WritesNothingOfTheHostsIntoAFullPipe) {
    const Ends pipe = OpenPipe();
    const OutputTo output(pipe.output);
    Fill("x");
    std::printf("host");
    EXPECT_EQ(WriteAtOnce("library"), 0U);
    fcntl(pipe.ours.Get(), F_SETFL, O_NONBLOCK);
    while (!ReadSome(pipe.ours, 4096).empty()) {
    }
    EXPECT_EQ(WriteAtOnce("library"), 7U);
    EXPECT_EQ(ReadSome(pipe.ours, 100), "hostlibrary");
}

TEST(StandardOutput, ThatIsClosedAcceptsNothing) {
    const FileDescriptor before(dup(STDOUT_FILENO));
    std::fflush(stdout);
    close(STDOUT_FILENO);
    const bool isOpen = IsStandardOutputOpen();
    const std::size_t written = WriteAtOnce("library");
    dup2(before.Get(), STDOUT_FILENO);
    EXPECT_FALSE(isOpen);
    EXPECT_EQ(written, 0U);
    EXPECT_TRUE(IsStandardOutputOpen());
}

}  // namespace
}  // namespace Morquil
