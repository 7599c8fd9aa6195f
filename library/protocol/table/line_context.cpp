#include "protocol/table/line_context.h"

#include <algorithm>
#include <cstring>

#include "protocol/table/indexed_key_text.h"

namespace Morquil {

namespace {

/// A zero-terminated copy of a piece of a line, for reports.
class LineText {
public:
    explicit LineText(std::string_view text) {
        const std::size_t length = std::min(text.size(), sizeof text_ - 1);
        std::memcpy(text_, text.data(), length);
        text_[length] = '\0';
    }
    const char* CString() const { return text_; }

private:
    char text_[257];
};

}  // namespace

// The formats are the constant failure texts of the block tables, never received text.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void ReportValue(const LineContext& line, const char* format, ReportedKey key) {
    const LineText value(line.value);
    if (key.index == ReportedKey::noIndex) {
        line.errors.ReportErrorFormatted(format, key.stem, value.CString());
    } else {
        line.errors.ReportErrorFormatted(format, IndexedKeyText(key.stem, key.index).CString(), value.CString());
    }
}

void ReportText(TextProtocolParser& errors, const char* format, std::string_view text) {
    errors.ReportErrorFormatted(format, LineText(text).CString());
}
#pragma GCC diagnostic pop

}  // namespace Morquil
