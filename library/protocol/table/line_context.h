#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "protocol/text/text_protocol_parser.h"
#include "protocol/text/value_reader.h"
#include "protocol/words/vocabularies.h"

namespace Morquil {

/// What lines select for the lines after them.
struct Selections {
    static constexpr std::size_t noMode = VideoModes::words.Size();

    /// At the end of a block the modes are forgotten. The frame height stays: a range in the device's next block
    /// belongs to the height that the device named last.
    void EndBlock() { inputMode = outputMode = noMode; }

    std::size_t inputMode = noMode;
    std::size_t outputMode = noMode;
    std::uint32_t frameHeight = 0;
};

/// One line of a block that is being read into a change set: where errors go, what earlier lines selected, and the
/// value.
struct LineContext {
    TextProtocolParser& errors;
    Selections& selections;
    std::string_view value;
};

/// A key as reports name it. An indexed key stays in two parts until there is something to report.
struct ReportedKey {
    static constexpr std::size_t noIndex = static_cast<std::size_t>(-1);

    // NOLINTNEXTLINE(google-explicit-constructor): most keys are one text.
    constexpr ReportedKey(const char* wholeKey) : stem(wholeKey) {}
    constexpr ReportedKey(const char* keyStem, std::size_t keyIndex) : stem(keyStem), index(keyIndex) {}

    const char* stem;
    std::size_t index = noIndex;
};

// Reports are rare, so they are kept out of the functions that read.

/// Reports a line's value with the failure text of its block. `format` holds two %s, for key and value in this order.
[[gnu::cold]] void ReportValue(const LineContext& line, const char* format, ReportedKey key);

/// Reports a piece of a line. `format` holds one %s.
[[gnu::cold]] void ReportText(TextProtocolParser& errors, const char* format, std::string_view text);

inline constexpr const char* unreadableValue = "Failed to parse \"%s\" value string \"%s\"\n";

/// Reads one number or truth value; reports under `name` and leaves `result` unchanged when there is none.
template <class T>
bool ParseValue(const LineContext& line, ReportedKey name, T& result) {
    if (ValueReader(line.value).Read(result)) {
        return true;
    }
    ReportValue(line, unreadableValue, name);
    return false;
}

/// Reads two numbers, minimum then maximum; reports under `name` and leaves `result` unchanged when either is missing.
template <class RangeType>
bool ParseRange(const LineContext& line, ReportedKey name, RangeType& result) {
    RangeType range;
    ValueReader reader(line.value);
    if (reader.Read(range.minimum) && reader.Read(range.maximum)) {
        result = range;
        return true;
    }
    ReportValue(line, "Failed to parse \"%s\" range string \"%s\"\n", name);
    return false;
}

}  // namespace Morquil
