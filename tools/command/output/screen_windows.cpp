#include <windows.h>

#include <array>
#include <atomic>
#include <string_view>

#include "command/output/screen.h"

namespace Morquil::Command {
namespace {

constexpr std::string_view openingText = "\x1b[?1049h\x1b[?25l\x1b[2J";
constexpr std::string_view closingText = "\x1b[0m\x1b[?25h\x1b[?1049l";

std::atomic<bool> isOpen{false};
DWORD inputBefore = 0;  // set before a screen is open
DWORD outputBefore = 0;

HANDLE ConsoleInput() {
    return GetStdHandle(STD_INPUT_HANDLE);
}
HANDLE ConsoleOutput() {
    return GetStdHandle(STD_OUTPUT_HANDLE);
}

void WriteNow(std::string_view text) {
    DWORD written = 0;
    WriteFile(ConsoleOutput(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

// What other terminals send for a key.
std::string TextOf(const INPUT_RECORD& record) {
    if (record.EventType != KEY_EVENT || record.Event.KeyEvent.bKeyDown == 0) {
        return {};
    }
    const KEY_EVENT_RECORD& key = record.Event.KeyEvent;
    if (key.wVirtualKeyCode == VK_UP || key.wVirtualKeyCode == VK_DOWN) {
        return key.wVirtualKeyCode == VK_UP ? "\x1b[A" : "\x1b[B";
    }
    const wchar_t letter = key.uChar.UnicodeChar;
    return letter > 0 && letter < 0x80 ? std::string(1, static_cast<char>(letter)) : std::string();
}

class WindowsScreen final : public Screen {
public:
    WindowsScreen() {
        isOpen = true;
        // Ctrl+C still interrupts.
        SetConsoleMode(ConsoleInput(), ENABLE_PROCESSED_INPUT);
        WriteNow(openingText);
    }
    ~WindowsScreen() override { RestoreTerminal(); }

    ScreenSize Size() const override {
        CONSOLE_SCREEN_BUFFER_INFO info{};
        if (GetConsoleScreenBufferInfo(ConsoleOutput(), &info) == 0) {
            return {};
        }
        return {static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1),
                static_cast<std::size_t>(info.srWindow.Bottom - info.srWindow.Top + 1)};
    }

    std::string ReadKeys(std::chrono::milliseconds wait) override {
        std::array<INPUT_RECORD, 16> records{};
        DWORD count = 0;
        if (WaitForSingleObject(ConsoleInput(), static_cast<DWORD>(wait.count())) != WAIT_OBJECT_0 ||
            ReadConsoleInputW(ConsoleInput(), records.data(), static_cast<DWORD>(records.size()), &count) == 0) {
            return {};
        }
        std::string keys;
        for (DWORD at = 0; at < count; ++at) {
            keys += TextOf(records[at]);
        }
        return keys;
    }
};

}  // namespace

std::unique_ptr<Screen> OpenScreen() {
    const bool isConsole = GetConsoleMode(ConsoleInput(), &inputBefore) != 0 &&
                           GetConsoleMode(ConsoleOutput(), &outputBefore) != 0 &&
                           SetConsoleMode(ConsoleOutput(), outputBefore | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
    return isConsole ? std::make_unique<WindowsScreen>() : nullptr;
}

void RestoreTerminal() {
    if (isOpen.exchange(false)) {
        WriteNow(closingText);
        SetConsoleMode(ConsoleInput(), inputBefore);
        SetConsoleMode(ConsoleOutput(), outputBefore);
    }
}

}  // namespace Morquil::Command
