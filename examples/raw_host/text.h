#pragma once

#include <string>

#include "MorquilAPI.h"

/// Text passed to or returned by the library, which uses UTF-16 in BSTRs; freed when the owner is destroyed. This host
/// reads and prints ASCII, and shows a question mark for everything else.
class Text {
public:
    Text() = default;
    explicit Text(const std::string& ascii);
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }

    BSTR Get() const { return text_; }
    /// Where a method may store a text that it returns.
    BSTR* Receive() { return &text_; }
    std::string ToAscii() const;

private:
    BSTR text_ = nullptr;
};
