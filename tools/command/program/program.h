#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "command/arguments/exit_code.h"
#include "command/arguments/options.h"
#include "command/output/terminal.h"

namespace Morquil::Command {

/// What the program has around it.
struct Surroundings {
    Terminal terminal;
    std::string defaultAddress = "127.0.0.1";
    /// Called once it is clear what is to be done, before the library is.
    std::function<void(const Options&)> begin = [](const Options&) {};
    /// See Context.
    const std::atomic<bool>& isInterrupted;
};

/// Does what `arguments` (UTF-8, without the program's name) say. A failure is told in one line on standard error.
ExitCode RunProgram(const std::vector<std::string>& arguments, const Surroundings& surroundings);

}  // namespace Morquil::Command
