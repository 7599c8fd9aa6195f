#include "protocol/decimal_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "protocol/ascii.h"
#include "protocol/big_natural.h"

namespace Morquil {

namespace {

/// The digits of a number and its exponent: all digits together, times ten to the power of `exponent`.
struct Decimal {
    /// Digits with at most one point between them, which does not count.
    std::string_view text;
    /// The number that the digits are, while there are no more than `heldDigits`.
    std::uint64_t head = 0;
    std::int64_t digits = 0;
    std::int64_t exponent = 0;
};

constexpr std::int64_t heldDigits = 19;

// What lies beyond these places of the first digit before the point is beyond every double.
constexpr std::int64_t mostPlaces = std::numeric_limits<double>::max_exponent10 + 1;
constexpr std::int64_t leastPlaces =
    std::numeric_limits<double>::min_exponent10 - std::numeric_limits<double>::digits10 - 2;

/// Appends the digits that stand at `at` to the number, and returns where they end.
std::size_t ReadDigits(std::string_view text, std::size_t at, std::uint64_t& number) {
    for (; at < text.size() && IsDigit(text[at]); ++at) {
        number = number * 10 + static_cast<std::uint64_t>(text[at] - '0');
    }
    return at;
}

/// Takes digits and at most one point. Returns false when there is no digit.
bool TakeMantissa(std::string_view& text, Decimal& decimal) {
    std::size_t end = ReadDigits(text, 0, decimal.head);
    std::size_t points = 0;
    if (end < text.size() && text[end] == '.') {
        const std::size_t fraction = end + 1;
        end = ReadDigits(text, fraction, decimal.head);
        decimal.exponent = -static_cast<std::int64_t>(end - fraction);
        points = 1;
    }
    decimal.text = {text.data(), end};
    decimal.digits = static_cast<std::int64_t>(end - points);
    text.remove_prefix(end);
    return decimal.digits > 0;
}

/// Takes the exponent, if there is a mark for one. Returns false when the mark stands alone.
bool TakeExponent(std::string_view& text, Decimal& decimal) {
    if (text.empty() || FoldCase(text.front()) != 'e') {
        return true;
    }
    text.remove_prefix(1);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const std::size_t before = text.size();
    constexpr std::int64_t beyondEveryText = 1'000'000'000'000'000;
    std::int64_t exponent = 0;
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
        exponent = std::min(exponent * 10 + (text.front() - '0'), beyondEveryText);
    }
    decimal.exponent += negative ? -exponent : exponent;
    return text.size() != before;
}

/// Every one of these is a double itself.
constexpr auto powersOfTen = [] {
    std::array<double, 23> powers{1};
    for (std::size_t exponent = 1; exponent < powers.size(); ++exponent) {
        powers[exponent] = powers[exponent - 1] * 10;
    }
    return powers;
}();

/// Where both the digits and the power of ten are doubles, one operation rounds correctly.
bool TryOneOperation(const Decimal& decimal, double& value) {
    static_assert(FLT_EVAL_METHOD == 0, "operations round to double once");
    constexpr auto largestPower = static_cast<std::int64_t>(powersOfTen.size()) - 1;
    constexpr std::uint64_t largestHead = std::uint64_t{1} << DBL_MANT_DIG;
    if (decimal.digits > heldDigits || decimal.head > largestHead || decimal.exponent < -largestPower ||
        decimal.exponent > largestPower) {
        return false;
    }
    const auto head = static_cast<double>(decimal.head);
    value = decimal.exponent < 0 ? head / powersOfTen[static_cast<std::size_t>(-decimal.exponent)]
                                 : head * powersOfTen[static_cast<std::size_t>(decimal.exponent)];
    return true;
}

/// All digits that can make a difference. After the exact middle between two doubles any further digit, however small
/// and far away, does: a 1 stands for all that are left out, unless all of them are zeros.
BigNatural ToNatural(Decimal& decimal) {
    constexpr std::int64_t digitsThatDiffer = 768;
    BigNatural natural;
    std::int64_t taken = 0;
    std::string_view rest = decimal.text;
    for (; !rest.empty() && taken < digitsThatDiffer; rest.remove_prefix(1)) {
        if (rest.front() != '.') {
            natural.MultiplyAndAdd(10, static_cast<std::uint32_t>(rest.front() - '0'));
            ++taken;
        }
    }
    if (rest.find_first_not_of(".0") != std::string_view::npos) {
        natural.MultiplyAndAdd(10, 1);
        ++taken;
    }
    decimal.exponent += decimal.digits - taken;
    return natural;
}

/// `numerator` divided by `denominator`, times 2 to the power of `exponent`.
struct Ratio {
    BigNatural numerator;
    BigNatural denominator{1};
    std::int64_t exponent = 0;
};

Ratio ToRatio(Decimal decimal) {
    Ratio ratio;
    ratio.numerator = ToNatural(decimal);
    const auto power = static_cast<std::size_t>(decimal.exponent < 0 ? -decimal.exponent : decimal.exponent);
    (decimal.exponent < 0 ? ratio.denominator : ratio.numerator).MultiplyByPowerOfFive(power);
    ratio.exponent = decimal.exponent;
    return ratio;
}

/// Makes the numerator at least as large as the denominator and less than twice as large.
void Normalise(Ratio& ratio) {
    const auto numeratorBits = static_cast<std::int64_t>(ratio.numerator.Bits());
    const std::int64_t surplus = numeratorBits - static_cast<std::int64_t>(ratio.denominator.Bits());
    (surplus < 0 ? ratio.numerator : ratio.denominator)
        .ShiftLeft(static_cast<std::size_t>(surplus < 0 ? -surplus : surplus));
    ratio.exponent += surplus;
    if (ratio.numerator.Compare(ratio.denominator) < 0) {
        ratio.numerator.ShiftLeft(1);
        --ratio.exponent;
    }
}

/// The first `bits` binary digits of a normalised ratio, correctly rounded.
std::uint64_t RoundedQuotient(Ratio& ratio, std::int64_t bits) {
    std::uint64_t quotient = 0;
    for (; bits > 0; --bits) {
        quotient <<= 1;
        if (ratio.numerator.Compare(ratio.denominator) >= 0) {
            ratio.numerator.Subtract(ratio.denominator);
            quotient |= 1;
        }
        ratio.numerator.ShiftLeft(1);
    }
    const int rest = ratio.numerator.Compare(ratio.denominator);  // what is left, doubled: this compares with a half
    return rest > 0 || (rest == 0 && quotient % 2 == 1) ? quotient + 1 : quotient;
}

double ToDouble(Ratio ratio) {
    constexpr std::int64_t leastExponent = DBL_MIN_EXP - DBL_MANT_DIG;
    Normalise(ratio);
    if (ratio.exponent >= DBL_MAX_EXP) {
        return std::numeric_limits<double>::infinity();
    }
    const std::int64_t lowest = std::max(ratio.exponent - (DBL_MANT_DIG - 1), leastExponent);
    const std::int64_t bits = ratio.exponent + 1 - lowest;
    const std::uint64_t significand = bits < 0 ? 0 : RoundedQuotient(ratio, bits);
    // The highest bit of the significand, where it is set, counts the exponent up, and so does rounding up to the next
    // power of two.
    return std::bit_cast<double>((static_cast<std::uint64_t>(lowest - leastExponent) << (DBL_MANT_DIG - 1)) +
                                 significand);
}

void DropLeadingZeros(Decimal& decimal) {
    const std::size_t first = std::min(decimal.text.find_first_not_of("0."), decimal.text.size());
    const bool isBehindPoint = std::string_view(decimal.text.data(), first).find('.') != std::string_view::npos;
    decimal.digits -= static_cast<std::int64_t>(first) - (isBehindPoint ? 1 : 0);
    decimal.text.remove_prefix(first);
}

double ToDouble(Decimal decimal) {
    DropLeadingZeros(decimal);
    const std::int64_t places = decimal.digits + decimal.exponent;
    if (decimal.digits == 0 || places < leastPlaces) {
        return 0;
    }
    return places > mostPlaces ? std::numeric_limits<double>::infinity() : ToDouble(ToRatio(decimal));
}

}  // namespace

bool TakeDecimal(std::string_view& text, double& value) {
    Decimal decimal;
    if (!TakeMantissa(text, decimal) || !TakeExponent(text, decimal)) {
        return false;
    }
    if (TryOneOperation(decimal, value)) {
        return true;
    }
    const double nearest = ToDouble(decimal);
    if (nearest == std::numeric_limits<double>::infinity()) {
        return false;
    }
    value = nearest;
    return true;
}

}  // namespace Morquil
