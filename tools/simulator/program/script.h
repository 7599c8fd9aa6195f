#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/operator_command.h"

namespace Morquil::Simulator {

/// A line of a script: a command, and when to carry it out. Lines are carried out in order.
///     at 2 s set VIDEO PROC AMP Gain 12     2 s after the start, or at once if that time has passed
///     after 500 ms drop                     500 ms after the previous line
///     lock                                  as soon as the previous line has been carried out
struct ScriptLine {
    enum class Timing { AtOnce, At, After };

    Timing timing = Timing::AtOnce;
    std::chrono::milliseconds time{0};
    OperatorCommand command;
};

/// The maximum length in bytes of a command with its time.
inline constexpr std::size_t longestScriptLine = 4096;

/// A parsed line of a script. A blank line or a comment has neither a line nor an error.
struct ScriptLineReading {
    std::optional<ScriptLine> line;
    std::string error;
};
/// `deviceCount`: how many devices a command can be for; with 0, commands name no devices.
ScriptLineReading ReadScriptLine(std::string_view text, unsigned deviceCount = 0);

/// A whole script, or the first error, which begins with its line number.
struct ScriptReading {
    std::vector<ScriptLine> lines;
    std::string error;
};
ScriptReading ReadScript(std::string_view text, unsigned deviceCount = 0);

/// Explains for people how to write times and comments.
std::string ScriptHelp();

/// Decides which line of a script to carry out when. Has no clock.
class ScriptRunner {
public:
    using Moment = std::chrono::milliseconds;

    /// Adds a line that was read at `now`, after all others.
    void Add(ScriptLine line, Moment now);

    /// Returns how many hosts a device has.
    using HostCounts = std::function<std::size_t(unsigned device)>;

    /// Returns the next command to carry out now; nothing if there is none. A command for several devices is returned
    /// for one after the other. Handles waiting for hosts itself.
    std::optional<OperatorCommand> Next(Moment now, const HostCounts& hostCount);
    /// When `Next` returns a command even if hosts do nothing until then.
    std::optional<Moment> NextDue() const;

    /// The number of lines that have not been carried out.
    std::size_t PendingCount() const { return waiting_.size(); }

private:
    struct Waiting {
        ScriptLine line;
        Moment known;
    };

    Moment DueOf(const Waiting& waiting) const;
    static bool IsWaitOver(const OperatorCommand& wait, const HostCounts& hostCount);

    std::deque<Waiting> waiting_;
    Moment latest_{0};  // when the line before the first waiting line was due
    bool waitsForHosts_ = false;
};

}  // namespace Morquil::Simulator
