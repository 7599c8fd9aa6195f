#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include "command/output/standard_output.h"

namespace Morquil::Command {
namespace {

constexpr int standardOutput = 1;
constexpr std::size_t longestWrite = 16 * 1024;

std::atomic<bool> hasReader{true};

// The C library has no single error number for these.
bool IsOfBrokenPipe(unsigned long error) {
    return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
}

HANDLE Console() {
    return GetStdHandle(STD_OUTPUT_HANDLE);
}

}  // namespace

StandardOutput::StandardOutput() {
    _setmode(standardOutput, _O_BINARY);
    // Texts are UTF-8.
    SetConsoleOutputCP(CP_UTF8);
}

Written StandardOutput::Write(std::string_view text) {
    while (!text.empty()) {
        const int written =
            _write(standardOutput, text.data(), static_cast<unsigned>(std::min(text.size(), longestWrite)));
        if (written <= 0) {
            hasReader = !IsOfBrokenPipe(_doserrno);
            return hasReader ? Written::Failed : Written::NoReader;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return Written::All;
}

bool StandardOutput::HasReader() const {
    return hasReader;
}

/// A console shows colours only if that mode can be enabled.
bool StandardOutput::IsTerminal() const {
    DWORD mode = 0;
    return GetConsoleMode(Console(), &mode) != 0 &&
           SetConsoleMode(Console(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::optional<std::size_t> StandardOutput::Width() const {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(Console(), &info) == 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

}  // namespace Morquil::Command
