// Reads values in the simplest way, without regard to speed: a string stream for every value, words compared one after
// the other.
#pragma once

#include <strings.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>

#include "protocol/table/field.h"
#include "protocol/table/value_kinds.h"

namespace Morquil::Bench {

inline bool SameText(const char* left, const char* right) {
    return strcasecmp(left, right) == 0;
}

/// The index of `word` in the vocabulary, or the number of its words.
template <class Vocabulary>
std::size_t LiteralWord(const char* word) {
    std::size_t index = 0;
    while (index < Vocabulary::words.Size() && !SameText(word, Vocabulary::words[index].data())) {
        ++index;
    }
    return index;
}

template <class T, class FieldType>
void LiteralRead(const Single<T>& /*kind*/, const char* value, FieldType& field) {
    std::istringstream stream(value);
    T number{};
    if (stream >> std::boolalpha >> number) {
        field.Set(number);
    }
}

template <class T>
void LiteralRead(const Limits<T>& /*kind*/, const char* value, Field<Range<T>>& field) {
    std::istringstream stream(value);
    Range<T> range;
    if (stream >> std::boolalpha >> range.minimum >> range.maximum) {
        field.Set(range);
    }
}

inline void LiteralRead(const UnsignedAsSigned& /*kind*/, const char* value, Field<std::uint32_t>& field) {
    LiteralRead(Unsigned(), value, field);
}

inline void LiteralRead(const HexVersion& /*kind*/, const char* value, Field<std::uint32_t>& field) {
    unsigned version = 0;
    field.Set(std::sscanf(value, "0x%x", &version) == 1 ? version : 0);
}

inline void LiteralRead(const OneShot& /*kind*/, const char* value, Field<bool>& field) {
    Field<bool> command;
    LiteralRead(YesNo(), value, command);
    if (command.IsPresent() && command.Get()) {
        field.Set(true);
    }
}

inline void LiteralRead(const Phase& /*kind*/, const char* value, Field<bool>& field) {
    Field<std::int32_t> number;
    LiteralRead(Signed(), value, number);
    if (number.IsPresent()) {
        field.Set(number.Get() != 0);
    }
}

template <class Vocabulary, class FieldType>
void LiteralRead(const WordOf<Vocabulary>& /*kind*/, const char* value, FieldType& field) {
    const std::size_t index = LiteralWord<Vocabulary>(value);
    if (index < Vocabulary::words.Size()) {
        field.Set(static_cast<std::int32_t>(index));
    }
}

template <class Vocabulary>
void LiteralRead(const WordList<Vocabulary>& /*kind*/, const char* value, SetField<Vocabulary>& field) {
    field.MarkReceived();
    std::istringstream stream(value);
    for (std::string word; stream >> word;) {
        const std::size_t index = LiteralWord<Vocabulary>(word.c_str());
        if (index < Vocabulary::words.Size()) {
            field.Add(index);
        }
    }
}

template <std::size_t count>
void LiteralRead(const TruthList<count>& /*kind*/, const char* value, Field<std::array<bool, count>>& field) {
    std::istringstream stream(value);
    stream >> std::boolalpha;
    std::array<bool, count> values = field.Get();
    std::size_t read = 0;
    for (bool truth = false; read < count && stream >> truth; ++read) {
        values[read] = truth;
    }
    if (read > 0) {
        field.Set(values);
    }
}

template <class FieldType>
void LiteralRead(const Text& /*kind*/, const char* value, FieldType& field) {
    field.Set(value, receivedTextLimit);
}

inline void LiteralRead(const Timecode& /*kind*/, const char* value, Field<std::uint32_t>& field) {
    std::uint32_t digits = 0;
    for (int at = 0; at < 11; ++at) {
        if (at % 3 == 2) {
            continue;
        }
        if (value[at] < '0' || value[at] > '9') {
            return;
        }
        digits = digits << 4 | static_cast<std::uint32_t>(value[at] - '0');
    }
    field.Set(digits);
}

inline void LiteralRead(const VersionPair& /*kind*/, const char* value, Field<ProtocolVersion>& field) {
    int flags = 0;
    int minor = 0;
    if (std::sscanf(value, "%d.%d", &flags, &minor) == 2) {
        field.Set({static_cast<std::uint32_t>(flags), static_cast<std::uint32_t>(minor)});
    }
}

}  // namespace Morquil::Bench
