// Prints the fuzzers' dictionary: every header, key and word of the protocol, from its tables.
#include <cstddef>
#include <cstdio>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "protocol/block_table.h"

namespace Morquil::Fuzz {
namespace {

class Dictionary {
public:
    void Add(std::string_view text) { entries_.emplace(text); }

    template <class Vocabulary>
    void AddWords() {
        for (std::size_t index = 0; index < Vocabulary::words.Size(); ++index) {
            Add(Vocabulary::words[index]);
        }
    }

    void Print() const {
        for (const std::string& entry : entries_) {
            std::puts(Quoted(entry).c_str());
        }
    }

private:
    static std::string Quoted(std::string_view text) {
        std::string quoted = "\"";
        for (const char character : text) {
            if (character == '"' || character == '\\') {
                quoted += '\\';
            }
            quoted += character == '\n' ? std::string("\\x0a") : std::string(1, character);
        }
        return quoted + '"';
    }

    std::set<std::string> entries_;
};

// The words of a kind of value; most kinds have none.
void AddKind(Dictionary& /*dictionary*/, ...) {}
template <class Vocabulary>
void AddKind(Dictionary& dictionary, const WordOf<Vocabulary>& /*kind*/) {
    dictionary.AddWords<Vocabulary>();
}
template <class Vocabulary>
void AddKind(Dictionary& dictionary, const WordList<Vocabulary>& /*kind*/) {
    dictionary.AddWords<Vocabulary>();
}

void AddSelector(Dictionary& dictionary, const ModeSelector& /*selector*/) {
    dictionary.AddWords<VideoModes>();
}
void AddSelector(Dictionary& dictionary, const HeightSelector& /*selector*/) {
    for (const std::uint32_t height : frameHeights) {
        dictionary.Add(std::to_string(height));
    }
}

// The words of a row of a block's table.
template <class Owner, class FieldType, class Kind>
void AddRow(Dictionary& dictionary, const Key<Owner, FieldType, Kind>& row) {
    AddKind(dictionary, row.kind);
}
template <class Row>
void AddRow(Dictionary& dictionary, const WriteOnly<Row>& row) {
    dictionary.Add(row.row.name);
    AddRow(dictionary, row.row);
}
template <class Owner, class FieldType, std::size_t count, class Kind>
void AddRow(Dictionary& dictionary, const IndexedKey<Owner, FieldType, count, Kind>& row) {
    AddKind(dictionary, row.kind);
}
template <class First, class Second>
void AddRow(Dictionary& dictionary, const Alternating<First, Second>& row) {
    AddRow(dictionary, row.first);
    AddRow(dictionary, row.second);
}
template <class Selector, class... GroupKeys>
void AddRow(Dictionary& dictionary, const Group<Selector, GroupKeys...>& row) {
    AddSelector(dictionary, row.selector);
    std::apply([&](const auto&... key) { (AddKind(dictionary, key.kind), ...); }, row.keys);
}
template <class Owner>
void AddRow(Dictionary& dictionary, const ConversionRows<Owner>& row) {
    AddSelector(dictionary, row.input);
    dictionary.AddWords<AspectRatios>();
}

/// A key as it stands in a line; an indexed one with its last index.
void AddKey(Dictionary& dictionary, const KeyName& key) {
    const std::string index = key.indexCount != 0 ? std::to_string(key.indexCount - 1) : std::string();
    dictionary.Add(std::string(key.text) + index + ": ");
}

template <class Description>
void AddBlock(Dictionary& dictionary) {
    dictionary.Add(std::string(Description::block.header.name) + ":\n");
    const auto addRow = [&](const auto& row) {
        for (const KeyName& key : row.Names()) {
            AddKey(dictionary, key);
        }
        AddRow(dictionary, row);
    };
    std::apply([&](const auto&... row) { (addRow(row), ...); }, Description::block.rows);
}

void PrintDictionary() {
    Dictionary dictionary;
    [&]<std::size_t... block>(std::index_sequence<block...>) {
        (AddBlock<typename std::tuple_element_t<block, BlockTable>::Description>(dictionary), ...);
    }
    (std::make_index_sequence<blockCount>());
    dictionary.Print();
}

}  // namespace
}  // namespace Morquil::Fuzz

int main() {
    Morquil::Fuzz::PrintDictionary();
    return 0;
}
