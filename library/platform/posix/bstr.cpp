#include "MorquilCom.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

using LengthPrefix = std::uint32_t;
static_assert(sizeof(std::size_t) > sizeof(LengthPrefix), "prefix, text and terminator add up without overflow");

constexpr UINT longestText = (std::numeric_limits<LengthPrefix>::max() - sizeof(OLECHAR)) / sizeof(OLECHAR);

}  // namespace

extern "C" {

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    if (length > longestText) {
        return nullptr;
    }
    const std::size_t bytes = std::size_t{length} * sizeof(OLECHAR);
    auto* const block = static_cast<unsigned char*>(std::malloc(sizeof(LengthPrefix) + bytes + sizeof(OLECHAR)));
    if (block == nullptr) {
        return nullptr;
    }
    const auto prefix = static_cast<LengthPrefix>(bytes);
    std::memcpy(block, &prefix, sizeof prefix);
    unsigned char* const units = block + sizeof prefix;
    if (text != nullptr && bytes != 0) {
        std::memcpy(units, text, bytes);
    }
    std::memset(units + bytes, 0, sizeof(OLECHAR));
    return reinterpret_cast<BSTR>(units);
}

BSTR SysAllocString(const OLECHAR* text) {
    if (text == nullptr) {
        return nullptr;
    }
    std::size_t length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return length > longestText ? nullptr : SysAllocStringLen(text, static_cast<UINT>(length));
}

UINT SysStringLen(BSTR text) {
    if (text == nullptr) {
        return 0;
    }
    LengthPrefix bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<unsigned char*>(text) - sizeof bytes, sizeof bytes);
    return static_cast<UINT>(bytes / sizeof(OLECHAR));
}

void SysFreeString(BSTR text) {
    if (text != nullptr) {
        std::free(reinterpret_cast<unsigned char*>(text) - sizeof(LengthPrefix));
    }
}

}  // extern "C"
