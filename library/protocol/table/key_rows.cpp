#include "protocol/table/key_rows.h"

namespace Morquil {

void ModeSelector::Select(const LineContext& line) const {
    const std::size_t mode = VideoModes::words.Find(line.value);
    const bool known = mode < VideoModes::words.Size();
    if (known || unknownMode == UnknownMode::ForgetsSelection) {
        line.selections.*slot = mode;
    }
    if (known) {
        return;
    }
    if (failureNamesKey) {
        ReportValue(line, failureText, name);
    } else {
        ReportText(line.errors, failureText, line.value);
    }
}

void HeightSelector::Select(const LineContext& line) const {
    std::uint32_t height = 0;
    ParseValue(line, name, height);
    line.selections.frameHeight = height;
}

}  // namespace Morquil
