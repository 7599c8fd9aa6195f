#include "text.h"

Text::Text(const std::string& ascii) {
    const std::basic_string<OLECHAR> wide(ascii.begin(), ascii.end());
    text_ = SysAllocString(wide.c_str());
}

std::string Text::ToAscii() const {
    std::string ascii;
    for (UINT unit = 0; unit < SysStringLen(text_); ++unit) {
        ascii += text_[unit] < 0x80 ? static_cast<char>(text_[unit]) : '?';
    }
    return ascii;
}
