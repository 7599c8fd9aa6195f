// Default values for keys missing from the factory settings, so that a new key works as soon as its table has it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "protocol/block_table.h"
#include "protocol/blocks/all.h"
#include "protocol/table/field.h"
#include "simulator/blocks/device_blocks.h"

namespace Morquil::Simulator {

// Settings are zero and off, as far as their limits allow; offers allow everything.

template <class FieldType>
void SetPlainly(FieldType& field, const char* /*key*/, BlockRole /*role*/) {
    field.Set({});
}
inline void SetPlainly(Field<bool>& field, const char* /*key*/, BlockRole role) {
    field.Set(role == BlockRole::Offers);
}
template <class T>
void SetPlainly(Field<Range<T>>& field, const char* /*key*/, BlockRole /*role*/) {
    field.Set({T{0}, T{100}});
}
template <class Vocabulary>
void SetPlainly(SetField<Vocabulary>& field, const char* /*key*/, BlockRole /*role*/) {
    for (std::size_t word = 0; word < field.size; ++word) {
        field.Add(word);
    }
}
/// A line needs a value, so the text must not be empty.
template <std::size_t capacity, Compare comparison>
void SetPlainly(TextField<capacity, comparison>& field, const char* key, BlockRole /*role*/) {
    field.Set(key);
}
template <class FieldType, std::size_t count>
void SetPlainly(std::array<FieldType, count>& fields, const char* key, BlockRole role) {
    for (FieldType& field : fields) {
        if (!field.IsPresent()) {
            SetPlainly(field, key, role);
        }
    }
}

/// Fills every absent field that the device reports and that is not a command.
template <class Description>
void FillPlainly(ChangeSetOf<Description>& set) {
    const auto fillRow = [&](const auto& row) {
        row.ForEachKey([&](const auto& key) {
            if (row.Names().size() != 0 && key.facts.use != KeyUse::Command && !IsPresent(set.*key.member)) {
                SetPlainly(set.*key.member, key.Names()[0].text.data(), factsOf<Description>.role);
            }
        });
    };
    Description::block.rows.ForEach(fillRow);
}

}  // namespace Morquil::Simulator
