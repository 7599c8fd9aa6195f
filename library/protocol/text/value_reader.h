// Reads the text of protocol values.
#pragma once

#include <cstdint>
#include <string_view>

namespace Morquil {

/// Reads numbers, words and truth values one after the other, as an input string stream in the classic locale with
/// alphabetic booleans would: leading white space is skipped, reading stops at the first character that cannot belong
/// to the value, overflow fails, an unsigned "-1" is 4294967295, "nan" and "inf" are not numbers.
/// Uses no stream or locale and allocates no memory; `text` must outlive the reader.
/// Every operation returns whether a value was read. If not, the value is unchanged and every later read fails too.
class ValueReader {
public:
    explicit constexpr ValueReader(std::string_view text) : rest_(text) {}

    bool Read(std::int32_t& value);
    bool Read(std::uint32_t& value);
    bool Read(double& value);
    bool Read(bool& value);

    /// The next run of characters that are not white space; refers into the text.
    bool ReadWord(std::string_view& word);

private:
    bool Fail();

    std::string_view rest_;
};

/// Reads HH?MM?SS?FF, with any separators, into four bytes of packed decimal digits, hours in the top byte. What
/// follows the eleven characters is ignored. Returns false, and leaves `bcd` unchanged, when a character is missing or
/// not a digit.
bool ParseTimecode(std::string_view text, std::uint32_t& bcd);

/// Reads what sscanf reads as "%d.%d". Negative numbers are stored as their 32-bit patterns; only the lower 32 bits of
/// larger numbers are kept. Returns false, and leaves both unchanged, unless both can be read.
bool ParseVersionPair(std::string_view text, std::uint32_t& first, std::uint32_t& second);

/// Reads what sscanf reads as "0x%x". Returns 0 for a malformed text and for a number of more than 32 bits.
std::uint32_t ParseHexVersion(std::string_view text);

}  // namespace Morquil
