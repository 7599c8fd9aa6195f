#include "tests/system/command/started_command_posix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <utility>

namespace Morquil::Testing {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds longestWait{10};
constexpr int smallestPipe = 4096;

struct Pipe {
    int read = -1;
    int write = -1;
};
Pipe MakePipe() {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    return {ends[0], ends[1]};
}

// Reads once if data arrives before `end`. Returns: false at the end of the stream or at the time limit.
bool ReadSome(int descriptor, std::string& text, Clock::time_point end) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd readable{descriptor, POLLIN, 0};
    std::array<char, 4096> piece{};
    if (left <= 0 || poll(&readable, 1, static_cast<int>(left)) != 1) {
        return false;
    }
    const ssize_t count = read(descriptor, piece.data(), piece.size());
    text.append(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    return count > 0;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// Signal handlers are not inherited from the parent, but ignored signals are.
class IgnoredSignal {
public:
    explicit IgnoredSignal(bool isIgnored) : before_(std::signal(SIGPIPE, isIgnored ? SIG_IGN : SIG_DFL)) {}
    ~IgnoredSignal() { std::signal(SIGPIPE, before_); }
    IgnoredSignal(const IgnoredSignal&) = delete;
    IgnoredSignal& operator=(const IgnoredSignal&) = delete;

private:
    void (*before_)(int);
};

}  // namespace

StartedCommand::StartedCommand(const std::string& address, const Start& start) {
    constexpr int lifeDescriptor = 9;
    const Pipe out = MakePipe();
    const Pipe err = MakePipe();
    const Pipe life = MakePipe();
    for (const Pipe& stream : {out, err}) {
        fcntl(stream.write, F_SETPIPE_SZ, smallestPipe);  // soon full
    }
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out.write, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.write, STDERR_FILENO);
    posix_spawn_file_actions_adddup2(&actions, life.write, lifeDescriptor);
    for (const int stream : start.closedStreams) {
        posix_spawn_file_actions_addclose(&actions, stream);
    }
    std::vector<std::string> words = start.words;
    words.insert(words.begin(), {"morquilctl", "-d", address});
    std::vector<std::string> variables = {"TMPDIR=" + start.temporaryFolder};
    const IgnoredSignal brokenPipes(start.ignoresBrokenPipes);
    EXPECT_EQ(posix_spawn(&process_, MORQUIL_COMMAND_PATH, &actions, nullptr, Pointers(words).data(),
                          Pointers(variables).data()),
              0);
    posix_spawn_file_actions_destroy(&actions);
    for (const int end : {out.write, err.write, life.write}) {
        close(end);
    }
    out_.descriptor = out.read;
    err_.descriptor = err.read;
    life_.descriptor = life.read;
}

StartedCommand::~StartedCommand() {
    if (process_ > 0) {
        Signal(SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    CloseOut();
    close(err_.descriptor);
    close(life_.descriptor);
}

bool StartedCommand::Await(Stream& stream, const std::string& text) {
    const Clock::time_point end = Clock::now() + longestWait;
    while (stream.text.find(text) == std::string::npos) {
        if (!ReadSome(stream.descriptor, stream.text, end)) {
            return false;
        }
    }
    return true;
}

void StartedCommand::CloseOut() {
    if (out_.descriptor >= 0) {
        close(std::exchange(out_.descriptor, -1));
    }
}

void StartedCommand::Signal(int signal) const {
    kill(process_, signal);
}

int StartedCommand::AwaitEnd() {
    const Clock::time_point end = Clock::now() + longestWait;
    while (ReadSome(life_.descriptor, life_.text, end)) {
    }
    if (Clock::now() >= end) {
        return -1;
    }
    while (ReadSome(err_.descriptor, err_.text, end)) {
    }
    int status = -1;
    waitpid(std::exchange(process_, -1), &status, 0);
    return status;
}

}  // namespace Morquil::Testing
