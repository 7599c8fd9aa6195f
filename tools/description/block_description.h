// The protocol as plain data, for everything that does not walk the tables itself: the documentation, the description
// file, the fuzzers' dictionary.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "protocol/table/block_facts.h"
#include "protocol/table/key_facts.h"

namespace Morquil::Description {

/// A word of the protocol and the API constant with its value; empty if the API has none.
struct WordDescription {
    std::string_view word;
    std::string_view constant;
};

struct VocabularyDescription {
    std::string_view name;         // "VideoSources"
    std::string_view enumeration;  // "_MorquilAPIVideoSource"; empty if the API has none
    std::vector<WordDescription> words;
};

struct KeyDescription {
    std::string_view key;
    std::size_t count = 0;        // of an indexed key: how many there are; the number after the key counts from 0
    std::string_view kind;        // "signed", "word", ...; see ValueKinds()
    std::string_view vocabulary;  // of a word or a list of words
    bool isRead = true;           // whether a line with this key is understood when it is received
    bool isSelector = false;      // its value selects what the following keys of its group apply to
    std::string_view group;       // the selector that this key belongs to
    bool isNeeded = false;        // whether a connection waits for it, even if only while there is a signal
    KeyUse use = KeyUse::Setting;
    std::vector<std::string_view> offeredBy;  // the keys of the block's offers that limit it
    std::string example;  // a line as it is written, without its line feed; empty for a key without one
};

struct BlockDescription {
    std::string_view header;
    BlockRole role = BlockRole::Settings;
    bool isSentByLibrary = false;
    std::size_t savedPlace = 0;  // in a settings file, counted from 1; 0 if it is not saved
    bool isPlayedBack = false;   // whether loading a settings file sends it
    std::vector<KeyDescription> keys;
};

/// All blocks, in numerical order.
std::vector<BlockDescription> DescribeBlocks();

/// All vocabularies that blocks use, in the order of first use.
std::vector<VocabularyDescription> DescribeVocabularies();

struct ValueKind {
    std::string_view name;
    std::string meaning;
};

/// The kinds of value that keys can have.
const std::vector<ValueKind>& ValueKinds();

}  // namespace Morquil::Description
