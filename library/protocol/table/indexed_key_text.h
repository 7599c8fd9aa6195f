#pragma once

#include <cstddef>
#include <string_view>

namespace Morquil {

/// The text of an indexed key: the stem and a decimal index.
class IndexedKeyText {
public:
    IndexedKeyText(std::string_view stem, std::size_t index);
    const char* CString() const { return text_; }

private:
    char text_[48];
};

}  // namespace Morquil
