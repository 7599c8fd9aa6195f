#pragma once

#include <string>
#include <string_view>

namespace Morquil::Testing {

/// More text than a pipe holds, for example.
inline std::string Repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

}  // namespace Morquil::Testing
