#include "protocol/indexed_key_text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "protocol/number_text.h"

namespace Morquil {

IndexedKeyText::IndexedKeyText(std::string_view stem, std::size_t index) {
    const std::size_t length = std::min(stem.size(), sizeof text_ - longestIntegerText - 1);
    std::memcpy(text_, stem.data(), length);
    *WriteUnsigned(text_ + length, static_cast<std::uint32_t>(index)) = '\0';
}

}  // namespace Morquil
