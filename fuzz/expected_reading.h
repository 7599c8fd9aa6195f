// What a reader gets from a block that the library has written: the same, except for known differences. Each rule is
// implemented again here, in another way than in the library.
#pragma once

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "protocol/blocks/all.h"
#include "protocol/text/ascii.h"

namespace Morquil::Fuzz {

/// Most kinds of value read what they write.
template <class Kind, class FieldType>
FieldType ExpectedField(const Kind& /*kind*/, const FieldType& written) {
    return written;
}

/// Finite numbers are written with six decimals, others as words.
inline double ExpectedDecimal(double written) {
    std::array<char, 512> text;
    std::snprintf(text.data(), text.size(), "%f", written);
    return std::strtod(text.data(), nullptr);
}
inline Field<double> ExpectedField(const Decimal& /*kind*/, const Field<double>& written) {
    Field<double> expected;
    if (written.IsPresent() && std::isfinite(written.Get())) {
        expected.Set(ExpectedDecimal(written.Get()));
    }
    return expected;
}
inline Field<Range<double>> ExpectedField(const DecimalRange& /*kind*/, const Field<Range<double>>& written) {
    Field<Range<double>> expected;
    const Range<double>& range = written.Get();
    if (written.IsPresent() && std::isfinite(range.minimum) && std::isfinite(range.maximum)) {
        expected.Set({ExpectedDecimal(range.minimum), ExpectedDecimal(range.maximum)});
    }
    return expected;
}

inline Field<std::uint32_t> ExpectedField(const HexVersion& /*kind*/, const Field<std::uint32_t>& written) {
    return written.Get() != 0 ? written : Field<std::uint32_t>();
}

/// The command is sent whatever its value is.
inline Field<bool> ExpectedField(const OneShot& /*kind*/, const Field<bool>& written) {
    Field<bool> expected;
    if (written.IsPresent()) {
        expected.Set(true);
    }
    return expected;
}

/// Written as a word, read as a number.
inline Field<bool> ExpectedField(const Phase& /*kind*/, const Field<bool>& /*written*/) {
    return {};
}

/// Digits beyond 9 are written as other characters.
inline Field<std::uint32_t> ExpectedField(const Timecode& /*kind*/, const Field<std::uint32_t>& written) {
    for (int shift = 0; shift < 32; shift += 4) {
        if ((written.Get() >> shift & 0xF) > 9) {
            return {};
        }
    }
    return written;
}

/// A value without a word is not written.
template <class Vocabulary, class FieldType>
FieldType ExpectedField(const WordOf<Vocabulary>& /*kind*/, const FieldType& written) {
    const bool hasWord = written.Get() >= 0 && written.Get() < static_cast<std::int32_t>(Vocabulary::words.Size());
    return hasWord ? written : FieldType();
}

/// The index of the first word equal to `text`, or the number of words.
template <class Vocabulary>
std::size_t IndexOfWord(std::string_view text) {
    std::size_t index = 0;
    while (index < Vocabulary::words.Size() && !EqualsIgnoringCase(Vocabulary::words[index], text)) {
        ++index;
    }
    return index;
}

/// A list without words has no value; a word with blanks is read as several.
template <class Vocabulary>
SetField<Vocabulary> ExpectedField(const WordList<Vocabulary>& /*kind*/, const SetField<Vocabulary>& written) {
    SetField<Vocabulary> expected;
    for (std::size_t index = 0; index < Vocabulary::words.Size(); ++index) {
        std::istringstream pieces(written.Has(index) ? std::string(Vocabulary::words[index]) : std::string());
        for (std::string piece; pieces >> piece;) {
            expected.MarkReceived();
            if (IndexOfWord<Vocabulary>(piece) < Vocabulary::words.Size()) {
                expected.Add(IndexOfWord<Vocabulary>(piece));
            }
        }
    }
    return expected;
}

/// Leading blanks and colons are lost, and so is what exceeds the limit; a text of nothing else has no value.
template <class FieldType>
FieldType ExpectedText(const FieldType& written) {
    FieldType expected;
    const std::size_t start = written.Get().find_first_not_of(" :");
    if (written.IsPresent() && start != std::string_view::npos) {
        expected.Set(written.Get().substr(start), receivedTextLimit);
    }
    return expected;
}
template <class FieldType>
FieldType ExpectedField(const Text& /*kind*/, const FieldType& written) {
    return ExpectedText(written);
}
template <class FieldType>
FieldType ExpectedField(const NonEmptyText& /*kind*/, const FieldType& written) {
    return ExpectedText(written);
}

// The members that a row of a block's table fills.
template <class Owner, class FieldType, class Kind, class Limit, class Set>
void ExpectRow(const Key<Owner, FieldType, Kind, Limit>& row, const Set& written, Set& expected) {
    expected.*row.member = ExpectedField(row.kind, written.*row.member);
}
template <class Row, class Set>
void ExpectRow(const WriteOnly<Row>& /*row*/, const Set& /*written*/, Set& /*expected*/) {}
template <class Owner, class FieldType, std::size_t count, class Kind, class Limit, class Set>
void ExpectRow(const IndexedKey<Owner, FieldType, count, Kind, Limit>& row, const Set& written, Set& expected) {
    for (std::size_t index = 0; index < count; ++index) {
        (expected.*row.member)[index] = ExpectedField(row.kind, (written.*row.member)[index]);
    }
}
template <class First, class Second, class Set>
void ExpectRow(const Alternating<First, Second>& row, const Set& written, Set& expected) {
    ExpectRow(row.first, written, expected);
    ExpectRow(row.second, written, expected);
}
template <class Owner, class Set>
void ExpectRow(const ConversionRows<Owner>& row, const Set& written, Set& expected) {
    expected.*row.member = written.*row.member;
}

/// Whether an entry of a group has something to write.
template <class FieldType>
bool HasEntry(const FieldType& field) {
    return field.IsPresent();
}
template <class Vocabulary>
bool HasEntry(const SetField<Vocabulary>& field) {
    return field.HasAny();
}

/// Only whole entries are written.
template <class Selector, class... GroupKeys, class Set>
void ExpectRow(const Group<Selector, GroupKeys...>& row, const Set& written, Set& expected) {
    const auto expectEntry = [&](std::size_t index, const auto&... key) {
        if ((HasEntry((written.*key.member)[index]) && ...)) {
            (((expected.*key.member)[index] = ExpectedField(key.kind, (written.*key.member)[index])), ...);
        }
    };
    row.keys.Apply([&](const auto& first, const auto&... other) {
        for (std::size_t index = 0; index < first.Count(); ++index) {
            expectEntry(index, first, other...);
        }
    });
}

template <class Description>
ChangeSetOf<Description> ExpectedReading(const ChangeSetOf<Description>& written) {
    ChangeSetOf<Description> expected;
    Description::block.rows.ForEach([&](const auto& row) { ExpectRow(row, written, expected); });
    return expected;
}

}  // namespace Morquil::Fuzz
