#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <thread>

#include "command/output/own_output.h"
#include "command/output/traced_lines.h"

namespace Morquil::Command {
namespace {

bool WriteAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(file, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

class OwnOutput::System {
public:
    System() : own_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3)) { SendLibraryTo(OpenNull()); }
    ~System() {
        Finish();
        close(own_);
    }
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    void Trace() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) == 0) {
            SendLibraryTo(ends[1]);
            reader_ = std::thread([from = ends[0]] { Show(from); });
        }
    }

    Written Write(std::string_view text) const {
        return WriteAll(own_, text) ? Written::All : errno == EPIPE ? Written::NoReader : Written::Failed;
    }
    bool HasReader() const {
        pollfd output{.fd = own_, .events = 0, .revents = 0};
        return poll(&output, 1, 0) != 1 || (output.revents & POLLERR) == 0;
    }
    bool IsTerminal() const { return isatty(own_) == 1; }

    void Finish() {
        std::fflush(stdout);
        SendLibraryTo(OpenNull());
        if (reader_.joinable()) {
            reader_.join();
        }
    }

private:
    static int OpenNull() { return open("/dev/null", O_WRONLY | O_CLOEXEC); }

    static void SendLibraryTo(int file) {
        if (file >= 0 && file != STDOUT_FILENO) {
            dup2(file, STDOUT_FILENO);
            close(file);
        }
    }

    // Runs until the last writer has closed the pipe.
    static void Show(int from) {
        TracedLines lines;
        std::array<char, 4096> piece{};
        for (ssize_t count = read(from, piece.data(), piece.size()); count > 0;
             count = read(from, piece.data(), piece.size())) {
            WriteAll(STDERR_FILENO, lines.Add({piece.data(), static_cast<std::size_t>(count)}));
        }
        WriteAll(STDERR_FILENO, lines.Rest());
        close(from);
    }

    const int own_;
    std::thread reader_;
};

OwnOutput::OwnOutput() : system_(std::make_unique<System>()) {}
OwnOutput::~OwnOutput() = default;
void OwnOutput::Trace() {
    system_->Trace();
}
Written OwnOutput::Write(std::string_view text) {
    return system_->Write(text);
}
bool OwnOutput::HasReader() const {
    return system_->HasReader();
}
bool OwnOutput::IsTerminal() const {
    return system_->IsTerminal();
}
void OwnOutput::Finish() {
    system_->Finish();
}

}  // namespace Morquil::Command
