#include "platform/text.h"

#include <algorithm>
#include <limits>

#include "platform/utf8.h"

namespace Morquil {
namespace {

using Utf16View = std::basic_string_view<OLECHAR>;

constexpr char32_t replacement = 0xFFFD;

constexpr bool IsLead(OLECHAR unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsTrail(OLECHAR unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

Utf16View View(BSTR text) {
    return text == nullptr ? Utf16View{} : Utf16View{text, SysStringLen(text)};
}

// Takes one character from the front of `text`, which must not be empty.
char32_t TakeCharacter(Utf16View& text) {
    const OLECHAR unit = text.front();
    text.remove_prefix(1);
    if (!IsLead(unit) && !IsTrail(unit)) {
        return unit;
    }
    if (IsTrail(unit) || text.empty() || !IsTrail(text.front())) {
        return replacement;
    }
    const OLECHAR trail = text.front();
    text.remove_prefix(1);
    return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (static_cast<char32_t>(trail) - 0xDC00);
}

constexpr std::size_t Utf8Size(char32_t character) {
    return character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
}

std::size_t Utf8Length(Utf16View text) {
    std::size_t length = 0;
    while (!text.empty()) {
        length += Utf8Size(TakeCharacter(text));
    }
    return length;
}

void Append(std::string& text, char32_t character) {
    const std::size_t size = Utf8Size(character);
    if (size == 1) {
        text.push_back(static_cast<char>(character));
        return;
    }
    constexpr unsigned char firstMarks[] = {0, 0, 0xC0, 0xE0, 0xF0};
    std::size_t shift = 6 * (size - 1);
    text.push_back(static_cast<char>(firstMarks[size] | (character >> shift)));
    while (shift != 0) {
        shift -= 6;
        text.push_back(static_cast<char>(0x80 | ((character >> shift) & 0x3F)));
    }
}

std::string ToUtf8(Utf16View text) {
    std::string result;
    result.reserve(Utf8Length(text));
    while (!text.empty()) {
        Append(result, TakeCharacter(text));
    }
    return result;
}

// Takes one character, or the malformed bytes that one U+FFFD replaces, from the front of `text`.
char32_t TakeCharacter(std::string_view& text) {
    const Utf8Character character = FirstUtf8Character(text);
    text.remove_prefix(character.size);
    return character.code;
}

std::size_t Utf16Length(std::string_view text) {
    std::size_t length = 0;
    while (!text.empty()) {
        length += TakeCharacter(text) < 0x10000 ? 1U : 2U;
    }
    return length;
}

// How many units to cut from a text of `length` bytes that does not fit into `limit`. Never more than necessary, since
// a unit is at most three bytes.
std::size_t UnitsToCut(std::size_t length, std::size_t limit) {
    const std::size_t excess = length > limit ? length - limit - 1 : 0;
    return std::max<std::size_t>(excess / 4, 1);
}

// The first `length` units, or one fewer if the cut would split a surrogate pair.
Utf16View CutTo(Utf16View text, std::size_t length) {
    const bool halvesPair = length > 0 && IsLead(text[length - 1]) && IsTrail(text[length]);
    return text.substr(0, halvesPair ? length - 1 : length);
}

}  // namespace

std::string Utf8FromBstr(BSTR text) {
    return ToUtf8(View(text));
}

BSTR BstrFromUtf8(std::string_view text) noexcept {
    const std::size_t length = Utf16Length(text);
    if (length > std::numeric_limits<UINT>::max()) {
        return nullptr;
    }
    OLECHAR* const result = SysAllocStringLen(nullptr, static_cast<UINT>(length));
    if (result == nullptr) {
        return nullptr;
    }
    OLECHAR* unit = result;
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        if (character < 0x10000) {
            *unit++ = static_cast<OLECHAR>(character);
        } else {
            *unit++ = static_cast<OLECHAR>(0xD800 + ((character - 0x10000) >> 10));
            *unit++ = static_cast<OLECHAR>(0xDC00 + ((character - 0x10000) & 0x3FF));
        }
    }
    return result;
}

std::string ShortenedUtf8(BSTR text, std::size_t limit) {
    Utf16View rest = View(text);
    for (std::size_t length = Utf8Length(rest); length >= limit && !rest.empty(); length = Utf8Length(rest)) {
        rest = CutTo(rest, rest.size() - UnitsToCut(length, limit));
    }
    return ToUtf8(rest);
}

}  // namespace Morquil
