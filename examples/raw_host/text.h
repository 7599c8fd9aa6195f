#pragma once

#include <string>

#include "MorquilAPI.h"

/// Text on its way into or out of the library, which speaks UTF-16 in BSTRs; freed when the owner goes. This host
/// reads and prints ASCII, and shows a question mark for everything else.
class Text {
public:
    Text() = default;
    explicit Text(const std::string& ascii);
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }

    BSTR Get() const { return text_; }
    /// Where a method may put a text that it hands out.
    BSTR* Receive() { return &text_; }
    std::string ToAscii() const;

private:
    BSTR text_ = nullptr;
};
