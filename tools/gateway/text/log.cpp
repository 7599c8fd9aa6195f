#include "gateway/text/log.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "gateway/text/times.h"

namespace Morquil::Gateway {
namespace {

constexpr std::string_view NameOf(LogLevel level) {
    return level == LogLevel::Error ? "error" : level == LogLevel::Warning ? "warning" : "info";
}

/// The priorities of the journal.
constexpr std::string_view PrefixOf(LogLevel level) {
    return level == LogLevel::Error ? "<3>" : level == LogLevel::Warning ? "<4>" : "<6>";
}

bool IsPlain(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return c > ' ' && c != '"' && c != '=' && c != '\\' && c != '\x7f';
    });
}

void AppendQuoted(std::string& line, std::string_view text) {
    line += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            line += '\\';
            line += c;
        } else if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned char>(c));
            line += escaped;
        } else {
            line += c;
        }
    }
    line += '"';
}

void AppendField(std::string& line, std::string_view key, std::string_view value) {
    line += line.empty() ? "" : " ";
    line += key;
    line += '=';
    if (IsPlain(value)) {
        line += value;
    } else {
        AppendQuoted(line, value);
    }
}

}  // namespace

std::string FormatLogLine(LogLevel level, std::string_view event, LogFields fields) {
    std::string line;
    AppendField(line, "level", NameOf(level));
    AppendField(line, "event", event);
    for (const auto& [key, value] : fields) {
        AppendField(line, key, value);
    }
    return line;
}

void Log(LogLevel level, std::string_view event, LogFields fields) {
    static const bool isJournal = std::getenv("JOURNAL_STREAM") != nullptr;
    std::string line = isJournal ? std::string(PrefixOf(level)) : "time=" + FormatTime(WallClock::now()) + " ";
    line += FormatLogLine(level, event, fields) + "\n";
    // One call per line, so that lines of several threads stay whole. There is nowhere to report a failure.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace Morquil::Gateway
