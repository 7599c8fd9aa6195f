#include "tests/worlds/allocation/serialisation_count.h"

#include <atomic>
#include <cstdarg>
#include <string_view>

#include "protocol/text/message_to_string.h"

namespace Morquil {

namespace {

std::atomic<long> headers{0};

}  // namespace

long Testing::SerialisationCount() {
    return headers;
}

void MessageToString::SendFormatted(const char* format, ...) {
    if (std::string_view(format) == "%s:\n") {
        ++headers;  // once per message
    }
    std::va_list arguments;
    va_start(arguments, format);
    text_.AppendPiece(format, arguments);
    va_end(arguments);
}

}  // namespace Morquil
