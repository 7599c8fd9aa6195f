#include "protocol/text/message_to_string.h"

#include <cstdarg>

namespace Morquil {

void MessageToString::SendFormatted(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    text_.AppendPiece(format, arguments);
    va_end(arguments);
}

}  // namespace Morquil
