// A cheap fingerprint of what a parser has delivered: two streams of events are the same if their digests are.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "protocol/blocks/all.h"

namespace Morquil::Fuzz {

class Digest {
public:
    std::uint64_t Value() const { return value_; }

    void Add(std::uint64_t word) {
        value_ = (value_ ^ word) * 0x9E3779B97F4A7C15U;
        value_ ^= value_ >> 32;
    }
    void Add(std::string_view text) {
        Add(text.size());
        while (!text.empty()) {
            std::uint64_t word = 0;
            const std::size_t length = text.size() < sizeof word ? text.size() : sizeof word;
            std::memcpy(&word, text.data(), length);
            Add(word);
            text.remove_prefix(length);
        }
    }
    void Add(std::int32_t number) { Add(std::uint64_t{static_cast<std::uint32_t>(number)}); }
    void Add(std::uint32_t number) { Add(std::uint64_t{number}); }
    void Add(bool flag) { Add(std::uint64_t{flag}); }
    /// By its bits, so that 0 and -0 differ.
    void Add(double number) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        Add(bits);
    }
    template <class T>
    void Add(const Range<T>& range) {
        Add(range.minimum);
        Add(range.maximum);
    }
    void Add(const ProtocolVersion& version) {
        Add(version.flags);
        Add(version.minor);
    }
    template <class T, std::size_t count>
    void Add(const std::array<T, count>& elements) {
        for (const T& element : elements) {
            Add(element);
        }
    }
    template <class Vocabulary>
    void Add(const SetField<Vocabulary>& field) {
        Add(field.IsPresent());
        for (std::size_t index = 0; field.HasAny() && index < field.size; ++index) {
            Add(field.Has(index));
        }
    }
    void Add(const ConversionTable& table) {
        for (std::size_t input = 0; table.IsPresent() && input < table.modes; ++input) {
            for (std::size_t output = 0; output < table.modes; ++output) {
                Add(RatiosOf(table, input, output));
            }
        }
    }
    /// The value of an absent field means nothing.
    template <class FieldType>
    requires requires(const FieldType& field) { field.Get(); }
    void Add(const FieldType& field) {
        Add(field.IsPresent());
        if (field.IsPresent()) {
            Add(field.Get());
        }
    }

private:
    static std::uint64_t RatiosOf(const ConversionTable& table, std::size_t input, std::size_t output) {
        std::uint64_t ratios = 0;
        for (std::size_t ratio = 0; ratio < table.ratios; ++ratio) {
            ratios = ratios << 1 | std::uint64_t{table.Has(input, output, ratio)};
        }
        return ratios;
    }

    std::uint64_t value_ = 0;
};

/// Adds the members of a block, in the order of its table.
template <class Description>
void AddBlock(Digest& digest, const ChangeSetOf<Description>& set) {
    const auto addMember = [&](auto member) { digest.Add(set.*member); };
    Description::block.rows.ForEach([&](const auto& row) { row.ForEachMember(addMember); });
}

template <class Description>
std::uint64_t DigestOf(const ChangeSetOf<Description>& set) {
    Digest digest;
    AddBlock<Description>(digest, set);
    return digest.Value();
}

}  // namespace Morquil::Fuzz
