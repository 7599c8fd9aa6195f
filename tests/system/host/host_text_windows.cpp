#include "tests/system/host/host_text.h"

#include <windows.h>

// windows.h comes first.
#include <oleauto.h>

namespace Morquil::Testing {
namespace {

BSTR System(char16_t* text) {
    return reinterpret_cast<BSTR>(text);
}

}  // namespace

HostText::HostText(std::u16string_view text)
    : text_(reinterpret_cast<char16_t*>(
          SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size())))) {}

HostText::~HostText() {
    SysFreeString(System(text_));
}

char16_t** HostText::Out() {
    SysFreeString(System(text_));
    text_ = nullptr;
    return &text_;
}

std::u16string HostText::Text() const {
    return text_ != nullptr ? std::u16string(text_, SysStringLen(System(text_))) : std::u16string();
}

}  // namespace Morquil::Testing
