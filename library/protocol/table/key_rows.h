#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "protocol/table/field.h"
#include "protocol/table/frame_heights.h"
#include "protocol/table/indexed_key_text.h"
#include "protocol/table/key_facts.h"
#include "protocol/table/key_limits.h"
#include "protocol/table/line_context.h"
#include "protocol/table/plain_tuple.h"
#include "protocol/table/side.h"
#include "protocol/text/message_sender.h"
#include "protocol/words/vocabularies.h"

/// The rows of a block's table. Reading, writing, merging and clearing all walk these rows, and so does everything else
/// that needs facts about a key. A row offers
///   `Names<side>()`                        the keys that this side reads,
///   `Read<which, side>(line, set, index)`  reads the value of its key number `which`,
///   `Write<side>(sender, set)`             writes the lines of what is present,
///   `ForEachMember(visit)`                 visits the change-set members that it fills,
///   `ForEachKey(visit)`                    visits its keys with their facts and limits, where it has any.
namespace Morquil {

/// A key as the reader knows it. A name that stands for indexed keys ("AudioOut" for "AudioOut0" ...) has their number.
struct KeyName {
    std::string_view text;
    std::size_t indexCount = 0;
};

template <Side side, class Kind, class FieldType>
void ReadValue(const Kind& kind, const LineContext& line, ReportedKey key, FieldType& field) {
    if constexpr (side == Side::Device && requires { kind.ReadAtDevice(line, key, field); }) {
        kind.ReadAtDevice(line, key, field);
    } else {
        kind.Read(line, key, field);
    }
}

template <Side side, class Kind, class FieldType>
void WriteValue(const Kind& kind, IMessageSender& sender, const char* key, const FieldType& field) {
    if constexpr (side == Side::Device && requires { kind.WriteAtDevice(sender, key, field); }) {
        kind.WriteAtDevice(sender, key, field);
    } else {
        kind.Write(sender, key, field);
    }
}

/// One key, one member.
template <class Owner, class FieldType, class Kind, class Limit = NoLimit>
struct Key {
    const char* name;
    FieldType Owner::*member;
    Kind kind;
    KeyFacts<Owner> facts;
    Limit limit;

    constexpr Key(const char* keyName, FieldType Owner::*field, Kind valueKind, KeyFacts<Owner> keyFacts = {},
                  Limit keyLimit = {})
        : name(keyName), member(field), kind(valueKind), facts(keyFacts), limit(keyLimit) {}

    constexpr Key Observed() const { return With(&KeyFacts<Owner>::use, KeyUse::Observed); }
    constexpr Key Command() const { return With(&KeyFacts<Owner>::use, KeyUse::Command); }
    constexpr Key NotSaved() const { return With(&KeyFacts<Owner>::isSaved, false); }
    constexpr Key Needed() const { return With(&KeyFacts<Owner>::isNeeded, true); }
    constexpr Key NeededWhile(Field<bool> Owner::*flag) const {
        return Needed().With(&KeyFacts<Owner>::neededWhile, flag);
    }

    /// Adds one of the limits of key_limits.h to any that the key already has.
    template <class Added>
    constexpr Key<Owner, FieldType, Kind, JointLimit<Limit, Added>> LimitedBy(Added added) const {
        return {name, member, kind, facts, Join(limit, added)};
    }
    template <class Offers, class Offer>
    constexpr auto LimitedBy(Offer Offers::*offer, std::int32_t beyond = 0) const {
        return LimitedBy(OfferLimit<Offer Offers::*>{offer, beyond});
    }
    template <class Offers, class Offer>
    constexpr auto LimitedPer(OfferSlot slot, Offer Offers::*offer) const {
        return LimitedBy(SlotLimit<Offer Offers::*>{slot, offer});
    }

    template <Side side = Side::Host>
    constexpr std::array<KeyName, 1> Names() const {
        return {KeyName{name}};
    }
    template <std::size_t which, Side side = Side::Host, class Set>
    void Read(const LineContext& line, Set& set, std::size_t /*index*/) const {
        ReadValue<side>(kind, line, name, set.*member);
    }
    template <Side side = Side::Host, class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        if ((set.*member).IsPresent()) {
            WriteValue<side>(kind, sender, name, set.*member);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        visit(member);
    }
    template <class Visit>
    constexpr void ForEachKey(Visit&& visit) const {
        visit(*this);
    }

private:
    template <class Fact>
    constexpr Key With(Fact KeyFacts<Owner>::*fact, Fact value) const {
        Key changed = *this;
        changed.facts.*fact = value;
        return changed;
    }
};

/// A row that hosts write and devices read, never the other way round: devices accept the key and do not report it.
template <class Row>
struct WriteOnly {
    Row row;

    constexpr explicit WriteOnly(Row writtenRow) : row(writtenRow) {}

    template <Side side = Side::Host>
    constexpr auto Names() const {
        if constexpr (side == Side::Device) {
            return row.template Names<side>();
        } else {
            return std::array<KeyName, 0>{};
        }
    }
    /// A device reports a value that it cannot read: nothing else would show that it was lost.
    template <std::size_t which, Side side, class Set>
    void Read(const LineContext& line, Set& set, std::size_t index) const {
        row.template Read<which, side>(line, set, index);
        if (!(set.*row.member).IsPresent()) {
            ReportValue(line, unreadableValue, row.name);
        }
    }
    template <Side side = Side::Host, class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        if constexpr (side == Side::Host) {
            row.Write(sender, set);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        row.ForEachMember(visit);
    }
    template <class Visit>
    constexpr void ForEachKey(Visit&& visit) const {
        row.ForEachKey(visit);
    }
};

/// Keys that differ only in an index, counted from 0, after their common stem; one array member.
template <class Owner, class FieldType, std::size_t count, class Kind, class Limit = NoLimit>
struct IndexedKey {
    const char* stem;
    std::array<FieldType, count> Owner::*member;
    Kind kind;
    Limit limit;
    static constexpr KeyFacts<Owner> facts{};

    constexpr IndexedKey(const char* keyStem, std::array<FieldType, count> Owner::*field, Kind valueKind,
                         Limit keyLimit = {})
        : stem(keyStem), member(field), kind(valueKind), limit(keyLimit) {}

    /// All elements have the same limits.
    template <class Offers, class Offer>
    constexpr IndexedKey<Owner, FieldType, count, Kind, OfferLimit<Offer Offers::*>> LimitedBy(
        Offer Offers::*offer) const {
        return {stem, member, kind, {offer, 0}};
    }

    template <Side side = Side::Host>
    constexpr std::array<KeyName, 1> Names() const {
        return {KeyName{stem, count}};
    }
    template <std::size_t which, Side side = Side::Host, class Set>
    void Read(const LineContext& line, Set& set, std::size_t index) const {
        ReadValue<side>(kind, line, ReportedKey(stem, index), (set.*member)[index]);
    }
    template <Side side = Side::Host, class Set>
    void WriteElement(IMessageSender& sender, const Set& set, std::size_t index) const {
        if ((set.*member)[index].IsPresent()) {
            WriteValue<side>(kind, sender, IndexedKeyText(stem, index).CString(), (set.*member)[index]);
        }
    }
    template <Side side = Side::Host, class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        for (std::size_t index = 0; index < count; ++index) {
            WriteElement<side>(sender, set, index);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        visit(member);
    }
    template <class Visit>
    constexpr void ForEachKey(Visit&& visit) const {
        visit(*this);
    }
};

/// Two indexed keys that alternate on the wire: first 0, second 0, first 1, second 1, ...
template <class First, class Second>
struct Alternating;

template <class Owner, class FieldA, class FieldB, std::size_t count, class KindA, class KindB, class LimitA,
          class LimitB>
struct Alternating<IndexedKey<Owner, FieldA, count, KindA, LimitA>, IndexedKey<Owner, FieldB, count, KindB, LimitB>> {
    IndexedKey<Owner, FieldA, count, KindA, LimitA> first;
    IndexedKey<Owner, FieldB, count, KindB, LimitB> second;

    template <Side side = Side::Host>
    constexpr std::array<KeyName, 2> Names() const {
        return {first.Names()[0], second.Names()[0]};
    }
    template <std::size_t which, Side side = Side::Host, class Set>
    void Read(const LineContext& line, Set& set, std::size_t index) const {
        if constexpr (which == 0) {
            first.template Read<0, side>(line, set, index);
        } else {
            second.template Read<0, side>(line, set, index);
        }
    }
    template <Side side = Side::Host, class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        for (std::size_t index = 0; index < count; ++index) {
            first.template WriteElement<side>(sender, set, index);
            second.template WriteElement<side>(sender, set, index);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        visit(first.member);
        visit(second.member);
    }
    template <class Visit>
    constexpr void ForEachKey(Visit&& visit) const {
        visit(first);
        visit(second);
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

/// A selector line and the keys whose values it assigns to an entry. An entry is written only when every key holds
/// something for it.
template <class Selector, class... GroupKeys>
struct Group {
    Selector selector;
    PlainTuple<GroupKeys...> keys;

    constexpr explicit Group(Selector lineSelector, GroupKeys... groupKeys)
        : selector(lineSelector), keys(groupKeys...) {}

    template <Side side = Side::Host>
    constexpr std::array<KeyName, 1 + sizeof...(GroupKeys)> Names() const {
        return keys.Apply([&](const auto&... key) {
            return std::array<KeyName, 1 + sizeof...(GroupKeys)>{KeyName{selector.name}, KeyName{key.name}...};
        });
    }

    template <std::size_t which, Side side = Side::Host, class Set>
    void Read(const LineContext& line, Set& set, std::size_t /*index*/) const {
        if constexpr (which == 0) {
            selector.Select(line);
        } else {
            keys.template Get<which - 1>().Read(line, set, selector.Selected(line.selections));
        }
    }
    template <Side side = Side::Host, class Set>
    void Write(IMessageSender& sender, const Set& set) const {
        for (std::size_t index = 0; index < keys.template Get<0>().Count(); ++index) {
            WriteEntry<side>(sender, set, index);
        }
    }
    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        keys.ForEach([&](const auto& key) { visit(key.member); });
    }
    template <class Visit>
    constexpr void ForEachKey(Visit&& /*visit*/) const {}

private:
    template <Side side, class Set>
    void WriteEntry(IMessageSender& sender, const Set& set, std::size_t index) const {
        keys.Apply([&](const auto&... key) {
            if ((key.HoldsAnything(set, index) && ...)) {
                selector.WriteSelection(sender, index);
                (WriteValue<side>(key.kind, sender, key.name, (set.*key.member)[index]), ...);
            }
        });
    }
};

}  // namespace Morquil
