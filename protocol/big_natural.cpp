#include "protocol/big_natural.h"

#include <algorithm>
#include <bit>

namespace Morquil {

BigNatural::BigNatural(std::uint32_t value) : BigNatural(value, 0) {}

BigNatural::BigNatural(std::uint64_t value, std::size_t exponent) {
    Push(static_cast<std::uint32_t>(value));
    Push(static_cast<std::uint32_t>(value >> limbBits));
    DropLeadingZeros();
    ShiftLeft(exponent);
}

std::size_t BigNatural::Bits() const {
    return IsZero() ? 0 : (size_ - 1) * limbBits + static_cast<std::size_t>(std::bit_width(limbs_[size_ - 1]));
}

int BigNatural::Compare(const BigNatural& other) const {
    if (size_ != other.size_) {
        return size_ < other.size_ ? -1 : 1;
    }
    for (std::size_t at = size_; at-- > 0;) {
        if (limbs_[at] != other.limbs_[at]) {
            return limbs_[at] < other.limbs_[at] ? -1 : 1;
        }
    }
    return 0;
}

void BigNatural::MultiplyAndAdd(std::uint32_t factor, std::uint32_t summand) {
    std::uint64_t carry = summand;
    for (std::size_t at = 0; at < size_; ++at) {
        carry += std::uint64_t{limbs_[at]} * factor;
        limbs_[at] = static_cast<std::uint32_t>(carry);
        carry >>= limbBits;
    }
    if (carry != 0) {
        Push(static_cast<std::uint32_t>(carry));
    }
}

void BigNatural::MultiplyByPowerOfFive(std::size_t exponent) {
    constexpr std::size_t step = 13;
    constexpr std::uint32_t largestPower = 1220703125;  // 5 to the power of `step`
    for (; exponent >= step; exponent -= step) {
        MultiplyAndAdd(largestPower, 0);
    }
    for (; exponent > 0; --exponent) {
        MultiplyAndAdd(5, 0);
    }
}

void BigNatural::ShiftLeft(std::size_t bits) {
    if (IsZero()) {
        return;
    }
    const std::size_t limbs = bits / limbBits;
    if (limbs > 0) {
        std::copy_backward(limbs_.begin(), limbs_.begin() + size_, limbs_.begin() + size_ + limbs);
        std::fill_n(limbs_.begin(), limbs, 0U);
        size_ += limbs;
    }
    if (bits % limbBits > 0) {
        MultiplyAndAdd(std::uint32_t{1} << bits % limbBits, 0);
    }
}

void BigNatural::Subtract(const BigNatural& other) {
    std::uint32_t borrow = 0;
    for (std::size_t at = 0; at < size_; ++at) {
        const std::uint64_t taken = std::uint64_t{at < other.size_ ? other.limbs_[at] : 0} + borrow;
        borrow = limbs_[at] < taken ? 1 : 0;
        limbs_[at] -= static_cast<std::uint32_t>(taken);
    }
    DropLeadingZeros();
}

std::uint32_t BigNatural::DivideBy(std::uint32_t divisor) {
    std::uint64_t remainder = 0;
    for (std::size_t at = size_; at-- > 0;) {
        remainder = remainder << limbBits | limbs_[at];
        limbs_[at] = static_cast<std::uint32_t>(remainder / divisor);
        remainder %= divisor;
    }
    DropLeadingZeros();
    return static_cast<std::uint32_t>(remainder);
}

void BigNatural::Push(std::uint32_t limb) {
    limbs_[size_] = limb;
    ++size_;
}

void BigNatural::DropLeadingZeros() {
    while (size_ > 0 && limbs_[size_ - 1] == 0) {
        --size_;
    }
}

}  // namespace Morquil
