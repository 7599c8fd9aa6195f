#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace Morquil::Command {

struct ScreenSize {
    std::size_t columns = 80;
    std::size_t rows = 24;
};

/// A terminal as a screen: without its scrolled lines, its cursor and its echo. What it showed before comes back when
/// the object is destroyed. Text for it goes to standard output.
class Screen {
public:
    Screen() = default;
    virtual ~Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// The terminal's size may change at any time.
    virtual ScreenSize Size() const = 0;
    /// Waits for keys, at most for `wait`. Returns: what the terminal sends for them; nothing if there were none.
    virtual std::string ReadKeys(std::chrono::milliseconds wait) = 0;
};

/// Opens the program's terminal as a screen. Call it once at a time.
/// Returns: null if standard input or standard output is no terminal.
std::unique_ptr<Screen> OpenScreen();

/// Restores the terminal if a screen is open. For signal handlers, and for ends without destructors.
void RestoreTerminal();

}  // namespace Morquil::Command
