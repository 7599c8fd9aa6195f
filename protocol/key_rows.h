#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <utility>

#include "protocol/field.h"
#include "protocol/frame_heights.h"
#include "protocol/indexed_key_text.h"
#include "protocol/line_context.h"
#include "protocol/message_sender.h"
#include "protocol/vocabularies.h"

/// The rows of a block's table. Reading, writing, merging and clearing all walk these rows. A row offers
///   `Names()`                        the keys that it reads,
///   `Read<which>(line, set, index)`  reads the value of its key number `which`,
///   `Write(sender, set)`             writes the lines of what is present,
///   `ForEachMember(visit)`           visits the change-set members that it fills.
namespace Morquil {

/// A key as the reader knows it. A name that stands for indexed keys ("AudioOut" for "AudioOut0" ...) says how many.
struct KeyName {
    std::string_view text;
    std::size_t indexCount = 0;
};

/// One key, one member.
template <class Owner, class FieldType, class Kind>
struct Key {
    const char* name;
    FieldType Owner::*member;
    Kind kind;

    constexpr Key(const char* keyName, FieldType Owner::*field, Kind valueKind)
        : name(keyName), member(field), kind(valueKind) {}

    constexpr std::array<KeyName, 1> Names() const { return {KeyName{name}}; }

    template <std::size_t which, class Set>
    void Read(const LineContext& line, Set& set, std::size_t /*index*/) const {
        kind.Read(line, name, set.*member);
    }
    template <class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        if ((set.*member).IsPresent()) {
            kind.Write(sender, name, set.*member);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        visit(member);
    }
};

/// A row that is written but not read: devices take the key and never report it.
template <class Row>
struct WriteOnly {
    Row row;

    constexpr explicit WriteOnly(Row writtenRow) : row(writtenRow) {}

    constexpr std::array<KeyName, 0> Names() const { return {}; }

    template <class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        row.Write(sender, set);
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        row.ForEachMember(visit);
    }
};

/// Keys that differ only in an index from 0 behind their common stem; one array member.
template <class Owner, class FieldType, std::size_t count, class Kind>
struct IndexedKey {
    const char* stem;
    std::array<FieldType, count> Owner::*member;
    Kind kind;

    constexpr IndexedKey(const char* keyStem, std::array<FieldType, count> Owner::*field, Kind valueKind)
        : stem(keyStem), member(field), kind(valueKind) {}

    constexpr std::array<KeyName, 1> Names() const { return {KeyName{stem, count}}; }

    template <std::size_t which, class Set>
    void Read(const LineContext& line, Set& set, std::size_t index) const {
        kind.Read(line, ReportedKey(stem, index), (set.*member)[index]);
    }
    template <class Set>
    void WriteElement(IMessageSender& sender, const Set& set, std::size_t index) const {
        if ((set.*member)[index].IsPresent()) {
            kind.Write(sender, IndexedKeyText(stem, index).CString(), (set.*member)[index]);
        }
    }
    template <class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        for (std::size_t index = 0; index < count; ++index) {
            WriteElement(sender, set, index);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        visit(member);
    }
};

/// Two indexed keys that take turns on the wire: first 0, second 0, first 1, second 1, ...
template <class First, class Second>
struct Alternating;

template <class Owner, class FieldA, class FieldB, std::size_t count, class KindA, class KindB>
struct Alternating<IndexedKey<Owner, FieldA, count, KindA>, IndexedKey<Owner, FieldB, count, KindB>> {
    IndexedKey<Owner, FieldA, count, KindA> first;
    IndexedKey<Owner, FieldB, count, KindB> second;

    constexpr std::array<KeyName, 2> Names() const { return {first.Names()[0], second.Names()[0]}; }

    template <std::size_t which, class Set>
    void Read(const LineContext& line, Set& set, std::size_t index) const {
        if constexpr (which == 0) {
            first.template Read<0>(line, set, index);
        } else {
            second.template Read<0>(line, set, index);
        }
    }
    template <class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        for (std::size_t index = 0; index < count; ++index) {
            first.WriteElement(sender, set, index);
            second.WriteElement(sender, set, index);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        visit(first.member);
        visit(second.member);
    }
};

template <class First, class Second>
constexpr auto InTurn(First first, Second second) {
    return Alternating<First, Second>{first, second};
}

enum class UnknownMode { ForgetsSelection, KeepsSelection };

/// A line that selects the video mode for the lines after it.
struct ModeSelector {
    const char* name;
    std::size_t Selections::*slot;
    UnknownMode unknownMode;
    /// Holds either two %s, for key and word, or one, for the word alone.
    const char* failureText;
    bool failureNamesKey;

    void Select(const LineContext& line) const;
    std::size_t Selected(const Selections& selections) const { return selections.*slot; }
    void WriteSelection(IMessageSender& sender, std::size_t index) const {
        sender.SendFormatted("%s: %s\n", name, VideoModes::words[index].data());
    }
};

/// A line that selects the frame height for the lines after it; a malformed one selects none.
struct HeightSelector {
    const char* name;

    void Select(const LineContext& line) const;
    std::size_t Selected(const Selections& selections) const { return FrameHeightSlot(selections.frameHeight); }
    void WriteSelection(IMessageSender& sender, std::size_t index) const {
        sender.SendFormatted("%s: %u\n", name, frameHeights[index]);
    }
};

/// A key inside a group: its value belongs to the entry that the group's selector has selected.
template <class Owner, class FieldType, std::size_t count, class Kind>
struct GroupKey {
    const char* name;
    std::array<FieldType, count> Owner::*member;
    Kind kind;

    constexpr GroupKey(const char* keyName, std::array<FieldType, count> Owner::*field, Kind valueKind)
        : name(keyName), member(field), kind(valueKind) {}

    static constexpr std::size_t Count() { return count; }

    /// The value is read, and reported if it is bad, even when nothing is selected and it is dropped.
    template <class Set>
    void Read(const LineContext& line, Set& set, std::size_t index) const {
        FieldType dropped;
        kind.Read(line, name, index < count ? (set.*member)[index] : dropped);
    }
    template <class Set>
    bool HoldsAnything(const Set& set, std::size_t index) const {
        const FieldType& field = (set.*member)[index];
        if constexpr (requires { field.HasAny(); }) {
            return field.HasAny();
        } else {
            return field.IsPresent();
        }
    }
};

/// A selector line and the keys whose values it files. An entry is written only when every key holds something for it.
template <class Selector, class... GroupKeys>
struct Group {
    Selector selector;
    std::tuple<GroupKeys...> keys;

    constexpr explicit Group(Selector lineSelector, GroupKeys... groupKeys)
        : selector(lineSelector), keys(groupKeys...) {}

    constexpr std::array<KeyName, 1 + sizeof...(GroupKeys)> Names() const {
        return std::apply(
            [&](const auto&... key) {
                return std::array<KeyName, 1 + sizeof...(GroupKeys)>{KeyName{selector.name}, KeyName{key.name}...};
            },
            keys);
    }

    template <std::size_t which, class Set>
    void Read(const LineContext& line, Set& set, std::size_t /*index*/) const {
        if constexpr (which == 0) {
            selector.Select(line);
        } else {
            std::get<which - 1>(keys).Read(line, set, selector.Selected(line.selections));
        }
    }
    template <class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        for (std::size_t index = 0; index < std::tuple_element_t<0, decltype(keys)>::Count(); ++index) {
            WriteEntry(sender, set, index);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        std::apply([&](const auto&... key) { (visit(key.member), ...); }, keys);
    }

private:
    template <class Set>
    void WriteEntry(IMessageSender& sender, const Set& set, std::size_t index) const {
        std::apply(
            [&](const auto&... key) {
                if ((key.HoldsAnything(set, index) && ...)) {
                    selector.WriteSelection(sender, index);
                    (key.kind.Write(sender, key.name, (set.*key.member)[index]), ...);
                }
            },
            keys);
    }
};

}  // namespace Morquil
