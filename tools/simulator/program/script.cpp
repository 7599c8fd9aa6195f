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

/// Removes a word and the blanks after it from `rest`, and returns the word.
std::string_view TakeWord(std::string_view& rest) {
    const std::size_t end = std::min(rest.find_first_of(" \t"), rest.size());
    const std::string_view word = rest.substr(0, end);
    rest = Trimmed(rest.substr(end));
    return word;
}

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

}  // namespace

ScriptLineReading ReadScriptLine(std::string_view text) {
    std::string_view rest = Trimmed(text);
    if (rest.empty() || rest.starts_with('#')) {
        return {};
    }
    if (text.size() > longestScriptLine) {
        return Refused("the line is longer than " + std::to_string(longestScriptLine) + " bytes");
    }
    ScriptLine line;
    std::string_view afterWord = rest;
    const std::string_view word = TakeWord(afterWord);
    if (EqualsIgnoringCase(word, "at") || EqualsIgnoringCase(word, "after")) {
        line.timing = EqualsIgnoringCase(word, "at") ? ScriptLine::Timing::At : ScriptLine::Timing::After;
        rest = afterWord;
        const auto time = TakeTime(rest);
        if (!time) {
            return Refused(timeExpected + std::string(word) + "\", not \"" + std::string(afterWord) + "\"");
        }
        line.time = *time;
    }
    if (rest.empty()) {
        return Refused("expected a command after the time; \"help\" lists the commands");
    }
    CommandReading reading = ReadCommand(rest);
    if (!reading.command) {
        return Refused(std::move(reading.error));
    }
    line.command = std::move(*reading.command);
    return {std::move(line), {}};
}

ScriptReading ReadScript(std::string_view text) {
    ScriptReading script;
    std::size_t number = 0;
    std::chrono::milliseconds latest{0};
    ForEachLine(text, [&](std::string_view lineText) {
        ++number;
        if (!script.error.empty()) {
            return;
        }
        ScriptLineReading reading = ReadScriptLine(lineText);
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

std::optional<OperatorCommand> ScriptRunner::Next(Moment now, std::size_t hostCount) {
    while (!waiting_.empty() && DueOf(waiting_.front()) <= now) {
        const CommandKind kind = waiting_.front().line.command.kind;
        const bool isWait = kind == CommandKind::WaitForHost || kind == CommandKind::WaitForNoHost;
        waitsForHosts_ = isWait && (hostCount > 0) != (kind == CommandKind::WaitForHost);
        if (waitsForHosts_) {
            return std::nullopt;
        }
        // The line after a wait counts from the end of the wait, any other line from the previous line's due time, so
        // that delays do not add up.
        latest_ = isWait ? now : DueOf(waiting_.front());
        OperatorCommand command = std::move(waiting_.front().line.command);
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
