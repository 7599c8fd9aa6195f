#pragma once

#include <string>

namespace Morquil::Testing {

/// The text that `FormatText` makes, of up to 511 characters; expects its result to be the text's length.
[[gnu::format(printf, 1, 2)]] std::string Formatted(const char* format, ...);

}  // namespace Morquil::Testing
