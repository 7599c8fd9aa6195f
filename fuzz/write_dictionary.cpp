// Prints the fuzzers' dictionary: every header, key and word of the protocol, from its description.
#include <cstdio>
#include <set>
#include <string>
#include <string_view>

#include "description/block_description.h"
#include "protocol/table/frame_heights.h"

namespace Morquil::Fuzz {
namespace {

std::string DictionaryString(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') {
            quoted += '\\';
        }
        quoted += character == '\n' ? std::string("\\x0a") : std::string(1, character);
    }
    return quoted + '"';
}

/// A key as written in a line; an indexed one with its last index.
std::string KeyInLine(const Description::KeyDescription& key) {
    return std::string(key.key) + (key.count != 0 ? std::to_string(key.count - 1) : std::string()) + ": ";
}

std::set<std::string> Entries() {
    std::set<std::string> entries;
    for (const Description::BlockDescription& block : Description::DescribeBlocks()) {
        entries.insert(std::string(block.header) + ":\n");
        for (const Description::KeyDescription& key : block.keys) {
            entries.insert(KeyInLine(key));
        }
    }
    for (const Description::VocabularyDescription& vocabulary : Description::DescribeVocabularies()) {
        for (const Description::WordDescription& word : vocabulary.words) {
            entries.emplace(word.word);
        }
    }
    for (const std::uint32_t height : frameHeights) {
        entries.insert(std::to_string(height));
    }
    return entries;
}

}  // namespace
}  // namespace Morquil::Fuzz

int main() {
    for (const std::string& entry : Morquil::Fuzz::Entries()) {
        std::puts(Morquil::Fuzz::DictionaryString(entry).c_str());
    }
    return 0;
}
