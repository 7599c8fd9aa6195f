#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "command/arguments/exit_code.h"
#include "command/arguments/options.h"
#include "command/output/terminal.h"

namespace Morquil::Command {

/// The program's environment.
struct Surroundings {
    Terminal terminal;
    std::string defaultAddress = "127.0.0.1";  // or a group
    std::string groupsFile = {};               // holds the groups of devices
    /// By the library's contract, a device that answers is never silent for so long.
    std::chrono::milliseconds longestSilence = std::chrono::seconds(18);
    /// Called once the command line is parsed.
    std::function<void(const Options&)> begin = [](const Options&) {};
    /// Called before the library is used, possibly several times.
    std::function<void(const Options&)> prepareLibrary = [](const Options&) {};
    /// See Context.
    const std::atomic<bool>& isInterrupted;
};

/// Carries out `arguments` (UTF-8, without the program's name). A failure is printed as one line on standard error.
ExitCode RunProgram(const std::vector<std::string>& arguments, const Surroundings& surroundings);

}  // namespace Morquil::Command
