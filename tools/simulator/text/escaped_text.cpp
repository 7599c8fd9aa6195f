#include "simulator/text/escaped_text.h"

#include <array>
#include <cstddef>

namespace Morquil::Simulator {

namespace {

struct Escape {
    char byte;
    char letter;
};
constexpr std::array<Escape, 5> escapes{
    {{'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {'"', '"'}, {'\\', '\\'}},
};
// Other bytes are written in octal. An octal escape has at most three digits, so a digit may follow it.
constexpr std::size_t octalDigits = 3;

void AppendEscaped(std::string& text, char byte) {
    for (const Escape& escape : escapes) {
        if (escape.byte == byte) {
            text += {'\\', escape.letter};
            return;
        }
    }
    if (byte >= ' ' && byte <= '~') {
        text += byte;
        return;
    }
    const auto number = static_cast<unsigned char>(byte);
    text += {'\\', static_cast<char>('0' + number / 64), static_cast<char>('0' + number / 8 % 8),
             static_cast<char>('0' + number % 8)};
}

std::optional<char> OctalByte(std::string_view digits) {
    int number = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '7') {
            return std::nullopt;
        }
        number = number * 8 + (digit - '0');
    }
    const bool isByte = digits.size() == octalDigits && number < 256;
    return isByte ? std::optional(static_cast<char>(static_cast<unsigned char>(number))) : std::nullopt;
}

/// Removes what follows a backslash from `rest`, and returns the character.
std::optional<char> TakeEscape(std::string_view& rest) {
    for (const Escape& escape : escapes) {
        if (rest.starts_with(escape.letter)) {
            rest.remove_prefix(1);
            return escape.byte;
        }
    }
    const std::optional<char> byte = OctalByte(rest.substr(0, octalDigits));
    if (byte) {
        rest.remove_prefix(octalDigits);
    }
    return byte;
}

}  // namespace

std::string Escaped(std::string_view bytes) {
    std::string text = "\"";
    for (const char byte : bytes) {
        AppendEscaped(text, byte);
    }
    return text + "\"";
}

std::optional<std::string> Unescaped(std::string_view quoted) {
    if (quoted.size() < 2 || !quoted.starts_with('"') || !quoted.ends_with('"')) {
        return std::nullopt;
    }
    std::string bytes;
    for (std::string_view rest = quoted.substr(1, quoted.size() - 2); !rest.empty();) {
        const char first = rest.front();
        rest.remove_prefix(1);
        const std::optional<char> byte = first == '\\' ? TakeEscape(rest) : std::optional(first);
        if (!byte || first == '"') {
            return std::nullopt;
        }
        bytes += *byte;
    }
    return bytes;
}

}  // namespace Morquil::Simulator
