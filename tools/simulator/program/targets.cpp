#include "simulator/program/targets.h"

#include <charconv>

#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {

namespace {

std::optional<unsigned> ReadNumber(std::string_view text) {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// Parses a number, a range or a star.
std::optional<Targets> ReadTargets(std::string_view text, unsigned deviceCount) {
    if (text == "*") {
        return Targets{1, deviceCount};
    }
    const std::size_t dash = text.find('-');
    const auto first = ReadNumber(text.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : ReadNumber(text.substr(dash + 1));
    if (!first || !last || *first == 0 || *first > *last || *last > deviceCount) {
        return std::nullopt;
    }
    return Targets{*first, *last};
}

}  // namespace

TargetsReading TakeTargets(std::string_view& rest, unsigned deviceCount) {
    if (!rest.starts_with('@')) {
        return {};
    }
    const std::string_view word = TakeWord(rest);
    const std::optional<Targets> targets = ReadTargets(word.substr(1), deviceCount);
    if (!targets) {
        return {std::nullopt, "expected " + TargetsExpected(deviceCount) + ", not \"" + std::string(word) + "\""};
    }
    return {targets, {}};
}

std::string TargetsExpected(unsigned deviceCount) {
    const std::string last = std::to_string(deviceCount);
    return "a device from @1 to @" + last + ", a range such as @1-" + last + ", or @* for all";
}

}  // namespace Morquil::Simulator
