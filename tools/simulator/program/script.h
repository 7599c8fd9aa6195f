#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/operator_command.h"

namespace Morquil::Simulator {

/// A line of a script: a command, and when it is carried out. Lines are carried out in order.
///     at 2 s set VIDEO PROC AMP Gain 12     2 s after the start, or at once when that has passed
///     after 500 ms drop                     500 ms after the line before it
///     lock                                  as soon as the line before it has been carried out
struct ScriptLine {
    enum class Timing { AtOnce, At, After };

    Timing timing = Timing::AtOnce;
    std::chrono::milliseconds time{0};
    OperatorCommand command;
};

/// The most bytes that a command may have with its time.
inline constexpr std::size_t longestScriptLine = 4096;

/// A line of a script; neither line nor complaint when it is blank or a comment.
struct ScriptLineReading {
    std::optional<ScriptLine> line;
    std::string complaint;
};
ScriptLineReading ReadScriptLine(std::string_view text);

/// A whole script, or the first complaint, which begins with the number of its line.
struct ScriptReading {
    std::vector<ScriptLine> lines;
    std::string complaint;
};
ScriptReading ReadScript(std::string_view text);

/// How times and comments are written, for people.
std::string ScriptHelp();

/// Says which line of a script is to be carried out when. Knows no clock.
class ScriptRunner {
public:
    using Moment = std::chrono::milliseconds;

    /// A line that became known at `now`, behind all others.
    void Add(ScriptLine line, Moment now);

    /// The next command that is to be carried out now; nothing when there is none. Waits for hosts itself.
    std::optional<OperatorCommand> Next(Moment now, std::size_t hostCount);
    /// When `Next` has something to give, whatever hosts do until then.
    std::optional<Moment> NextDue() const;

    /// Lines that have not been carried out.
    std::size_t PendingCount() const { return waiting_.size(); }

private:
    struct Waiting {
        ScriptLine line;
        Moment known;
    };

    Moment DueOf(const Waiting& waiting) const;

    std::deque<Waiting> waiting_;
    Moment latest_{0};  // when the line before the first one that waits was due
    bool waitsForHosts_ = false;
};

}  // namespace Morquil::Simulator
