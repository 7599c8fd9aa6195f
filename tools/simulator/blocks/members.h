// Walks the members of change sets, and the elements of array members.
#pragma once

#include <array>
#include <cstddef>

namespace Morquil::Simulator {

/// Calls `visit` with a pointer to every member of the block, in the order of its keys.
template <class Set, class Visit>
void ForEachMemberOf(Visit visit) {
    Set::block.rows.ForEach([&](const auto& row) { row.ForEachMember(visit); });
}

/// Calls `visit` with a field from each of two change sets of the same type. For arrays, calls it with each pair of
/// elements.
template <class FieldType, class Visit>
void ForEachPair(FieldType& one, const FieldType& other, Visit visit) {
    visit(one, other);
}
template <class FieldType, std::size_t count, class Visit>
void ForEachPair(std::array<FieldType, count>& one, const std::array<FieldType, count>& other, Visit visit) {
    for (std::size_t index = 0; index < count; ++index) {
        visit(one[index], other[index]);
    }
}

/// Calls `visit` with each pair of corresponding fields of two change sets of one block.
template <class Set, class Visit>
void ForEachPairOfFields(Set& one, const Set& other, Visit visit) {
    ForEachMemberOf<Set>([&](auto member) { ForEachPair(one.*member, other.*member, visit); });
}

}  // namespace Morquil::Simulator
