// Every value parser compared with the standard library's: the same success, the same value.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>

#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "protocol/text/ascii.h"
#include "protocol/text/value_reader.h"

namespace Morquil::Fuzz {
namespace {

/// One for all inputs: making a stream takes longer than reading from it.
std::istream& StreamOver(std::string_view text) {
    static std::istringstream stream = [] {
        std::istringstream classic;
        classic.imbue(std::locale::classic());
        classic >> std::boolalpha;
        return classic;
    }();
    stream.clear();
    stream.str(std::string(text));
    return stream;
}

template <class T>
bool IsSame(const T& left, const T& right) {
    return left == right;
}
bool IsSame(double left, double right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

/// Both read one value, and continue after it with the next.
template <class T>
void ReadBoth(ValueReader& reader, std::istream& stream) {
    T fromReader{};
    T fromStream{};
    const bool read = reader.Read(fromReader);
    Require(read == !(stream >> fromStream).fail(), "a value is read exactly where a stream reads one");
    Require(!read || IsSame(fromReader, fromStream), "a value is the one that a stream reads");
    Require(read || IsSame(fromReader, T{}), "a failure leaves the value alone");
}

/// Four values; two bits of `kinds` select the kind of each. A range is two values of the same kind.
void TrySequence(std::string_view text, unsigned kinds) {
    ValueReader reader(text);
    std::istream& stream = StreamOver(text);
    for (unsigned turn = 0; turn < 4; ++turn) {
        switch (kinds >> (2 * turn) & 3) {
            case 0:
                ReadBoth<std::int32_t>(reader, stream);
                break;
            case 1:
                ReadBoth<std::uint32_t>(reader, stream);
                break;
            case 2:
                ReadBoth<double>(reader, stream);
                break;
            default:
                ReadBoth<bool>(reader, stream);
                break;
        }
    }
}

void TryWords(std::string_view text) {
    ValueReader reader(text);
    std::istream& stream = StreamOver(text);
    std::string_view word;
    std::string fromStream;
    bool read = true;
    while (read) {
        read = reader.ReadWord(word);
        Require(read == !(stream >> fromStream).fail(), "a word is read exactly where a stream reads one");
        Require(!read || word == fromStream, "a word is the one that a stream reads");
    }
}

void TryTimecode(std::string_view text) {
    constexpr std::uint32_t untouched = 0xFFFFFFFF;
    std::uint32_t digits = untouched;
    std::string expected;
    bool isTimecode = text.size() >= 11;
    for (const std::size_t position : {0U, 1U, 3U, 4U, 6U, 7U, 9U, 10U}) {
        isTimecode = isTimecode && std::string_view("0123456789").find(text[position]) != std::string_view::npos;
        expected += isTimecode ? text[position] : '0';
    }
    Require(ParseTimecode(text, digits) == isTimecode, "a timecode is eight digits in their places");
    Require(digits == (isTimecode ? std::stoul(expected, nullptr, 16) : untouched), "a timecode is packed digits");
}

/// The length of the longest run of characters from `allowed`. What scanf reads from longer numbers is undefined.
std::size_t LongestRun(std::string_view text, std::string_view allowed) {
    std::size_t longest = 0;
    std::size_t run = 0;
    for (const char character : text) {
        run = allowed.find(character) != std::string_view::npos ? run + 1 : 0;
        longest = run > longest ? run : longest;
    }
    return longest;
}

void TryVersionPair(const std::string& text) {
    int expected[2] = {};
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    const bool isPair = std::sscanf(text.c_str(), "%d.%d", &expected[0], &expected[1]) == 2;
    Require(ParseVersionPair(text, first, second) == isPair, "a version is read exactly where scanf reads one");
    if (isPair && LongestRun(text, "0123456789") < std::numeric_limits<std::int64_t>::digits10) {
        Require(first == static_cast<std::uint32_t>(expected[0]), "a version's first number is scanf's");
        Require(second == static_cast<std::uint32_t>(expected[1]), "a version's second number is scanf's");
    }
}

void TryHexVersion(const std::string& text) {
    unsigned expected = 0;
    std::sscanf(text.c_str(), "0x%x", &expected);
    if (LongestRun(text, "0123456789abcdefABCDEF") <= 8) {
        Require(ParseHexVersion(text) == expected, "a hexadecimal version is the one that scanf reads");
    }
}

}  // namespace
}  // namespace Morquil::Fuzz

/// The first byte selects the kinds of a sequence of values; the rest is the text that they are read from.
int TestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace Morquil::Fuzz;
    if (size == 0) {
        return 0;
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    TrySequence(text, bytes[0]);
    TryWords(text);
    TryTimecode(text);
    const std::string upToZero(Morquil::UpToZero(text));
    TryVersionPair(upToZero);
    TryHexVersion(upToZero);
    return 0;
}
