#include "command/text/escape.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "morquil.hpp"

namespace Morquil::Command {
namespace {

struct Span {
    char32_t first;
    char32_t last;
};

// C0, DEL and C1; line and paragraph separators; direction marks, embeddings, overrides and isolates; invisible
// fillers.
constexpr std::array<Span, 7> hidden = {{
    {0x00, 0x1f},
    {0x7f, 0x9f},
    {0x61c, 0x61c},
    {0x200b, 0x200f},
    {0x2028, 0x202e},
    {0x2066, 0x2069},
    {0xfeff, 0xfeff},
}};

bool IsHidden(char32_t code) {
    return std::any_of(hidden.begin(), hidden.end(),
                       [code](const Span& span) { return span.first <= code && code <= span.last; });
}

std::string EscapeOf(char32_t code) {
    std::array<char, 12> text{};
    std::snprintf(text.data(), text.size(), code < 0x100 ? "\\x%02x" : "\\u%04x", static_cast<unsigned>(code));
    return text.data();
}

bool BeginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0U) != 0x80;
}

}  // namespace

std::string Escaped(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const std::string_view rest = text;
        const char32_t code = morquil::detail::TakeCodePoint(text);
        const std::string_view bytes = rest.substr(0, rest.size() - text.size());
        if (code == morquil::detail::replacement && bytes.size() == 1) {
            shown += EscapeOf(static_cast<unsigned char>(bytes.front()));
        } else if (IsHidden(code)) {
            shown += EscapeOf(code);
        } else {
            shown += bytes;
        }
    }
    return shown;
}

std::size_t WidthOf(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), &BeginsCharacter));
}

std::string Beginning(std::string_view text, std::size_t width) {
    std::size_t left = width;
    std::size_t end = 0;
    while (end < text.size() && (left > 0 || !BeginsCharacter(text[end]))) {
        left -= BeginsCharacter(text[end]) ? 1U : 0U;
        ++end;
    }
    return std::string(text.substr(0, end));
}

}  // namespace Morquil::Command
