// How a vocabulary lists its words.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "protocol/text/name_table.h"

namespace Morquil {

/// A protocol word and the API constant that it stands for.
template <class Value>
struct Word {
    const char* word;
    Value value;
};

/// The words of rows that each hold `word` and `value`. Does not compile unless every value is its row's number; the
/// rest of the library uses the two interchangeably.
template <class Row, std::size_t N>
consteval NameTable<N> WordsFromRows(const Row (&rows)[N]) {
    std::array<std::string_view, N> words;
    for (std::size_t i = 0; i < N; ++i) {
        if (static_cast<std::size_t>(rows[i].value) != i) {
            throw "a row does not stand at the number of its API constant";
        }
        words[i] = rows[i].word;
    }
    return NameTable<N>(words);
}

template <class Value, std::size_t N>
consteval NameTable<N> WordsOf(const Word<Value> (&rows)[N]) {
    return WordsFromRows(rows);
}

}  // namespace Morquil
