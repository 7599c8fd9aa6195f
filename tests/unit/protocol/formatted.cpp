#include "tests/unit/protocol/formatted.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdarg>
#include <cstddef>
#include <string_view>

#include "protocol/text/format_text.h"

namespace Morquil::Testing {

std::string Formatted(const char* format, ...) {
    std::array<char, 512> text{};
    std::va_list arguments;
    va_start(arguments, format);
    const int length = FormatText(text.data(), text.size(), format, arguments);
    va_end(arguments);
    EXPECT_EQ(static_cast<std::size_t>(length), std::string_view(text.data()).size());
    return text.data();
}

}  // namespace Morquil::Testing
