#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

#include "protocol/table/key_rows.h"
#include "protocol/table/line_context.h"
#include "protocol/table/plain_tuple.h"
#include "protocol/table/value_kinds.h"
#include "protocol/text/ascii.h"
#include "protocol/text/message_sender.h"
#include "protocol/text/name_table.h"

namespace Morquil {

/// What a block has besides its keys.
struct BlockHeader {
    const char* name;
    /// Reported with a key that the block does not have.
    const char* unknownKeyText;
    /// Whether its writer marks where the message begins and ends; without the marks its text is appended to what is
    /// already there.
    bool bracketed = true;
    /// Some blocks read the value before they check the key: a line with an unknown key and a bad value is then
    /// reported for its value. Returns whether the value was good.
    bool (*readsValueFirst)(const LineContext& line) = nullptr;
};

/// The table of one protocol block: a constant member `block` of the change set that it fills.
template <class... Rows>
struct Block {
    BlockHeader header;
    PlainTuple<Rows...> rows;

    constexpr explicit Block(BlockHeader blockHeader, Rows... tableRows) : header(blockHeader), rows(tableRows...) {}
    constexpr Block(BlockHeader blockHeader, PlainTuple<Rows...> tableRows) : header(blockHeader), rows(tableRows) {}
};

/// The change set of a block: the type that carries the table, unless that type names another one.
template <class Description>
struct ChangeSetOfBlock {
    using Type = Description;
};
template <class Description>
requires requires {
    typename Description::ChangeSet;
}
struct ChangeSetOfBlock<Description> {
    using Type = typename Description::ChangeSet;
};
template <class Description>
using ChangeSetOf = typename ChangeSetOfBlock<Description>::Type;

/// Finds a block's key and reads its value, at the same cost for every key.
template <class Description, Side side = Side::Host>
class KeyIndex {
    using Set = ChangeSetOf<Description>;
    using Reader = void (*)(const LineContext&, Set&, std::size_t index);

public:
    /// Reads one line into `set`; reports what is wrong with it.
    static void ReadLine(const LineContext& line, const std::string_view& key, Set& set) {
        std::size_t index = 0;
        const std::size_t name = FindKey(key, index);
        if (name < nameCount) {
            readers[name](line, set, index);
        } else {
            ReportUnknownKey(line, key);
        }
    }

private:
    static constexpr std::size_t rowCount = decltype(Description::block.rows)::size;

    template <std::size_t row>
    static constexpr std::size_t namesOfRow =
        std::tuple_size_v<decltype(Description::block.rows.template Get<row>().template Names<side>())>;

    static constexpr std::size_t nameCount = []<std::size_t... row>(std::index_sequence<row...>) {
        return (std::size_t{0} + ... + namesOfRow<row>);
    }
    (std::make_index_sequence<rowCount>());

    template <class Visit>
    static constexpr void ForEachRowIndex(Visit visit) {
        [&]<std::size_t... row>(std::index_sequence<row...>) {
            (visit(std::integral_constant<std::size_t, row>()), ...);
        }
        (std::make_index_sequence<rowCount>());
    }

    static constexpr std::array<KeyName, nameCount> names = [] {
        std::array<KeyName, nameCount> all{};
        std::size_t at = 0;
        ForEachRowIndex([&](auto row) {
            for (const KeyName& name : Description::block.rows.template Get<row.value>().template Names<side>()) {
                all[at++] = name;
            }
        });
        return all;
    }();

    static constexpr NameTable<nameCount> table{[] {
        std::array<std::string_view, nameCount> texts{};
        for (std::size_t name = 0; name < nameCount; ++name) {
            texts[name] = names[name].text;
        }
        return texts;
    }()};

    template <std::size_t row, std::size_t which>
    static void ReadKey(const LineContext& line, Set& set, std::size_t index) {
        Description::block.rows.template Get<row>().template Read<which, side>(line, set, index);
    }

    static constexpr std::array<Reader, nameCount> readers = [] {
        std::array<Reader, nameCount> all{};
        std::size_t at = 0;
        ForEachRowIndex([&](auto row) {
            [&]<std::size_t... which>(std::index_sequence<which...>) {
                ((all[at++] = &ReadKey<row.value, which>), ...);
            }
            (std::make_index_sequence<namesOfRow<row.value>>());
        });
        return all;
    }();

    static constexpr bool hasIndexedKeys = [] {
        for (const KeyName& name : names) {
            if (name.indexCount != 0) {
                return true;
            }
        }
        return false;
    }();

    static std::size_t FindKey(const std::string_view& key, std::size_t& index) {
        if constexpr (!hasIndexedKeys) {
            return table.Find(key);
        } else {
            const std::size_t indexed = FindIndexed(key, index);
            if (indexed < nameCount) {
                return indexed;
            }
            const std::size_t name = table.Find(key);
            return name < nameCount && names[name].indexCount != 0 ? nameCount : name;
        }
    }

    /// Splits a key into name and index; the index has no leading zeros.
    static std::size_t FindIndexed(const std::string_view& key, std::size_t& index) {
        std::size_t digits = 0;
        std::size_t number = 0;
        for (std::size_t place = 1; digits < key.size() && IsDigit(key[key.size() - 1 - digits]); place *= 10) {
            if (digits == 2) {
                return nameCount;
            }
            number += place * static_cast<std::size_t>(key[key.size() - 1 - digits] - '0');
            ++digits;
        }
        if (digits == 0 || (digits > 1 && key[key.size() - digits] == '0')) {
            return nameCount;
        }
        const std::size_t name = table.Find({key.data(), key.size() - digits});
        if (name == nameCount || number >= names[name].indexCount) {
            return nameCount;
        }
        index = number;
        return name;
    }

    [[gnu::cold]] static void ReportUnknownKey(const LineContext& line, std::string_view key) {
        constexpr BlockHeader header = Description::block.header;
        if (header.readsValueFirst == nullptr || header.readsValueFirst(line)) {
            ReportText(line.errors, header.unknownKeyText, key);
        }
    }
};

/// Writes the whole block: its header, the lines of what is present, the empty line. Returns the sender's result.
template <class Description, Side side = Side::Host>
bool WriteBlock(IMessageSender& sender, const ChangeSetOf<Description>& set) {
    constexpr BlockHeader header = Description::block.header;
    if (header.bracketed) {
        sender.BeginMessage();
    }
    sender.SendFormatted("%s:\n", header.name);
    Description::block.rows.ForEach([&](const auto& row) { row.template Write<side>(sender, set); });
    sender.SendFormatted("\n");
    return header.bracketed ? sender.EndMessage() : true;
}

/// Calls `visit` with every key that has facts or limits, in the order of the table.
template <class Description, class Visit>
constexpr void ForEachKey(Visit visit) {
    Description::block.rows.ForEach([&](const auto& row) { row.ForEachKey(visit); });
}

/// Whether everything that a connection waits for is present.
template <class Set>
bool HasAllNeeded(const Set& set) {
    bool hasAll = true;
    ForEachKey<Set>([&](const auto& key) {
        if (key.facts.isNeeded) {
            hasAll &=
                IsPresent(set.*key.member) || (key.facts.neededWhile != nullptr && !(set.*key.facts.neededWhile).Get());
        }
    });
    return hasAll;
}

/// Makes absent what a settings file does not hold.
template <class Set>
void ClearUnsaved(Set& set) {
    ForEachKey<Set>([&](const auto& key) {
        if (!key.facts.isSaved) {
            set.*key.member = {};
        }
    });
}

/// Merges what a device has reported: copies every field that `source` has and that `target` lacks or holds with
/// another value. Returns whether any field was copied. No field ever becomes absent.
template <class Set>
bool Merge(Set& target, const Set& source) {
    bool changed = false;
    const auto mergeMember = [&](auto member) { changed |= MergeField(target.*member, source.*member); };
    Set::block.rows.ForEach([&](const auto& row) { row.ForEachMember(mergeMember); });
    return changed;
}

/// Merges what is to be sent: copies every field that `source` has, whatever `target` holds. No field ever becomes
/// absent.
template <class Set>
void Overwrite(Set& target, const Set& source) {
    const auto overwriteMember = [&](auto member) { OverwriteField(target.*member, source.*member); };
    Set::block.rows.ForEach([&](const auto& row) { row.ForEachMember(overwriteMember); });
}

/// Merges only the named members.
template <class Set, class... Members>
bool MergeMembers(Set& target, const Set& source, Members... members) {
    bool changed = false;
    ((changed |= MergeField(target.*members, source.*members)), ...);
    return changed;
}

/// Whether every field is absent.
template <class Set>
bool IsEmpty(const Set& set) {
    Set none;
    return !Merge(none, set);
}

/// A set whose every field is absent.
template <class Set>
inline constexpr Set emptySet{};

/// Makes every field absent by copying an empty set, which is faster than clearing field by field.
template <class Set>
void Clear(Set& set) {
    static_assert(std::is_trivially_copyable_v<Set>);
    set = emptySet<Set>;
}

}  // namespace Morquil
