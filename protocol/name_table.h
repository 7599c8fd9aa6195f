// A constant list of names (block headers, keys, vocabulary words) that is searched with a perfect hash.
#pragma once

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "protocol/ascii.h"

namespace Morquil {

namespace NameHash {

/// Little-endian in every compiler's constant evaluation, and one load instruction at run time.
template <std::size_t bytes>
constexpr std::uint64_t Load(const char* from) {
    return [from]<std::size_t... at>(std::index_sequence<at...>) {
        return (... | (static_cast<std::uint64_t>(static_cast<unsigned char>(from[at])) << (8 * at)));
    }
    (std::make_index_sequence<bytes>());
}

/// All bytes of a text of less than eight. Its length is hashed beside them, so that overlaps lose nothing.
constexpr std::uint64_t LoadShort(std::string_view text) {
    const char* const first = text.data();
    const std::size_t size = text.size();
    if (size >= 4) {
        return Load<4>(first) | Load<4>(first + size - 4) << 32;
    }
    if (size == 0) {
        return 0;
    }
    return Load<1>(first) | Load<1>(first + size / 2) << 8 | Load<1>(first + size - 1) << 16;
}

constexpr std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) {
    // Setting bit 5 of every byte folds letters. It also folds a few other characters, which only costs the hash a
    // distinction: the comparison that follows is exact.
    const std::uint64_t mixed = (hash ^ (word | 0x2020202020202020U)) * 0x9E3779B97F4A7C15U;
    return mixed ^ mixed >> 32;
}

/// Hashes every byte, eight at a time, so that names that differ in one digit differ.
constexpr std::uint64_t Of(std::string_view text) {
    std::uint64_t hash = text.size() * 0xD1B54A32D192ED03U;
    if (text.size() < 8) {
        return Mix(hash, LoadShort(text));
    }
    const char* const tail = text.data() + text.size() - 8;
    for (const char* at = text.data(); at < tail; at += 8) {
        hash = Mix(hash, Load<8>(at));
    }
    return Mix(hash, Load<8>(tail));
}

}  // namespace NameHash

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
        std::array<std::uint64_t, N> hashes{};
        for (std::size_t i = 0; i < N; ++i) {
            hashes[i] = NameHash::Of(names[i]);
            longest_ = names[i].size() > longest_ ? names[i].size() : longest_;
            CheckName(hashes, i);
        }
        while (!Place(hashes)) {
            multiplier_ += 0x5851F42D4C957F2EU;  // even, so that the multiplier stays odd
        }
    }

    static constexpr std::size_t Size() { return N; }

    /// The index of `name`, or N when it is unknown.
    constexpr std::size_t Find(std::string_view name) const {
        if (name.size() > longest_) {
            return N;  // a line of a hostile device is not hashed to its end
        }
        const std::size_t index = slots_[Slot(NameHash::Of(name))];
        return index < N && EqualsIgnoringCase(names_[index], name) ? index : N;
    }

    /// The name at `index`, zero-terminated; an empty text beyond the table.
    constexpr std::string_view operator[](std::size_t index) const {
        return index < N ? names_[index] : std::string_view("");
    }

private:
    static constexpr std::size_t slotCount_ = std::bit_ceil(4 * N);
    static constexpr int slotShift_ = 64 - std::countr_zero(slotCount_);

    constexpr std::size_t Slot(std::uint64_t hash) const {
        return static_cast<std::size_t>(hash * multiplier_ >> slotShift_);
    }

    consteval void CheckName(const std::array<std::uint64_t, N>& hashes, std::size_t index) const {
        if (names_[index].data()[names_[index].size()] != '\0') {
            throw "a name is not the whole of a string literal";
        }
        for (std::size_t earlier = 0; earlier < index; ++earlier) {
            if (hashes[earlier] == hashes[index]) {
                throw "two names are the same, or differ only in case";
            }
        }
    }

    /// Fills the slots; false when two names meet in one under the present multiplier.
    consteval bool Place(const std::array<std::uint64_t, N>& hashes) {
        for (auto& slot : slots_) {
            slot = static_cast<std::uint8_t>(N);
        }
        for (std::size_t i = 0; i < N; ++i) {
            auto& slot = slots_[Slot(hashes[i])];
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
