#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <utility>

#include "tests/system/host/host_process.h"
#include "transport/file_descriptor.h"

namespace Morquil::Testing {
namespace {

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    Pipe() {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        readEnd = FileDescriptor(ends[0]);
        writeEnd = FileDescriptor(ends[1]);
    }
};

/// In the new process.
void Arrange(Streams streams, int input, int output) {
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    if (streams == Streams::OutputClosed) {
        close(STDOUT_FILENO);
    } else if (streams == Streams::AllClosed) {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
    }
    // The way most programs are started.
    std::signal(SIGPIPE, SIG_DFL);
}

}  // namespace

class HostProcess::System {
public:
    System(const std::vector<std::string>& arguments, Streams streams) {
        Pipe input;
        Pipe output;
        std::vector<char*> words{const_cast<char*>(MORQUIL_CONSOLE_HOST_PATH)};
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        process_ = fork();
        if (process_ == 0) {
            Arrange(streams, input.readEnd.Get(), output.writeEnd.Get());
            execv(words[0], words.data());
            _exit(127);
        }
        ended_ = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
        input_ = std::move(input.writeEnd);
        if (streams == Streams::OutputToPipe) {
            output_ = std::move(output.readEnd);
        }
    }
    ~System() { AwaitEnd(0); }
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    std::string ReadOutput(std::size_t size) {
        std::string text;
        std::array<char, 4096> part{};
        while (text.size() < size) {
            const ssize_t count = read(output_.Get(), part.data(), std::min(part.size(), size - text.size()));
            if (count <= 0) {
                break;
            }
            text.append(part.data(), static_cast<std::size_t>(count));
        }
        return text;
    }

    void EndInput() { input_ = FileDescriptor(); }

    int AwaitEnd(int milliseconds) {
        if (process_ <= 0) {
            return -1;
        }
        pollfd watched{ended_.Get(), POLLIN, 0};
        if (poll(&watched, 1, milliseconds) != 1) {
            kill(process_, SIGKILL);
        }
        int status = 0;
        waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t process_ = -1;
    FileDescriptor ended_;
    FileDescriptor input_;
    FileDescriptor output_;
};

HostProcess::HostProcess(const std::vector<std::string>& arguments, Streams streams)
    : system_(std::make_unique<System>(arguments, streams)) {}
HostProcess::~HostProcess() = default;
std::string HostProcess::ReadOutput(std::size_t size) {
    return system_->ReadOutput(size);
}
void HostProcess::EndInput() {
    system_->EndInput();
}
int HostProcess::AwaitEnd() {
    return system_->AwaitEnd(30000);
}

}  // namespace Morquil::Testing
