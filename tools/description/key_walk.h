// Walks the keys of a block's table one by one, whatever their kinds of rows.
#pragma once

#include <cstddef>
#include <string_view>

#include "protocol/block_table.h"
#include "protocol/blocks/all.h"

namespace Morquil::Description {

/// A key, and its place in the table.
struct KeyPlace {
    std::string_view key;
    std::size_t count = 0;
    bool isRead = true;
    std::string_view group = {};
    bool isNeeded = false;
    KeyUse use = KeyUse::Setting;
};

// VisitKeys(row, visit) calls visit(place, kind, member) for each key of the row, in the order of the wire. The kind of
// a selecting line is the selector; it fills no member.

template <class Owner, class FieldType, class Kind, class Limit, class Visit>
void VisitKeys(const Key<Owner, FieldType, Kind, Limit>& row, Visit visit) {
    visit(KeyPlace{.key = row.name, .isNeeded = row.facts.isNeeded, .use = row.facts.use}, row.kind, row.member);
}
template <class Row, class Visit>
void VisitKeys(const WriteOnly<Row>& row, Visit visit) {
    VisitKeys(row.row, [&](KeyPlace place, const auto& kind, auto member) {
        place.isRead = false;
        visit(place, kind, member);
    });
}
template <class Owner, class FieldType, std::size_t count, class Kind, class Limit, class Visit>
void VisitKeys(const IndexedKey<Owner, FieldType, count, Kind, Limit>& row, Visit visit) {
    visit(KeyPlace{row.stem, count}, row.kind, row.member);
}
template <class First, class Second, class Visit>
void VisitKeys(const Alternating<First, Second>& row, Visit visit) {
    VisitKeys(row.first, visit);
    VisitKeys(row.second, visit);
}
template <class Selector, class... GroupKeys, class Visit>
void VisitKeys(const Group<Selector, GroupKeys...>& row, Visit visit) {
    visit(KeyPlace{row.selector.name}, row.selector, nullptr);
    const auto visitKey = [&](const auto& key) {
        visit(KeyPlace{.key = key.name, .group = row.selector.name}, key.kind, key.member);
    };
    row.keys.ForEach(visitKey);
}
template <class Owner, class Visit>
void VisitKeys(const ConversionRows<Owner>& row, Visit visit) {
    visit(KeyPlace{row.input.name}, row.input, nullptr);
    visit(KeyPlace{.key = row.output.name, .group = row.input.name}, row.output, nullptr);
    visit(KeyPlace{.key = row.ratioName, .group = row.output.name}, WordList<AspectRatios>{}, row.member);
}

/// Calls visit(place, kind, member, row) for every key of a block.
template <class Description, class Visit>
void VisitKeysOf(Visit visit) {
    const auto visitRow = [&](const auto& row) {
        VisitKeys(row, [&](const KeyPlace& place, const auto& kind, auto member) { visit(place, kind, member, row); });
    };
    Description::block.rows.ForEach(visitRow);
}

}  // namespace Morquil::Description
