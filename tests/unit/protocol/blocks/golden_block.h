// Walks a hand-written copy of one block's table and checks the library against it, in both directions.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "protocol/text/ascii.h"
#include "tests/unit/protocol/recording_sink.h"

namespace Morquil {

/// The members that a list must have, and no others.
struct Members {
    template <class... Values>
    explicit Members(Values... values) : indexes{static_cast<std::size_t>(values)...} {}
    std::vector<std::size_t> indexes;
};

template <class FieldType, class Expected>
bool Holds(const FieldType& field, const Expected& expected) {
    using Value = std::remove_cvref_t<decltype(field.Get())>;
    if constexpr (std::is_arithmetic_v<Value>) {
        return field.IsPresent() && field.Get() == static_cast<Value>(expected);
    } else {
        return field.IsPresent() && field.Get() == Value(expected);
    }
}

template <class Vocabulary>
bool Holds(const SetField<Vocabulary>& field, const Members& expected) {
    std::vector<std::size_t> indexes;
    for (std::size_t index = 0; index < SetField<Vocabulary>::size; ++index) {
        if (field.Has(index)) {
            indexes.push_back(index);
        }
    }
    return field.IsPresent() && indexes == expected.indexes;
}

/// The entry of an array member, where a table line needs a member.
template <class Owner, class Array>
struct At {
    At(Array Owner::*arrayMember, std::size_t entry) : member(arrayMember), index(entry) {}
    const typename Array::value_type& operator()(const Owner& set) const { return (set.*member)[index]; }

    Array Owner::*member;
    std::size_t index;
};

/// One key: the line as a device may send it, the field that it fills, and the line as the library writes it, which is
/// the same unless said otherwise. The text of a group holds all its lines.
template <class Set>
struct GoldenLine {
    template <class Member, class Expected>
    GoldenLine(std::string received, Member member, Expected expected, std::string written)
        : in(std::move(received)),
          back(std::move(written)),
          isRead([member, expected](const Set& set) { return Holds(std::invoke(member, set), expected); }) {}
    template <class Member, class Expected>
    GoldenLine(std::string text, Member member, Expected expected) : GoldenLine(text, member, expected, text) {}

    std::string in;
    std::string back;
    std::function<bool(const Set&)> isRead;
};

/// A line that is reported and changes nothing.
struct BadLine {
    std::string line;
    std::string report;
};

inline BadLine NotAValue(const std::string& key, const std::string& value, const std::string& reportName) {
    return {key + ": " + value, "Failed to parse \"" + reportName + "\" value string \"" + value + "\"\n"};
}
inline BadLine NotAValue(const std::string& key, const std::string& value) {
    return NotAValue(key, value, key);
}
inline BadLine NotARange(const std::string& key, const std::string& value, const std::string& reportName) {
    return {key + ": " + value, "Failed to parse \"" + reportName + "\" range string \"" + value + "\"\n"};
}
inline BadLine NotARange(const std::string& key, const std::string& value) {
    return NotARange(key, value, key);
}

/// Whole lines, none for an empty text.
inline std::string AsLines(const std::string& text) {
    return text.empty() ? text : text + "\n";
}

/// A block, ready to be fed.
inline std::string BlockOf(const std::string& header, const std::string& lines) {
    return header + ":\n" + AsLines(lines) + "\n";
}

/// Feeds one block of these lines to a new parser and returns the sink's records. On the heap: all blocks are large.
inline std::unique_ptr<RecordedParser> FedWith(const std::string& header, const std::string& lines) {
    auto recorded = std::make_unique<RecordedParser>();
    recorded->Feed(BlockOf(header, lines));
    return recorded;
}

/// What the library writes for a block with these lines. The lines must be valid.
template <class Description>
std::string WrittenBack(const std::string& header, const std::string& lines) {
    const auto recorded = FedWith(header, lines);
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events()) << lines;
    return BlockText<Description>(recorded->sink.Last<Description>());
}

/// The lines with every key, but no value, changed by `change`.
template <class Change>
std::string WithKeys(std::string lines, Change change) {
    bool inKey = true;
    for (char& character : lines) {
        inKey = character == '\n' || (inKey && character != ':');
        character = inKey ? change(character) : character;
    }
    return lines;
}

inline char ToUpper(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

/// A block's table: its header and its keys in the order in which they are written.
template <class Description>
struct GoldenBlock {
    using Set = ChangeSetOf<Description>;

    std::string header;
    std::vector<GoldenLine<Set>> lines;

    std::string AllLines() const {
        std::string all;
        for (const auto& line : lines) {
            all += (all.empty() ? "" : "\n") + line.in;
        }
        return all;
    }
    std::string AllLinesBackwards() const {
        std::string all;
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            all += (all.empty() ? "" : "\n") + line->in;
        }
        return all;
    }
    std::string WholeText() const {
        std::string text = header + ":\n";
        for (const auto& line : lines) {
            text += AsLines(line.back);
        }
        return text + "\n";
    }

    /// Each key alone fills its field and is written back alone, whatever the case of its letters.
    void ExpectReadsAndWritesEveryLine() const {
        for (const auto& line : lines) {
            for (const std::string& in : {line.in, WithKeys(line.in, ToUpper), WithKeys(line.in, FoldCase)}) {
                const auto recorded = FedWith(header, in);
                const Set& set = recorded->sink.template Last<Description>();
                EXPECT_TRUE(line.isRead(set)) << in;
                EXPECT_EQ(BlockText<Description>(set), BlockOf(header, line.back)) << in;
                EXPECT_EQ(recorded->sink.AllEvents().size(), 1U) << in;
            }
        }
    }

    /// Keys are written in the table's order, not in that of arrival.
    void ExpectWritesItsLinesInOrder() const {
        EXPECT_EQ(WrittenBack<Description>(header, AllLines()), WholeText());
        EXPECT_EQ(WrittenBack<Description>(header, AllLinesBackwards()), WholeText());
    }

    /// A bad line after the good ones is reported, once, and leaves every field as it is.
    void ExpectReports(const std::vector<BadLine>& badLines) const {
        for (const BadLine& bad : badLines) {
            const auto recorded = FedWith(header, AllLines() + "\n" + bad.line);
            EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events{bad.report}) << bad.line;
            EXPECT_EQ(BlockText<Description>(recorded->sink.template Last<Description>()), WholeText()) << bad.line;
        }
    }

    /// A line that is neither reported nor changes anything.
    void ExpectIgnores(const std::string& line) const {
        EXPECT_EQ(WrittenBack<Description>(header, AllLines() + "\n" + line), WholeText()) << line;
    }
};

}  // namespace Morquil
