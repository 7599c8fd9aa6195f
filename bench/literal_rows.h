// Tries the rows of a block's table one after the other until one of them knows the key.
#pragma once

#include <cstdlib>
#include <cstring>

#include "bench/literal_values.h"
#include "protocol/blocks/supported_conversions.h"
#include "protocol/table/block.h"

namespace Morquil::Bench {

/// A line, as zero-terminated texts.
struct LiteralLine {
    const char* key;
    const char* value;
    Selections& selections;
};

template <class Set, class Owner, class FieldType, class Kind, class Limit>
bool LiteralReadRow(const Key<Owner, FieldType, Kind, Limit>& row, const LiteralLine& line, Set& set) {
    if (!SameText(line.key, row.name)) {
        return false;
    }
    LiteralRead(row.kind, line.value, set.*row.member);
    return true;
}

template <class Set, class Row>
bool LiteralReadRow(const WriteOnly<Row>& /*row*/, const LiteralLine& /*line*/, Set& /*set*/) {
    return false;
}

template <class Set, class Owner, class FieldType, std::size_t count, class Kind, class Limit>
bool LiteralReadRow(const IndexedKey<Owner, FieldType, count, Kind, Limit>& row, const LiteralLine& line, Set& set) {
    const std::size_t length = std::strlen(row.stem);
    if (strncasecmp(line.key, row.stem, length) != 0 || !IsDigit(line.key[length])) {
        return false;
    }
    const auto index = std::strtoul(line.key + length, nullptr, 10);
    if (index >= count) {
        return false;
    }
    LiteralRead(row.kind, line.value, (set.*row.member)[index]);
    return true;
}

template <class Set, class First, class Second>
bool LiteralReadRow(const Alternating<First, Second>& row, const LiteralLine& line, Set& set) {
    return LiteralReadRow(row.first, line, set) || LiteralReadRow(row.second, line, set);
}

inline bool LiteralSelect(const ModeSelector& selector, const LiteralLine& line) {
    if (!SameText(line.key, selector.name)) {
        return false;
    }
    const std::size_t mode = LiteralWord<VideoModes>(line.value);
    if (mode < VideoModes::words.Size() || selector.unknownMode == UnknownMode::ForgetsSelection) {
        line.selections.*selector.slot = mode;
    }
    return true;
}

inline bool LiteralSelect(const HeightSelector& selector, const LiteralLine& line) {
    if (!SameText(line.key, selector.name)) {
        return false;
    }
    Field<std::uint32_t> height;
    LiteralRead(Unsigned(), line.value, height);
    line.selections.frameHeight = height.Get();
    return true;
}

template <class Set, class Selector, class... GroupKeys>
bool LiteralReadRow(const Group<Selector, GroupKeys...>& row, const LiteralLine& line, Set& set) {
    const auto readKey = [&](const auto& key) {
        if (!SameText(line.key, key.name)) {
            return false;
        }
        const std::size_t index = row.selector.Selected(line.selections);
        if (index < key.Count()) {
            LiteralRead(key.kind, line.value, (set.*key.member)[index]);
        }
        return true;
    };
    return LiteralSelect(row.selector, line) ||
           row.keys.Apply([&](const auto&... key) { return (readKey(key) || ...); });
}

template <class Set, class Owner>
bool LiteralReadRow(const ConversionRows<Owner>& row, const LiteralLine& line, Set& set) {
    if (LiteralSelect(row.input, line) || LiteralSelect(row.output, line)) {
        return true;
    }
    if (!SameText(line.key, row.ratioName)) {
        return false;
    }
    SetField<AspectRatios> ratios;
    LiteralRead(WordList<AspectRatios>(), line.value, ratios);
    const std::size_t from = row.input.Selected(line.selections);
    const std::size_t to = row.output.Selected(line.selections);
    for (std::size_t ratio = 0; ratio < ratios.size; ++ratio) {
        if (ratios.Has(ratio) && from != Selections::noMode && to != Selections::noMode) {
            (set.*row.member).Add(from, to, ratio);
        }
    }
    return true;
}

/// Whether the block knows the key.
template <class Description>
bool LiteralReadLine(const LiteralLine& line, ChangeSetOf<Description>& set) {
    return Description::block.rows.Apply([&](const auto&... row) { return (LiteralReadRow(row, line, set) || ...); });
}

}  // namespace Morquil::Bench
