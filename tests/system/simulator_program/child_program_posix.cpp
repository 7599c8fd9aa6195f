#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

#include "tests/system/simulator_program/child_program.h"

extern char** environ;

namespace Morquil::Testing {
namespace {

constexpr int lifeOfTheChild = 3;

struct Pipe {
    Pipe() { pipe2(ends.data(), O_CLOEXEC); }
    int Read() const { return ends[0]; }
    int Write() const { return ends[1]; }

    std::array<int, 2> ends{};
};

bool IsReady(int descriptor, short events, std::chrono::milliseconds limit) {
    pollfd polled{.fd = descriptor, .events = events, .revents = 0};
    return poll(&polled, 1, static_cast<int>(limit.count())) == 1;
}

pid_t Spawn(std::vector<std::string> words, const Pipe& input, const Pipe& output, const Pipe& life) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.Read(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.Write(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.Write(), STDERR_FILENO);
    posix_spawn_file_actions_adddup2(&actions, life.Write(), lifeOfTheChild);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &brokenPipe);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t process = 0;
    posix_spawn(&process, MORQUIL_SIMULATOR_PATH, &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

}  // namespace

ChildProgram::ChildProgram(const std::vector<std::string>& options) {
    // Writes of this process to a pipe without a reader fail.
    signal(SIGPIPE, SIG_IGN);
    std::vector<std::string> words{"morquil-sim", "--port", "0"};
    words.insert(words.end(), options.begin(), options.end());
    const Pipe input;
    const Pipe output;
    const Pipe life;
    process_ = Spawn(std::move(words), input, output, life);
    close(input.Read());
    close(output.Write());
    close(life.Write());
    input_ = input.Write();
    output_ = output.Read();
    life_ = life.Read();
    fcntl(input_, F_SETFL, O_NONBLOCK);
}

ChildProgram::~ChildProgram() {
    if (process_ != 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    CloseOutput();
    close(input_);
    close(life_);
}

void ChildProgram::CloseOutput() {
    if (output_ != -1) {
        close(std::exchange(output_, -1));
    }
}

std::string ChildProgram::ReadUntil(std::string_view end) {
    std::string text;
    char byte = 0;
    while (!text.ends_with(end) && IsReady(output_, POLLIN, std::chrono::seconds(10)) && read(output_, &byte, 1) == 1) {
        text += byte;
    }
    return text;
}

std::uint16_t ChildProgram::AwaitPort() {
    const std::string line = ReadUntil("\n");
    return static_cast<std::uint16_t>(std::stoi(line.substr(line.find(':') + 1)));
}

bool ChildProgram::WriteSome(std::string_view& text, std::chrono::milliseconds limit) {
    if (!IsReady(input_, POLLOUT, limit)) {
        return false;
    }
    const ssize_t written = write(input_, text.data(), text.size());
    text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    return written > 0;
}

void ChildProgram::Write(std::string_view text) {
    while (!text.empty() && WriteSome(text, std::chrono::seconds(10))) {
    }
}

std::size_t ChildProgram::Flood(std::string_view text, std::size_t most) {
    std::size_t written = 0;
    while (written < most) {
        std::string_view rest = text;
        while (!rest.empty()) {
            if (!WriteSome(rest, std::chrono::seconds(1))) {
                return written + text.size() - rest.size();
            }
        }
        written += text.size();
    }
    return written;
}

void ChildProgram::Send(int signal) {
    kill(process_, signal);
}

int ChildProgram::AwaitEnd() {
    if (!IsReady(life_, 0, std::chrono::seconds(5))) {
        return stillRuns;
    }
    int status = 0;
    waitpid(std::exchange(process_, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace Morquil::Testing
