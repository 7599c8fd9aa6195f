#pragma once

#include <stdexcept>
#include <string>

namespace Morquil::Command {

/// What the program tells whoever started it. Scripts rely on the numbers.
enum class ExitCode : int {
    Done = 0,
    Usage = 1,           // the command line, a value or a local file is not good
    Unreachable = 2,     // no connection came about
    TimedOut = 3,        // nothing was decided within the time
    NotApplied = 4,      // the device does not report the value
    ConnectionLost = 5,  // a connection that was there has ended
    Interrupted = 130,   // ended from outside before the work was done; what shells report for Ctrl-C
};

/// Why a command ends without having done its work, in one line for people.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code_(code) {}

    ExitCode Code() const { return code_; }

private:
    ExitCode code_;
};

/// The command line, or something that it names, is not good.
class UsageFailure : public Failure {
public:
    explicit UsageFailure(const std::string& text) : Failure(ExitCode::Usage, text) {}
};

/// The user has ended the command, and knows: no line says so.
class Interruption : public Failure {
public:
    Interruption() : Failure(ExitCode::Interrupted, "interrupted") {}
};

}  // namespace Morquil::Command
