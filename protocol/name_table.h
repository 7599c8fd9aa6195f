// A constant list of names (block headers, keys, vocabulary words) that is searched with a perfect hash.
#pragma once

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "protocol/ascii.h"
#include "protocol/byte_words.h"

namespace Morquil {

/// The length of a text, its first eight bytes and its last sixteen: all that names are told apart by, and all of them
/// for most. Loaded at once, since names are short and searching for them is most of what reading text consists of.
struct NameEnds {
    std::uint64_t first = 0;
    std::uint64_t inner = 0;
    std::uint64_t last = 0;
    std::size_t size = 0;

    static constexpr std::size_t covered = 24;

    constexpr NameEnds() = default;
    [[gnu::always_inline]] constexpr explicit NameEnds(std::string_view name) : size(name.size()) {
        if (size < 8) {
            first = ByteWords::LoadShort(name.data(), size);
            return;
        }
        first = ByteWords::Load<8>(name.data());
        inner = ByteWords::Load<8>(name.data() + (size < 16 ? 0 : size - 16));
        last = ByteWords::Load<8>(name.data() + size - 8);
    }
    [[gnu::always_inline]] constexpr bool operator==(const NameEnds& other) const {
        return first == other.first && inner == other.inner && last == other.last && size == other.size;
    }

    /// Setting bit 5 of every byte folds letters. It also folds a few other characters, which only costs the hash a
    /// distinction: the comparison that follows is exact.
    static constexpr std::uint64_t letterCase = ByteWords::Repeat(' ');

    /// Whether no multiplier gives the two different hashes.
    constexpr bool CollidesWith(const NameEnds& other) const {
        return (first | letterCase) == (other.first | letterCase) &&
               (inner | letterCase) == (other.inner | letterCase) && (last | letterCase) == (other.last | letterCase) &&
               size == other.size;
    }

    /// Only the upper bits are well mixed. `multiplier` is odd.
    [[gnu::always_inline]] constexpr std::uint64_t Hash(std::uint64_t multiplier) const {
        constexpr std::uint64_t spread = 0xD1B54A32D192ED02U;
        return ((first | letterCase) + size * spread + std::rotl(inner | letterCase, 32)) * multiplier +
               (last | letterCase) * (multiplier ^ spread);
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
            ends[i] = NameEnds(names[i]);
            longest_ = names[i].size() > longest_ ? names[i].size() : longest_;
            CheckName(ends, i);
        }
        while (!Place(ends)) {
            multiplier_ += 0x5851F42D4C957F2EU;  // even, so that the multiplier stays odd
        }
    }

    static constexpr std::size_t Size() { return N; }

    /// The index of `name`, or N when it is unknown.
    constexpr std::size_t Find(const std::string_view& name) const { return Find(name.data(), name.size()); }

    /// The name at `index`, zero-terminated; an empty text beyond the table.
    constexpr std::string_view operator[](std::size_t index) const {
        return index < N ? names_[index] : std::string_view("");
    }

private:
    static constexpr std::size_t slotCount_ = std::bit_ceil(4 * N);
    static constexpr int slotShift_ = 64 - std::countr_zero(slotCount_);

    /// Takes the text in two parts: not every system passes a whole one in registers.
    constexpr std::size_t Find(const char* name, std::size_t size) const {
        if (size > longest_) {
            return N;  // a line of a hostile device is not hashed to its end
        }
        const NameEnds ends({name, size});
        const std::size_t index = slots_[Slot(ends)];
        return index < N && IsName(index, {name, size}, ends) ? index : N;
    }

    [[gnu::always_inline]] constexpr std::size_t Slot(const NameEnds& ends) const {
        return static_cast<std::size_t>(ends.Hash(multiplier_) >> slotShift_);
    }

    /// A device nearly always writes its words in the table's own case.
    [[gnu::always_inline]] constexpr bool IsName(std::size_t index, std::string_view text, const NameEnds& ends) const {
        const std::string_view name = names_[index];
        if (name.size() == text.size() && text.size() <= NameEnds::covered && NameEnds(name) == ends) {
            return true;
        }
        return IsNameInAnotherCase(name, text);
    }

    [[gnu::noinline]] static constexpr bool IsNameInAnotherCase(std::string_view name, std::string_view text) {
        return EqualsIgnoringCase(name, text);
    }

    consteval void CheckName(const std::array<NameEnds, N>& ends, std::size_t index) const {
        if (names_[index].data()[names_[index].size()] != '\0') {
            throw "a name is not the whole of a string literal";
        }
        for (std::size_t earlier = 0; earlier < index; ++earlier) {
            if (ends[earlier].CollidesWith(ends[index])) {
                throw "two names are the same, or differ only in case or between their ends";
            }
        }
    }

    /// Fills the slots; false when two names meet in one under the present multiplier.
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
