#include "protocol/message_to_string.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>

#include "protocol/format_text.h"

namespace Morquil {

void MessageToString::SendFormatted(const char* format, ...) {
    char piece[maximumPieceLength + 1];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = FormatText(piece, sizeof piece, format, arguments);
    va_end(arguments);
    if (length > 0) {
        text_.append(piece, static_cast<std::size_t>(std::min(length, maximumPieceLength)));
    }
}

}  // namespace Morquil
