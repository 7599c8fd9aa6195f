#include "delivery/awaited_lines.h"

namespace Morquil {
namespace {

/// Takes the first line, with its line feed, off `text`.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end == std::string_view::npos ? text.size() : end + 1);
    text.remove_prefix(line.size());
    return line;
}

/// The key of a line, or nothing for an empty line.
std::string_view KeyOf(std::string_view line) {
    const std::size_t end = line.find(':');
    return end == std::string_view::npos ? std::string_view() : line.substr(0, end);
}

/// The line of `block` with this key, or nothing.
std::string_view FindLine(std::string_view block, std::string_view key) {
    while (!block.empty()) {
        const std::string_view line = TakeLine(block);
        if (KeyOf(line) == key) {
            return line;
        }
    }
    return {};
}

}  // namespace

AwaitedLines::AwaitedLines(std::string_view block, std::size_t slot, IsReported isReported) {
    TakeLine(block);
    while (!block.empty()) {
        const std::string_view line = TakeLine(block);
        const std::string_view key = KeyOf(line);
        if (!key.empty() && isReported(slot, key)) {
            lines_ += line;
        }
    }
}

AwaitedLines::Comparison AwaitedLines::Compare(std::string_view report) const {
    Comparison result = Comparison::NoneReported;
    std::string_view rest = lines_;
    while (!rest.empty()) {
        const std::string_view line = TakeLine(rest);
        const std::string_view reported = FindLine(report, KeyOf(line));
        if (!reported.empty() && reported != line) {
            return Comparison::Different;
        }
        if (!reported.empty()) {
            result = Comparison::Same;
        }
    }
    return result;
}

void AwaitedLines::RemoveReported(std::string_view report) {
    std::size_t at = 0;
    while (at < lines_.size()) {
        std::string_view rest = std::string_view(lines_).substr(at);
        const std::string_view line = TakeLine(rest);
        if (FindLine(report, KeyOf(line)).empty()) {
            at += line.size();
        } else {
            lines_.erase(at, line.size());
        }
    }
}

}  // namespace Morquil
