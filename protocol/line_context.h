#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "protocol/text_protocol_parser.h"
#include "protocol/value_reader.h"
#include "protocol/vocabularies.h"

namespace Morquil {

/// What lines select for the lines after them.
struct Selections {
    static constexpr std::size_t noMode = VideoModes::words.Size();

    /// At the end of a block the modes are forgotten. The frame height stays: a range in the device's next block
    /// belongs to the height that it named last.
    void EndBlock() { inputMode = outputMode = noMode; }

    std::size_t inputMode = noMode;
    std::size_t outputMode = noMode;
    std::uint32_t frameHeight = 0;
};

/// A zero-terminated copy of a piece of a line, for reports.
class LineText {
public:
    explicit LineText(std::string_view text) {
        const std::size_t length = text.size() < sizeof text_ ? text.size() : sizeof text_ - 1;
        std::memcpy(text_, text.data(), length);
        text_[length] = '\0';
    }
    const char* CString() const { return text_; }

private:
    char text_[257];
};

/// One line of a block on its way into a change set: where errors go, what earlier lines selected, and the value.
struct LineContext {
    TextProtocolParser& errors;
    Selections& selections;
    std::string_view value;
};

/// Reports a bad line in the words of its block. `format` holds up to two %s, for `first` and `second` in this order.
void ReportLine(const LineContext& line, const char* format, const char* first, const char* second = "");

/// Reads one number or truth value; reports under `name` and leaves `result` alone when there is none.
template <class T>
bool ParseValue(const LineContext& line, const char* name, T& result) {
    if (ValueReader(line.value).Read(result)) {
        return true;
    }
    ReportLine(line, "Failed to parse \"%s\" value string \"%s\"\n", name, LineText(line.value).CString());
    return false;
}

/// Reads two numbers, minimum then maximum; reports under `name` and leaves `result` alone when either is missing.
template <class RangeType>
bool ParseRange(const LineContext& line, const char* name, RangeType& result) {
    RangeType range;
    ValueReader reader(line.value);
    if (reader.Read(range.minimum) && reader.Read(range.maximum)) {
        result = range;
        return true;
    }
    ReportLine(line, "Failed to parse \"%s\" range string \"%s\"\n", name, LineText(line.value).CString());
    return false;
}

}  // namespace Morquil
