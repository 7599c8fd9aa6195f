#include "description/description_file.h"

#include <set>

#include "description/block_description.h"
#include "description/features_description.h"
#include "description/outcomes.h"
#include "properties/json/property_json.h"

namespace Morquil::Description {
namespace {

using Json = nlohmann::ordered_json;

Json Texts(const std::vector<ValueKind>& kinds) {
    Json texts = Json::object();
    for (const ValueKind& kind : kinds) {
        texts[std::string(kind.name)] = kind.meaning;
    }
    return texts;
}

std::string_view NameOf(BlockRole role) {
    return role == BlockRole::Announcement ? "announcement" : role == BlockRole::Settings ? "settings" : "offer";
}

std::string_view NameOf(KeyUse use) {
    return use == KeyUse::Observed ? "observed" : use == KeyUse::Setting ? "setting" : "command";
}

Json DescribeKey(const BlockDescription& block, const KeyDescription& key) {
    Json row = {{"key", key.key}, {"kind", key.kind}};
    if (key.count != 0) {
        row["count"] = key.count;
    }
    const auto addUnlessEmpty = [&row](const char* name, std::string_view text) {
        if (!text.empty()) {
            row[name] = text;
        }
    };
    addUnlessEmpty("vocabulary", key.vocabulary);
    addUnlessEmpty("group", key.group);
    row["selects"] = key.isSelector;
    row["read"] = key.isRead;
    row["needed"] = key.isNeeded;
    if (block.role == BlockRole::Settings) {
        row["use"] = NameOf(key.use);
    }
    if (!key.offeredBy.empty()) {
        row["offeredBy"] = key.offeredBy;
    }
    addUnlessEmpty("example", key.example);
    return row;
}

Json DescribeBlockAsJson(std::size_t number, const BlockDescription& block, bool isNeeded) {
    Json row = {{"number", number},
                {"header", block.header},
                {"role", NameOf(block.role)},
                {"sentByLibrary", block.isSentByLibrary},
                {"needed", isNeeded}};
    if (block.savedPlace != 0) {
        row["saved"] = block.savedPlace;
        row["playedBack"] = block.isPlayedBack;
    }
    row["keys"] = Json::array();
    for (const KeyDescription& key : block.keys) {
        row["keys"].push_back(DescribeKey(block, key));
    }
    return row;
}

Json Blocks() {
    const std::set<std::string_view> needed = BlocksOfTheInitialState();
    Json rows = Json::array();
    for (const BlockDescription& block : DescribeBlocks()) {
        rows.push_back(DescribeBlockAsJson(rows.size() + 1, block, needed.contains(block.header)));
    }
    return rows;
}

Json Enumerations() {
    Json rows = Json::array();
    for (const VocabularyDescription& vocabulary : DescribeVocabularies()) {
        Json words = Json::array();
        for (const WordDescription& word : vocabulary.words) {
            Json row = {{"word", word.word}, {"value", words.size()}};
            if (!word.constant.empty()) {
                row["constant"] = word.constant;
            }
            words.push_back(row);
        }
        Json row = {{"name", vocabulary.name}};
        if (!vocabulary.enumeration.empty()) {
            row["enumeration"] = vocabulary.enumeration;
        }
        row["words"] = words;
        rows.push_back(row);
    }
    return rows;
}

Json Features() {
    Json rows = Json::array();
    for (const FeatureDescription& feature : DescribeFeatures()) {
        const auto id = static_cast<std::uint32_t>(feature.propertySet);
        Json row = {{"interface", feature.interfaceName},
                    {"propertySet", {{"value", id}, {"characters", FourCharacters(id)}}},
                    {"block", feature.block}};
        if (!feature.availability.empty()) {
            row["availability"] = feature.availability;
        }
        rows.push_back(row);
    }
    return rows;
}

Json Outcomes(const std::vector<Outcome>& outcomes) {
    Json rows = Json::array();
    for (const Outcome& outcome : outcomes) {
        rows.push_back(
            {{"name", outcome.name}, {"value", outcome.code}, {"cause", outcome.cause}, {"cure", outcome.cure}});
    }
    return rows;
}

}  // namespace

nlohmann::ordered_json DescribeAsJson() {
    return {{"format", 1},
            {"name", "MorquilAPI"},
            {"version", MORQUIL_VERSION},
            {"kinds", Texts(ValueKinds())},
            {"blocks", Blocks()},
            {"vocabularies", Enumerations()},
            {"features", Features()},
            {"properties", Properties::DescribeProperties()},
            {"results", Outcomes(Results())},
            {"connectionFailures", Outcomes(ConnectionFailures())}};
}

}  // namespace Morquil::Description
