// The protocol as plain data, for everybody who does not want to walk the tables: the documentation, the description
// file, the fuzzers' dictionary.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "protocol/table/block_facts.h"
#include "protocol/table/key_facts.h"

namespace Morquil::Description {

/// A word of the protocol and the constant of the API that has its value; empty where the API has none.
struct WordDescription {
    std::string_view word;
    std::string_view constant;
};

struct VocabularyDescription {
    std::string_view name;         // "VideoSources"
    std::string_view enumeration;  // "_MorquilAPIVideoSource"; empty where the API has none
    std::vector<WordDescription> words;
};

struct KeyDescription {
    std::string_view key;
    std::size_t count = 0;        // of an indexed key: how many there are, counted from 0 behind the key
    std::string_view kind;        // "signed", "word", ...; see ValueKinds()
    std::string_view vocabulary;  // of a word or a list of words
    bool isRead = true;           // whether a line with this key is understood when it arrives
    bool isSelector = false;      // its value tells what the keys of its group after it belong to
    std::string_view group;       // the selector that this key belongs to
    bool isNeeded = false;        // whether a connection waits for it, if maybe only while there is a signal
    KeyUse use = KeyUse::Setting;
    std::vector<std::string_view> offeredBy;  // the keys of the block's offers that limit it
    std::string example;  // a line as it is written, without its line feed; empty for a key without one
};

struct BlockDescription {
    std::string_view header;
    BlockRole role = BlockRole::Settings;
    bool isSentByLibrary = false;
    std::size_t savedPlace = 0;  // in a settings file, counted from 1; 0 when no file holds it
    bool isPlayedBack = false;   // whether loading a settings file sends it
    std::vector<KeyDescription> keys;
};

/// All blocks, in the order of their numbers.
std::vector<BlockDescription> DescribeBlocks();

/// All vocabularies that blocks use, in the order of their first use.
std::vector<VocabularyDescription> DescribeVocabularies();

struct ValueKind {
    std::string_view name;
    std::string meaning;
};

/// The kinds of value that keys have.
const std::vector<ValueKind>& ValueKinds();

}  // namespace Morquil::Description
