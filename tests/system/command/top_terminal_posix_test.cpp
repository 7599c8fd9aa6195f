// The live view as a process on a real terminal.
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* opening = "\x1b[?1049h\x1b[?25l";
constexpr const char* closing = "\x1b[?25h\x1b[?1049l";

/// The command on a terminal of its own. Waits end after 20 s.
class CommandOnTerminal {
public:
    CommandOnTerminal(std::vector<std::string> words, std::vector<std::string> variables) {
        words.insert(words.begin(), "morquilctl");
        std::vector<char*> arguments = Pointers(words);
        std::vector<char*> environment = Pointers(variables);
        winsize size{24, 80, 0, 0};
        process_ = forkpty(&terminal_, nullptr, nullptr, &size);
        if (process_ == 0) {
            const rlimit noCore{0, 0};
            setrlimit(RLIMIT_CORE, &noCore);
            execve(MORQUIL_COMMAND_PATH, arguments.data(), environment.data());
            _exit(127);
        }
    }
    ~CommandOnTerminal() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
        close(terminal_);
    }
    CommandOnTerminal(const CommandOnTerminal&) = delete;
    CommandOnTerminal& operator=(const CommandOnTerminal&) = delete;

    bool Await(const std::string& text) {
        const Clock::time_point end = Clock::now() + longestWait;
        while (shown_.find(text) == std::string::npos) {
            if (!ReadSome(end)) {
                return false;
            }
        }
        return true;
    }
    void Type(const std::string& keys) const {
        EXPECT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    void Resize(unsigned short columns, unsigned short rows) const {
        const winsize size{rows, columns, 0, 0};
        ioctl(terminal_, TIOCSWINSZ, &size);
    }
    void Signal(int signal) const { kill(process_, signal); }

    /// Waits for the end. Returns: as of waitpid().
    int AwaitEnd() {
        const Clock::time_point end = Clock::now() + longestWait;
        while (ReadSome(end)) {
        }
        int status = -1;
        waitpid(std::exchange(process_, -1), &status, 0);
        return status;
    }

    const std::string& Shown() const { return shown_; }
    bool Echoes() const {
        termios settings{};
        tcgetattr(terminal_, &settings);
        return (settings.c_lflag & ECHO) != 0 && (settings.c_lflag & ICANON) != 0;
    }

private:
    static constexpr std::chrono::seconds longestWait{20};

    static std::vector<char*> Pointers(std::vector<std::string>& texts) {
        std::vector<char*> pointers;
        for (std::string& text : texts) {
            pointers.push_back(text.data());
        }
        pointers.push_back(nullptr);
        return pointers;
    }

    bool ReadSome(Clock::time_point end) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd readable{terminal_, POLLIN, 0};
        std::array<char, 4096> piece{};
        if (left <= 0 || poll(&readable, 1, static_cast<int>(left)) != 1) {
            return false;
        }
        const ssize_t count = read(terminal_, piece.data(), piece.size());
        shown_.append(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        return count > 0;
    }

    int terminal_ = -1;
    pid_t process_ = -1;
    std::string shown_;
};

class TopOnTerminal : public testing::Test {
protected:
    CommandOnTerminal Started(const std::vector<std::string>& variables = {"TERM=xterm"}) {
        return CommandOnTerminal({"-d", device.Address(), "top"}, variables);
    }

    SimulatedOnNetwork device;
};

TEST_F(TopOnTerminal, ShowsTheDeviceUntilAKeyEndsIt) {
    CommandOnTerminal top = Started();
    ASSERT_TRUE(top.Await("1 of 1 device connected")) << top.Shown();
    EXPECT_FALSE(top.Echoes());
    EXPECT_NE(top.Shown().find(opening), std::string::npos);
    device.UsePanel("set VIDEO PROC AMP Gain 12");
    EXPECT_TRUE(top.Await("proc-amp.gain  0 -> 12")) << top.Shown();
    top.Type("q");
    const int status = top.AwaitEnd();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(top.Shown().ends_with(closing));
    EXPECT_TRUE(top.Echoes());
}

TEST_F(TopOnTerminal, FollowsItsSize) {
    CommandOnTerminal top = Started({"TERM=xterm", "NO_COLOR=1"});
    ASSERT_TRUE(top.Await("1 of 1 device connected"));
    top.Resize(20, 12);
    EXPECT_TRUE(top.Await("1 of 1 de~\x1b[K")) << top.Shown();
}

TEST_F(TopOnTerminal, IsRestoredByEverySignalThatEndsIt) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGSEGV}) {
        CommandOnTerminal top = Started();
        ASSERT_TRUE(top.Await("1 of 1 device connected"));
        top.Signal(signal);
        const int status = top.AwaitEnd();
        EXPECT_TRUE((WIFEXITED(status) && WEXITSTATUS(status) == 0) ||
                    (WIFSIGNALED(status) && WTERMSIG(status) == signal))
            << signal << ": " << status;
        EXPECT_TRUE(top.Shown().ends_with(closing)) << signal;
        EXPECT_TRUE(top.Echoes()) << signal;
    }
}

TEST_F(TopOnTerminal, IsRestoredByCtrlC) {
    CommandOnTerminal top = Started();
    ASSERT_TRUE(top.Await("1 of 1 device connected"));
    top.Type("\x03");
    top.AwaitEnd();
    EXPECT_TRUE(top.Shown().ends_with(closing));
}

TEST_F(TopOnTerminal, IsNotColouredUnlessItMayBe) {
    CommandOnTerminal top = Started({"TERM=xterm", "NO_COLOR=1"});
    ASSERT_TRUE(top.Await("1 of 1 device connected"));
    EXPECT_EQ(top.Shown().find("\x1b[3"), std::string::npos);
    top.Type("q");
    top.AwaitEnd();
    CommandOnTerminal coloured = Started();
    EXPECT_TRUE(coloured.Await("\x1b[32mconnected")) << coloured.Shown();
}

TEST_F(TopOnTerminal, WritesLinesOnATerminalWithoutControls) {
    CommandOnTerminal top = Started({"TERM=dumb"});
    ASSERT_TRUE(top.Await("  connected: input "));
    EXPECT_EQ(top.Shown().find('\x1b'), std::string::npos);
}

}  // namespace
}  // namespace Morquil::Testing
