// A BSTR of a test, freed at the end of its scope.
#pragma once

#include <string>
#include <string_view>

#include "MorquilAPI.h"

namespace Morquil::Testing {

using Utf16 = std::basic_string<OLECHAR>;

class OwnedBstr {
public:
    explicit OwnedBstr(BSTR text) : text_(text) {}
    explicit OwnedBstr(std::basic_string_view<OLECHAR> text)
        : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    OwnedBstr(const OwnedBstr&) = delete;
    OwnedBstr& operator=(const OwnedBstr&) = delete;
    ~OwnedBstr() { SysFreeString(text_); }

    BSTR Get() const { return text_; }
    Utf16 Units() const { return text_ == nullptr ? Utf16{} : Utf16(text_, SysStringLen(text_)); }

private:
    BSTR text_;
};

}  // namespace Morquil::Testing
