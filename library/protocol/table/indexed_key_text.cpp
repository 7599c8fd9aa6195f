#include "protocol/table/indexed_key_text.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace Morquil {

IndexedKeyText::IndexedKeyText(std::string_view stem, std::size_t index) {
    constexpr std::size_t roomForIndex = 21;  // including the terminator
    char* const digits = std::copy_n(stem.data(), std::min(stem.size(), sizeof text_ - roomForIndex), text_);
    *std::to_chars(digits, std::end(text_) - 1, index).ptr = '\0';
}

}  // namespace Morquil
