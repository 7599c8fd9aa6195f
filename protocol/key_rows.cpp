#include "protocol/key_rows.h"

#include <charconv>
#include <cstring>

namespace Morquil {

IndexedKeyText::IndexedKeyText(std::string_view stem, std::size_t index) {
    constexpr std::size_t roomForIndex = 4;
    const std::size_t length = stem.size() < sizeof text_ - roomForIndex ? stem.size() : sizeof text_ - roomForIndex;
    std::memcpy(text_, stem.data(), length);
    *std::to_chars(text_ + length, text_ + sizeof text_ - 1, index).ptr = '\0';
}

void ModeSelector::Select(const LineContext& line) const {
    const std::size_t mode = VideoModes::words.Find(line.value);
    const bool known = mode < VideoModes::words.Size();
    if (known || unknownMode == UnknownMode::ForgetsSelection) {
        line.selections.*slot = mode;
    }
    if (!known) {
        const LineText word(line.value);
        ReportLine(line, failureText, failureNamesKey ? name : word.CString(), word.CString());
    }
}

void HeightSelector::Select(const LineContext& line) const {
    std::uint32_t height = 0;
    ParseValue(line, name, height);
    line.selections.frameHeight = height;
}

}  // namespace Morquil
