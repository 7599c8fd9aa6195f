#include "protocol/text/cut_detector.h"

#include <cstdarg>

#include "protocol/text/format_text.h"

namespace Morquil {

void CutDetector::SendFormatted(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    hasCut_ |= FormatText(nullptr, 0, format, arguments) > maximumPieceLength;
    va_end(arguments);
}

}  // namespace Morquil
