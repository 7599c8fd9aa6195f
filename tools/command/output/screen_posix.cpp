#include "command/output/screen.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <string_view>

namespace Morquil::Command {
namespace {

constexpr std::string_view openingText = "\x1b[?1049h\x1b[?25l\x1b[2J";
constexpr std::string_view closingText = "\x1b[0m\x1b[?25h\x1b[?1049l";
// These end the program at once. Others are noted, so that it ends in its own time.
constexpr int endingSignals[] = {SIGHUP, SIGQUIT, SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};

std::atomic<bool> isOpen{false};
termios before{};  // set before a screen is open
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");

// What the terminal does not take is of no use later.
void WriteNow(std::string_view text) {
    [[maybe_unused]] const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
}

void RestoreAndEnd(int signal) {
    RestoreTerminal();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// Keys arrive one by one and unseen. Ctrl+C interrupts; a stop would leave the terminal as it is.
termios AsScreen(termios settings) {
    settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    settings.c_cc[VSUSP] = _POSIX_VDISABLE;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    return settings;
}

class PosixScreen final : public Screen {
public:
    PosixScreen() {
        const termios settings = AsScreen(before);
        for (const int signal : endingSignals) {
            std::signal(signal, &RestoreAndEnd);
        }
        isOpen = true;
        tcsetattr(STDIN_FILENO, TCSANOW, &settings);
        WriteNow(openingText);
    }
    ~PosixScreen() override { RestoreTerminal(); }

    ScreenSize Size() const override {
        winsize size{};
        const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0;
        return isKnown ? ScreenSize{size.ws_col, size.ws_row} : ScreenSize();
    }

    std::string ReadKeys(std::chrono::milliseconds wait) override {
        constexpr std::string_view quit = "q";
        pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        if (poll(&input, 1, static_cast<int>(wait.count())) != 1) {
            return {};
        }
        std::array<char, 64> keys{};
        const ssize_t count = read(STDIN_FILENO, keys.data(), keys.size());
        // A terminal that has gone has no more keys.
        return count > 0 ? std::string(keys.data(), static_cast<std::size_t>(count)) : std::string(quit);
    }
};

}  // namespace

std::unique_ptr<Screen> OpenScreen() {
    const bool isTerminal = isatty(STDOUT_FILENO) == 1 && tcgetattr(STDIN_FILENO, &before) == 0;
    return isTerminal ? std::make_unique<PosixScreen>() : nullptr;
}

void RestoreTerminal() {
    if (isOpen.exchange(false)) {
        WriteNow(closingText);
        tcsetattr(STDIN_FILENO, TCSANOW, &before);
    }
}

}  // namespace Morquil::Command
