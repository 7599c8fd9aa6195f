#pragma once

#include <string>
#include <string_view>

namespace Morquil::Testing {

/// A text as interfaces accept and return it.
class HostText {
public:
    HostText() = default;
    explicit HostText(std::u16string_view text);
    /// From plain ASCII.
    explicit HostText(std::string_view text) : HostText(std::u16string(text.begin(), text.end())) {}
    HostText(const HostText&) = delete;
    HostText& operator=(const HostText&) = delete;
    ~HostText();

    char16_t* Get() const { return text_; }
    /// Where a method stores a new text, replacing the current one.
    char16_t** Out();
    std::u16string Text() const;

private:
    char16_t* text_ = nullptr;
};

}  // namespace Morquil::Testing
