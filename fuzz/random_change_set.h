// Fills a change set from the fuzzer's bytes. Without bytes every field is absent.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "fuzz/byte_source.h"
#include "protocol/blocks/all.h"

namespace Morquil::Fuzz {

inline void Randomize(ByteSource& source, std::int32_t& number) {
    number = source.LikelyNumber<std::int32_t>();
}
inline void Randomize(ByteSource& source, std::uint32_t& number) {
    number = source.LikelyNumber<std::uint32_t>();
}
inline void Randomize(ByteSource& source, double& number) {
    // Few bit patterns are numbers of the size that hosts use, so add some with decimals.
    number = source.Flag() ? source.Number<double>() : source.LikelyNumber<std::int32_t>() / 1024.0;
}
inline void Randomize(ByteSource& source, bool& flag) {
    flag = source.Flag();
}
inline void Randomize(ByteSource& source, ProtocolVersion& version) {
    Randomize(source, version.flags);
    Randomize(source, version.minor);
}
template <class T>
void Randomize(ByteSource& source, Range<T>& range) {
    Randomize(source, range.minimum);
    Randomize(source, range.maximum);
}
template <class T, std::size_t count>
void Randomize(ByteSource& source, std::array<T, count>& elements) {
    for (T& element : elements) {
        Randomize(source, element);
    }
}
template <std::size_t capacity, Compare comparison>
void Randomize(ByteSource& source, TextField<capacity, comparison>& field) {
    if (source.Flag()) {
        std::string text = source.Text();
        std::erase_if(text, [](char character) { return character == '\n' || character == '\r' || character == '\0'; });
        field.Set(text);
    }
}
template <class Vocabulary>
void Randomize(ByteSource& source, SetField<Vocabulary>& field) {
    if (source.Flag()) {
        field.MarkReceived();
        for (std::size_t word = source.Byte(); word < field.size; word = source.Byte()) {
            field.Add(word);
            if (!source.Flag()) {
                break;
            }
        }
    }
}
inline void Randomize(ByteSource& source, ConversionTable& table) {
    while (source.Flag()) {
        const std::size_t input = source.Byte() % table.modes;
        const std::size_t output = source.Byte() % table.modes;
        table.Add(input, output, source.Byte() % table.ratios);
    }
}
template <class FieldType>
requires requires {
    typename FieldType::Value;
}
void Randomize(ByteSource& source, FieldType& field) {
    if (source.Flag()) {
        typename FieldType::Value value{};
        Randomize(source, value);
        field.Set(value);
    }
}

/// A change set of a block, with values inside and outside the allowed ranges.
template <class Description>
ChangeSetOf<Description> RandomChangeSet(ByteSource& source) {
    ChangeSetOf<Description> set;
    const auto randomize = [&](auto member) { Randomize(source, set.*member); };
    Description::block.rows.ForEach([&](const auto& row) { row.ForEachMember(randomize); });
    return set;
}

}  // namespace Morquil::Fuzz
