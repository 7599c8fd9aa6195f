#include "tests/system/host/host.h"
#include "tests/system/host/host_text.h"

namespace Morquil::Testing {
namespace {

// The functions that the library exports for its hosts.
char16_t* Allocate(const char16_t* text, std::size_t length) {
    static const auto allocate = Library().Find<char16_t*(const char16_t*, unsigned)>("SysAllocStringLen");
    return allocate(text, static_cast<unsigned>(length));
}

void Free(char16_t* text) {
    static const auto release = Library().Find<void(char16_t*)>("SysFreeString");
    release(text);
}

unsigned LengthOf(char16_t* text) {
    static const auto lengthOf = Library().Find<unsigned(char16_t*)>("SysStringLen");
    return lengthOf(text);
}

}  // namespace

HostText::HostText(std::u16string_view text) : text_(Allocate(text.data(), text.size())) {}

HostText::~HostText() {
    Free(text_);
}

char16_t** HostText::Out() {
    Free(text_);
    text_ = nullptr;
    return &text_;
}

std::u16string HostText::Text() const {
    return text_ != nullptr ? std::u16string(text_, LengthOf(text_)) : std::u16string();
}

}  // namespace Morquil::Testing
