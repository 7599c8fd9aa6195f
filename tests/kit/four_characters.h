#pragma once

#include <cstdint>

namespace Morquil::Testing {

/// The four characters of a code as a number, the first in the most significant byte.
constexpr std::int32_t FourCharacters(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int index = 0; index < 4; ++index) {
        code = code << 8 | static_cast<unsigned char>(text[index]);
    }
    return static_cast<std::int32_t>(code);
}

}  // namespace Morquil::Testing
