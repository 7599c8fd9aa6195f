// Natural numbers as large as the exact decimal form of a double needs them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Morquil {

/// A natural number of at most `mostBits` bits; the caller sees to it that no operation makes more of it. In fixed
/// memory, because nothing that reads or writes a value allocates.
class BigNatural {
public:
    /// 768 digits decide between any two doubles; one more stands for all that follow. Their divisor, or the shift that
    /// makes up for it, is at most 5 to the power of 1100.
    static constexpr std::size_t mostBits = 3072;

    explicit BigNatural(std::uint32_t value = 0);
    /// `value` times 2 to the power of `exponent`.
    BigNatural(std::uint64_t value, std::size_t exponent);

    bool IsZero() const { return size_ == 0; }
    /// The number of binary digits; 0 for zero.
    std::size_t Bits() const;
    /// Negative, zero or positive, as this is less than, equal to or more than the other.
    int Compare(const BigNatural& other) const;

    void MultiplyAndAdd(std::uint32_t factor, std::uint32_t summand);
    void MultiplyByPowerOfFive(std::size_t exponent);
    void ShiftLeft(std::size_t bits);
    /// Takes away `other`, which is not larger.
    void Subtract(const BigNatural& other);
    /// Divides by `divisor` and returns the remainder.
    std::uint32_t DivideBy(std::uint32_t divisor);

private:
    static constexpr std::size_t limbBits = 32;

    void Push(std::uint32_t limb);
    void DropLeadingZeros();

    /// The lowest limb first; the last one in use is not zero.
    std::array<std::uint32_t, mostBits / limbBits> limbs_;
    std::size_t size_ = 0;
};

}  // namespace Morquil
