#pragma once

#include <stdexcept>
#include <string>

namespace Morquil::Command {

/// The program's exit codes. Scripts rely on the numbers.
enum class ExitCode : int {
    Done = 0,
    Usage = 1,           // a bad command line, value or local file
    Unreachable = 2,     // could not connect
    TimedOut = 3,        // no result within the time limit
    NotApplied = 4,      // the device does not report the value
    ConnectionLost = 5,  // an established connection was lost
    Interrupted = 130,   // stopped from outside before the work was done; what shells report for Ctrl-C
};

/// Of the outcomes for several devices, the one to report.
constexpr ExitCode WorseOf(ExitCode left, ExitCode right) {
    constexpr ExitCode fromBestToWorst[] = {ExitCode::Done,           ExitCode::NotApplied,  ExitCode::TimedOut,
                                            ExitCode::ConnectionLost, ExitCode::Unreachable, ExitCode::Usage,
                                            ExitCode::Interrupted};
    ExitCode worse = left;
    for (const ExitCode code : fromBestToWorst) {
        worse = code == left || code == right ? code : worse;
    }
    return worse;
}

/// Why a command failed, in one line for people.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code_(code) {}

    ExitCode Code() const { return code_; }

private:
    ExitCode code_;
};

/// The command line is wrong, or something that it names is.
class UsageFailure : public Failure {
public:
    explicit UsageFailure(const std::string& text) : Failure(ExitCode::Usage, text) {}
};

/// The user stopped the command, so no message is needed.
class Interruption : public Failure {
public:
    Interruption() : Failure(ExitCode::Interrupted, "interrupted") {}
};

}  // namespace Morquil::Command
