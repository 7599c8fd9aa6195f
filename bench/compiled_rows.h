// Writes the rows of a block's table with fmt's compiled formats, into a growing buffer like the library's.
#pragma once

#include <fmt/compile.h>
#include <fmt/format.h>

#include <cstddef>
#include <cstdint>

#include "protocol/table/block.h"

namespace Morquil::Bench {

using CompiledText = fmt::memory_buffer;

template <class Value>
void CompiledLine(CompiledText& text, const char* key, const Value& value) {
    fmt::format_to(fmt::appender(text), FMT_COMPILE("{}: {}\n"), key, value);
}
inline void CompiledLine(CompiledText& text, const char* key, double value) {
    fmt::format_to(fmt::appender(text), FMT_COMPILE("{}: {:.6f}\n"), key, value);
}

template <class T, class FieldType>
void CompiledWrite(CompiledText& text, const char* key, const Single<T>& /*kind*/, const FieldType& field) {
    CompiledLine(text, key, field.Get());
}
inline void CompiledWrite(CompiledText& text, const char* key, const UnsignedAsSigned& /*kind*/,
                          const Field<std::uint32_t>& field) {
    CompiledLine(text, key, static_cast<std::int32_t>(field.Get()));
}
inline void CompiledWrite(CompiledText& text, const char* key, const HexVersion& /*kind*/,
                          const Field<std::uint32_t>& field) {
    if (field.Get() != 0) {
        fmt::format_to(fmt::appender(text), FMT_COMPILE("{}: 0x{:x}\n"), key, field.Get());
    }
}
inline void CompiledWrite(CompiledText& text, const char* key, const OneShot& /*kind*/, const Field<bool>& /*field*/) {
    CompiledLine(text, key, true);
}
inline void CompiledWrite(CompiledText& text, const char* key, const Phase& /*kind*/, const Field<bool>& field) {
    CompiledLine(text, key, field.Get());
}
template <class Vocabulary, class FieldType>
void CompiledWrite(CompiledText& text, const char* key, const WordOf<Vocabulary>& /*kind*/, const FieldType& field) {
    const auto index = static_cast<std::size_t>(static_cast<std::uint32_t>(field.Get()));
    if (index < Vocabulary::words.Size()) {
        CompiledLine(text, key, Vocabulary::words[index]);
    }
}
template <class FieldType>
void CompiledWrite(CompiledText& text, const char* key, const Text& /*kind*/, const FieldType& field) {
    CompiledLine(text, key, field.Get());
}
template <class FieldType>
void CompiledWrite(CompiledText& text, const char* key, const NonEmptyText& /*kind*/, const FieldType& field) {
    if (!field.Get().empty()) {
        CompiledLine(text, key, field.Get());
    }
}
inline void CompiledWrite(CompiledText& text, const char* key, const Timecode& /*kind*/,
                          const Field<std::uint32_t>& field) {
    CompiledLine(text, key, TimecodeText(field.Get()).data());
}

template <class Set, class Owner, class FieldType, class Kind, class Limit>
void CompiledWriteRow(CompiledText& text, const Key<Owner, FieldType, Kind, Limit>& row, const Set& set) {
    if ((set.*row.member).IsPresent()) {
        CompiledWrite(text, row.name, row.kind, set.*row.member);
    }
}
template <class Set, class Row>
void CompiledWriteRow(CompiledText& text, const WriteOnly<Row>& row, const Set& set) {
    CompiledWriteRow(text, row.row, set);
}
template <class Set, class Owner, class FieldType, std::size_t count, class Kind, class Limit>
void CompiledWriteElement(CompiledText& text, const IndexedKey<Owner, FieldType, count, Kind, Limit>& row,
                          const Set& set, std::size_t index) {
    if ((set.*row.member)[index].IsPresent()) {
        char key[48];
        *fmt::format_to(key, FMT_COMPILE("{}{}"), row.stem, index) = '\0';
        CompiledWrite(text, key, row.kind, (set.*row.member)[index]);
    }
}
template <class Set, class Owner, class FieldType, std::size_t count, class Kind, class Limit>
void CompiledWriteRow(CompiledText& text, const IndexedKey<Owner, FieldType, count, Kind, Limit>& row, const Set& set) {
    for (std::size_t index = 0; index < count; ++index) {
        CompiledWriteElement(text, row, set, index);
    }
}
template <class Set, class First, class Second>
void CompiledWriteRow(CompiledText& text, const Alternating<First, Second>& row, const Set& set) {
    for (std::size_t index = 0; index < (set.*row.first.member).size(); ++index) {
        CompiledWriteElement(text, row.first, set, index);
        CompiledWriteElement(text, row.second, set, index);
    }
}

template <class Description>
void CompiledWriteBlock(CompiledText& text, const ChangeSetOf<Description>& set) {
    fmt::format_to(fmt::appender(text), FMT_COMPILE("{}:\n"), Description::block.header.name);
    Description::block.rows.ForEach([&](const auto& row) { CompiledWriteRow(text, row, set); });
    text.push_back('\n');
}

}  // namespace Morquil::Bench
