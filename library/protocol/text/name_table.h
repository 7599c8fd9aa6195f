// A constant list of names (block headers, keys, vocabulary words) that is searched with a perfect hash.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "protocol/text/ascii.h"

namespace Morquil {

/// At most eight characters as a number.
template <std::size_t count>
constexpr std::uint64_t Characters(const char* text) {
    std::array<char, 8> characters{};
    std::copy_n(text, count, characters.begin());
    return std::bit_cast<std::uint64_t>(characters);
}

/// What distinguishes names: the length, the first eight characters and the last sixteen. That is all of most names.
/// Characters are read eight at a time, because name lookup is the most frequent operation on received text.
struct NameEnds {
    std::uint64_t first = 0;
    std::uint64_t inner = 0;
    std::uint64_t last = 0;
    std::size_t size = 0;

    static constexpr std::size_t covered = 24;

    constexpr NameEnds() = default;
    [[gnu::always_inline]] constexpr explicit NameEnds(std::string_view name) : size(name.size()) {
        const char* const end = name.data() + size;
        if (size >= 8) {
            first = Characters<8>(name.data());
            inner = Characters<8>(size < 16 ? name.data() : end - 16);
            last = Characters<8>(end - 8);
        } else if (size >= 4) {
            first = Characters<4>(name.data());
            last = Characters<4>(end - 4);
        } else if (size > 0) {
            first = Characters<1>(name.data());
            inner = Characters<1>(name.data() + size / 2);
            last = Characters<1>(end - 1);
        }
    }
    [[gnu::always_inline]] constexpr bool operator==(const NameEnds& other) const {
        return first == other.first && inner == other.inner && last == other.last && size == other.size;
    }

    /// The same ends, ignoring case. Bit 5 folds letters, but a few other characters too: a name found by its hash must
    /// still be compared.
    constexpr NameEnds Folded() const {
        constexpr std::uint64_t letterCase = 0x2020202020202020U;
        NameEnds folded = *this;
        folded.first |= letterCase;
        folded.inner |= letterCase;
        folded.last |= letterCase;
        return folded;
    }

    /// Only the upper bits are well mixed. `multiplier` must be odd.
    constexpr std::uint64_t Hash(std::uint64_t multiplier) const {
        constexpr std::uint64_t spread = 0xD1B54A32D192ED02U;
        return (first + size * spread + std::rotl(inner, 32)) * multiplier + last * (multiplier ^ spread);
    }
};

/// A constant, ordered list of names with a case-insensitive (ASCII) whole-text search that costs the same for every
/// entry. Names are string literals; two that differ at most in case do not compile.
template <std::size_t N>
class NameTable {
    static_assert(N > 0 && N < 255, "slots hold an index in one byte");

public:
    template <class... Names>
    requires(sizeof...(Names) == N && (std::convertible_to<const Names&, std::string_view> &&
                                       ...)) consteval explicit NameTable(const Names&... names)
        : NameTable(std::array<std::string_view, N>{std::string_view(names)...}) {}

    consteval explicit NameTable(const std::array<std::string_view, N>& names) : names_(names) {
        std::array<NameEnds, N> ends{};
        for (std::size_t i = 0; i < N; ++i) {
            ends[i] = NameEnds(names[i]).Folded();
            longest_ = std::max(longest_, names[i].size());
            CheckName(ends, i);
        }
        while (!Place(ends)) {
            multiplier_ += 0x5851F42D4C957F2EU;  // even, so that the multiplier stays odd
        }
    }

    static constexpr std::size_t Size() { return N; }

    /// The index of `name`, or N when it is unknown.
    constexpr std::size_t Find(std::string_view name) const {
        if (name.size() > longest_) {
            return N;
        }
        const NameEnds ends(name);
        const std::size_t index = slots_[Slot(ends.Folded())];
        return index < N && IsName(names_[index], name, ends) ? index : N;
    }

    /// The name at `index`, zero-terminated; an empty text for an index beyond the table.
    constexpr std::string_view operator[](std::size_t index) const {
        return index < N ? names_[index] : std::string_view("");
    }

private:
    static constexpr std::size_t slotCount_ = std::bit_ceil(4 * N);
    static constexpr int slotShift_ = 64 - std::countr_zero(slotCount_);

    /// A device nearly always writes its words in the table's own case.
    static constexpr bool IsName(std::string_view name, std::string_view text, const NameEnds& ends) {
        return (text.size() <= NameEnds::covered && NameEnds(name) == ends) || EqualsIgnoringCase(name, text);
    }

    constexpr std::size_t Slot(const NameEnds& folded) const {
        return static_cast<std::size_t>(folded.Hash(multiplier_) >> slotShift_);
    }

    consteval void CheckName(const std::array<NameEnds, N>& ends, std::size_t index) const {
        if (names_[index].data()[names_[index].size()] != '\0') {
            throw "a name is not the whole of a string literal";
        }
        for (std::size_t earlier = 0; earlier < index; ++earlier) {
            if (ends[earlier] == ends[index]) {
                throw "two names are the same, or differ only in case or between their ends";
            }
        }
    }

    /// Fills the slots; false when two names collide with the current multiplier.
    consteval bool Place(const std::array<NameEnds, N>& ends) {
        for (auto& slot : slots_) {
            slot = static_cast<std::uint8_t>(N);
        }
        for (std::size_t i = 0; i < N; ++i) {
            auto& slot = slots_[Slot(ends[i])];
            if (slot != N) {
                return false;
            }
            slot = static_cast<std::uint8_t>(i);
        }
        return true;
    }

    std::array<std::string_view, N> names_;
    std::array<std::uint8_t, slotCount_> slots_{};
    std::uint64_t multiplier_ = 0x9E3779B97F4A7C15U;
    std::size_t longest_ = 0;
};

template <class... Names>
requires(std::convertible_to<const Names&, std::string_view>&&...) NameTable(const Names&...)
->NameTable<sizeof...(Names)>;

}  // namespace Morquil
