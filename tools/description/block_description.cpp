#include "description/block_description.h"

#include <algorithm>
#include <type_traits>
#include <utility>

#include "description/example_line.h"
#include "description/key_walk.h"
#include "description/kind_names.h"
#include "description/names.h"

namespace Morquil::Description {
namespace {

template <class Vocabulary, std::size_t index>
WordDescription DescribeWord() {
    WordDescription word{Vocabulary::words[index], {}};
    if constexpr (std::is_enum_v<typename Vocabulary::Value>) {
        word.constant = ConstantName<static_cast<typename Vocabulary::Value>(index)>();
    }
    return word;
}

template <class Vocabulary>
VocabularyDescription DescribeVocabulary() {
    VocabularyDescription vocabulary{.name = TypeName<Vocabulary>(), .enumeration = {}, .words = {}};
    if constexpr (std::is_enum_v<typename Vocabulary::Value>) {
        vocabulary.enumeration = TypeName<typename Vocabulary::Value>();
    }
    [&]<std::size_t... index>(std::index_sequence<index...>) {
        (vocabulary.words.push_back(DescribeWord<Vocabulary, index>()), ...);
    }
    (std::make_index_sequence<Vocabulary::words.Size()>());
    return vocabulary;
}

template <class One, class Other>
bool AreSame(One one, Other other) {
    if constexpr (std::is_same_v<One, Other>) {
        return one == other;
    } else {
        return false;
    }
}

template <class Description, class Member>
std::string_view KeyOf(Member wanted) {
    std::string_view key;
    VisitKeysOf<Description>([&](const KeyPlace& place, const auto& /*kind*/, auto member, const auto& /*row*/) {
        key = AreSame(member, wanted) ? place.key : key;
    });
    return key;
}

/// The keys with which the device reports what a limit allows; empty for a limit that no block offers.
template <class Offers, class Limit>
void AddOffers(std::vector<std::string_view>& keys, const Limit& limit) {
    if constexpr (requires { limit.first; }) {
        AddOffers<Offers>(keys, limit.first);
        AddOffers<Offers>(keys, limit.second);
    } else if constexpr (requires { limit.offer; }) {
        keys.push_back(KeyOf<Offers>(limit.offer));
    }
}

template <class Description>
std::vector<std::string_view> OffersOfKey(std::string_view name) {
    std::vector<std::string_view> keys;
    if constexpr (requires { typename Description::Offers; }) {
        ForEachKey<Description>([&](const auto& key) {
            if (key.Names()[0].text == name) {
                AddOffers<typename Description::Offers>(keys, key.limit);
            }
        });
    }
    return keys;
}

template <class Description>
BlockDescription DescribeBlock() {
    constexpr BlockFacts facts = factsOf<Description>;
    BlockDescription block{.header = Description::block.header.name,
                           .role = facts.role,
                           .isSentByLibrary = facts.isSent,
                           .savedPlace = facts.savedPlace,
                           .isPlayedBack = facts.isPlayedBack,
                           .keys = {}};
    VisitKeysOf<Description>(
        [&]<class Kind>(const KeyPlace& place, const Kind& /*kind*/, auto /*member*/, const auto& row) {
            block.keys.push_back({.key = place.key,
                                  .count = place.count,
                                  .kind = KindFacts<Kind>::name,
                                  .vocabulary = VocabularyName<typename KindFacts<Kind>::Type>(),
                                  .isRead = place.isRead,
                                  .isSelector = isSelector<Kind>,
                                  .group = place.group,
                                  .isNeeded = place.isNeeded,
                                  .use = place.use,
                                  .offeredBy = OffersOfKey<Description>(place.key),
                                  .example = ExampleLine<ChangeSetOf<Description>>(row, place)});
        });
    return block;
}

std::string FrameHeights() {
    std::string heights;
    for (const std::uint32_t height : frameHeights) {
        heights += " " + std::to_string(height);
    }
    return heights;
}

}  // namespace

std::vector<BlockDescription> DescribeBlocks() {
    std::vector<BlockDescription> blocks;
    ForEachBlock([&]<class Description>() { blocks.push_back(DescribeBlock<Description>()); });
    return blocks;
}

std::vector<VocabularyDescription> DescribeVocabularies() {
    std::vector<VocabularyDescription> all;
    const auto add = [&]<class Vocabulary>(std::type_identity<Vocabulary>) {
        const auto isKnown = [](const VocabularyDescription& known) { return known.name == TypeName<Vocabulary>(); };
        if constexpr (!std::is_same_v<Vocabulary, NoVocabulary>) {
            if (std::none_of(all.begin(), all.end(), isKnown)) {
                all.push_back(DescribeVocabulary<Vocabulary>());
            }
        }
    };
    ForEachBlock([&]<class Description>() {
        VisitKeysOf<Description>(
            [&]<class Kind>(const KeyPlace& /*place*/, const Kind& /*kind*/, auto /*member*/, const auto& /*row*/) {
                add(std::type_identity<typename KindFacts<Kind>::Type>());
            });
    });
    return all;
}

const std::vector<ValueKind>& ValueKinds() {
    // clang-format off
    static const std::vector<ValueKind> kinds{
        {"signed",                   "a whole number of 32 bits with a sign"},
        {"unsigned",                 "a whole number of 32 bits without a sign"},
        {"unsigned, written signed", "a whole number of 32 bits without a sign; from 2147483648 on the library writes it as a negative number"},
        {"decimal",                  "a decimal number, written with six decimals"},
        {"yes/no",                   "true or false"},
        {"command",                  "true does it once; false does nothing and is never written"},
        {"phase",                    "a device reports a number, anything but 0 being true; the library writes true or false"},
        {"hexadecimal",              "0x and hexadecimal digits; 0 is not written"},
        {"version",                  "two whole numbers with a point between them"},
        {"text",                     "text in UTF-8 to the end of the line; " + std::to_string(receivedTextLimit) + " bytes of it are kept"},
        {"timecode",                 "HH:MM:SS:FF, any character between the pairs of digits; the library writes HH:MM:SS;FF"},
        {"word",                     "one word of a vocabulary, upper and lower case alike"},
        {"word list",                "words of a vocabulary with blanks between them; an unknown one is passed over"},
        {"yes/no list",              "true or false for each word of a vocabulary, in its order"},
        {"signed range",             "minimum and maximum, two signed numbers"},
        {"unsigned range",           "minimum and maximum, two unsigned numbers"},
        {"decimal range",            "minimum and maximum, two decimal numbers"},
        {"frame height",             "the lines of a frame:" + FrameHeights()}};
    // clang-format on
    return kinds;
}

}  // namespace Morquil::Description
