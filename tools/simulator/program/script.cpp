#include "simulator/program/script.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {

namespace {

constexpr double longestMs = 24.0 * 3600 * 1000;
constexpr const char* timeExpected = "expected a time such as 500 ms or 2 s (at most a day) after \"";

/// Removes a time from `rest`, with or without a blank before its unit, and returns it.
std::optional<std::chrono::milliseconds> TakeTime(std::string_view& rest) {
    double number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number, std::chars_format::fixed);
    if (error != std::errc() || !std::isfinite(number)) {
        return std::nullopt;
    }
    rest = Trimmed(rest.substr(static_cast<std::size_t>(end - rest.data())));
    const std::string_view unit = TakeWord(rest);
    const double milliseconds = unit == "s" ? number * 1000 : number;
    if ((unit != "s" && unit != "ms") || milliseconds < 0 || milliseconds > longestMs) {
        return std::nullopt;
    }
    return std::chrono::milliseconds(std::llround(milliseconds));
}

std::string AsText(std::chrono::milliseconds time) {
    return std::to_string(time.count()) + " ms";
}

ScriptLineReading Refused(std::string why) {
    return {std::nullopt, std::move(why)};
}

/// Removes the time in front of a command, if there is one, from `rest`.
/// Returns: what is wrong with it, or an empty text.
std::string TakeTiming(std::string_view& rest, ScriptLine& line) {
    std::string_view afterWord = rest;
    const std::string_view word = TakeWord(afterWord);
    if (!EqualsIgnoringCase(word, "at") && !EqualsIgnoringCase(word, "after")) {
        return {};
    }
    line.timing = EqualsIgnoringCase(word, "at") ? ScriptLine::Timing::At : ScriptLine::Timing::After;
    rest = afterWord;
    const auto time = TakeTime(rest);
    if (!time) {
        return timeExpected + std::string(word) + "\", not \"" + std::string(afterWord) + "\"";
    }
    line.time = *time;
    return rest.empty() ? "expected a command after the time; \"help\" lists the commands" : std::string();
}

/// Removes the devices in front of a command, if there are any, from `rest`.
/// Returns: what is wrong with them, or an empty text.
std::string TakeDevices(std::string_view& rest, unsigned deviceCount, std::optional<Targets>& devices) {
    TargetsReading reading = TakeTargets(rest, deviceCount);
    devices = reading.targets;
    if (devices && rest.empty()) {
        return "expected a command after the device; \"help\" lists the commands";
    }
    return std::move(reading.error);
}

/// Gives a command its devices.
/// Returns: what is wrong with them, or an empty text.
std::string Address(OperatorCommand& command, const std::optional<Targets>& devices, unsigned deviceCount) {
    const bool isForDevices = IsForDevices(command.kind);
    if (devices && !isForDevices) {
        return "\"" + command.text + "\" is for the whole program and takes no device";
    }
    if (!devices && isForDevices && deviceCount > 1) {
        return "expected " + TargetsExpected(deviceCount) + " before \"" + command.text + "\"";
    }
    command.targets = devices.value_or(Targets());
    return {};
}

}  // namespace

ScriptLineReading ReadScriptLine(std::string_view text, unsigned deviceCount) {
    std::string_view rest = Trimmed(text);
    if (rest.empty() || rest.starts_with('#')) {
        return {};
    }
    if (text.size() > longestScriptLine) {
        return Refused("the line is longer than " + std::to_string(longestScriptLine) + " bytes");
    }
    ScriptLine line;
    std::string error = TakeTiming(rest, line);
    std::optional<Targets> devices;
    if (error.empty() && deviceCount > 0) {
        error = TakeDevices(rest, deviceCount, devices);
    }
    if (!error.empty()) {
        return Refused(std::move(error));
    }
    CommandReading reading = ReadCommand(rest);
    if (!reading.command) {
        return Refused(std::move(reading.error));
    }
    line.command = std::move(*reading.command);
    error = Address(line.command, devices, deviceCount);
    return error.empty() ? ScriptLineReading{std::move(line), {}} : Refused(std::move(error));
}

ScriptReading ReadScript(std::string_view text, unsigned deviceCount) {
    ScriptReading script;
    std::size_t number = 0;
    std::chrono::milliseconds latest{0};
    ForEachLine(text, [&](std::string_view lineText) {
        ++number;
        if (!script.error.empty()) {
            return;
        }
        ScriptLineReading reading = ReadScriptLine(lineText, deviceCount);
        if (reading.line && reading.line->timing == ScriptLine::Timing::At && reading.line->time < latest) {
            reading.error = "times must not go back: " + AsText(reading.line->time) + " follows " + AsText(latest);
        }
        if (!reading.error.empty()) {
            script = {{}, "line " + std::to_string(number) + ": " + reading.error};
        } else if (reading.line) {
            latest = reading.line->timing == ScriptLine::Timing::At ? reading.line->time : latest;
            script.lines.push_back(std::move(*reading.line));
        }
    });
    return script;
}

std::string ScriptHelp() {
    return "Commands, one on each line of standard input or of a script, run in order:\n" + CommandHelp() +
           "A command may be preceded by the time at which it runs:\n"
           "  at TIME               this long after the start, for example: at 2 s drop\n"
           "  after TIME            this long after the previous line, for example: after 500 ms lock\n"
           "With --devices, a command other than help and quit names its devices first:\n"
           "  @NUMBER               one device, counted from 1, for example: at 2 s @7 drop\n"
           "  @NUMBER-NUMBER        several devices, for example: @1-10 lock\n"
           "  @*                    all devices, for example: @* offline\n"
           "Blank lines and lines that start with # are ignored.\n";
}

void ScriptRunner::Add(ScriptLine line, Moment now) {
    waiting_.push_back({std::move(line), now});
}

ScriptRunner::Moment ScriptRunner::DueOf(const Waiting& waiting) const {
    const Moment earliest = std::max(latest_, waiting.known);
    switch (waiting.line.timing) {
        case ScriptLine::Timing::At:
            return std::max(earliest, waiting.line.time);
        case ScriptLine::Timing::After:
            return earliest + waiting.line.time;
        case ScriptLine::Timing::AtOnce:
            break;
    }
    return earliest;
}

bool ScriptRunner::IsWaitOver(const OperatorCommand& wait, const HostCounts& hostCount) {
    for (unsigned number = wait.targets.first; number <= wait.targets.last; ++number) {
        if ((hostCount(number) > 0) != (wait.kind == CommandKind::WaitForHost)) {
            return false;
        }
    }
    return true;
}

std::optional<OperatorCommand> ScriptRunner::Next(Moment now, const HostCounts& hostCount) {
    while (!waiting_.empty() && DueOf(waiting_.front()) <= now) {
        OperatorCommand& front = waiting_.front().line.command;
        const bool isWait = front.kind == CommandKind::WaitForHost || front.kind == CommandKind::WaitForNoHost;
        waitsForHosts_ = isWait && !IsWaitOver(front, hostCount);
        if (waitsForHosts_) {
            return std::nullopt;
        }
        if (!isWait && front.targets.first < front.targets.last) {
            OperatorCommand command = front;
            command.targets.last = front.targets.first++;
            return command;
        }
        // The line after a wait counts from the end of the wait, any other line from the previous line's due time, so
        // that delays do not add up.
        latest_ = isWait ? now : DueOf(waiting_.front());
        OperatorCommand command = std::move(front);
        waiting_.pop_front();
        if (!isWait) {
            return command;
        }
    }
    return std::nullopt;
}

std::optional<ScriptRunner::Moment> ScriptRunner::NextDue() const {
    return waiting_.empty() || waitsForHosts_ ? std::nullopt : std::optional(DueOf(waiting_.front()));
}

}  // namespace Morquil::Simulator
