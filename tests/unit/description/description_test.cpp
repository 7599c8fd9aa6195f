// Whether the description says what the library does, and leaves nothing out.
#include "description/description_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "properties/property.h"
#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"

namespace Morquil::Testing {
namespace {

using Json = nlohmann::ordered_json;

const Json& Whole() {
    static const Json whole = Description::DescribeAsJson();
    return whole;
}

std::string InterfaceDefinitions() {
    std::ifstream file(MORQUIL_SOURCES "/api/MorquilAPI.idl", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Enumeration -> its constants, as they are defined.
std::map<std::string, std::vector<std::string>> DefinedEnumerations() {
    const std::string text = InterfaceDefinitions();
    const std::regex enumerations(R"(typedef \[v1_enum\] enum (\w+)\s*\{([^}]*)\})");
    const std::regex constants(R"((\w+)\s*=)");
    std::map<std::string, std::vector<std::string>> found;
    for (std::sregex_iterator one(text.begin(), text.end(), enumerations), end; one != end; ++one) {
        const std::string body = (*one)[2];
        for (std::sregex_iterator constant(body.begin(), body.end(), constants); constant != end; ++constant) {
            found[(*one)[1]].push_back((*constant)[1]);
        }
    }
    return found;
}

class ReceivedBlocks final : public EveryBlockSink<ReceivedBlocks> {
public:
    template <class BlockDescription>
    void OnBlock(const ChangeSetOf<BlockDescription>& set) {
        ++blocks;
        ChangeSetOf<BlockDescription> none;
        isEmpty = !Merge(none, set);
    }
    void OnPing() override {}
    void OnAcknowledge(bool) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* text) override { errors += text; }

    int blocks = 0;
    bool isEmpty = true;
    std::string errors;
};

/// The result of parsing a block of one line, or of two: the line that selects what it belongs to comes first.
ReceivedBlocks Parse(const Json& block, const Json& key) {
    std::string text = block.at("header").get<std::string>() + ":\n";
    for (const Json& other : block.at("keys")) {
        if (other.at("selects")) {
            text += other.at("example").get<std::string>() + "\n";
        }
    }
    text += key.at("example").get<std::string>() + "\n\n";
    ReceivedBlocks received;
    MorquilTextProtocolParser parser;
    parser.SetSink(&received);
    parser.Feed(text.data(), text.size());
    return received;
}

TEST(Description, HasTheBlocksInTheOrderOfTheirNumbers) {
    std::vector<std::string> expected;
    std::apply(
        [&]<class... Entries>(Entries...) { (expected.emplace_back(Entries::Description::block.header.name), ...); },
        BlockTable());
    std::vector<std::string> described;
    for (const Json& block : Whole().at("blocks")) {
        described.push_back(block.at("header"));
    }
    EXPECT_EQ(described, expected);
}

TEST(Description, ShowsForEveryKeyALineThatIsRead) {
    int lines = 0;
    for (const Json& block : Whole().at("blocks")) {
        for (const Json& key : block.at("keys")) {
            // A phase is written as a word and read as a number.
            if (key.at("read") && key.at("kind") != "phase") {
                const ReceivedBlocks received = Parse(block, key);
                EXPECT_EQ(received.errors, "") << block.at("header") << key;
                EXPECT_EQ(received.blocks, 1) << block.at("header") << key;
                EXPECT_TRUE(!received.isEmpty || key.at("selects")) << block.at("header") << key;
                ++lines;
            }
        }
    }
    EXPECT_GT(lines, 200);
}

TEST(Description, MarksEveryWriteOnlyKeyAsNotRead) {
    int lines = 0;
    for (const Json& block : Whole().at("blocks")) {
        for (const Json& key : block.at("keys")) {
            if (!key.at("read")) {
                EXPECT_NE(Parse(block, key).errors, "") << block.at("header") << key;
                ++lines;
            }
        }
    }
    EXPECT_EQ(lines, 3);
}

TEST(Description, HasEveryKindAndVocabularyThatAKeyNames) {
    std::set<std::string> vocabularies;
    for (const Json& vocabulary : Whole().at("vocabularies")) {
        vocabularies.insert(vocabulary.at("name"));
    }
    for (const Json& block : Whole().at("blocks")) {
        for (const Json& key : block.at("keys")) {
            EXPECT_TRUE(Whole().at("kinds").contains(key.at("kind"))) << key;
            EXPECT_TRUE(!key.contains("vocabulary") || vocabularies.contains(key.at("vocabulary"))) << key;
        }
    }
}

TEST(Description, NamesTheConstantsOfEveryVocabularyAsTheyAreDefined) {
    const auto defined = DefinedEnumerations();
    int compared = 0;
    for (const Json& vocabulary : Whole().at("vocabularies")) {
        if (vocabulary.contains("enumeration")) {
            std::vector<std::string> constants;
            for (const Json& word : vocabulary.at("words")) {
                if (word.contains("constant")) {
                    constants.push_back(word.at("constant"));
                }
            }
            EXPECT_EQ(constants, defined.at(vocabulary.at("enumeration"))) << vocabulary.at("name");
            ++compared;
        }
    }
    EXPECT_GT(compared, 30);
}

TEST(Description, ExplainsEveryReasonForAFailedConnection) {
    std::set<std::string> explained;
    for (const Json& reason : Whole().at("connectionFailures")) {
        explained.insert(reason.at("name"));
        EXPECT_FALSE(reason.at("cause").get<std::string>().empty());
    }
    const auto defined = DefinedEnumerations().at("_MorquilConnectToFailure");
    EXPECT_EQ(explained, std::set<std::string>(defined.begin(), defined.end()));
}

TEST(Description, MarksTheKeysThatAConnectionNeeds) {
    const auto isNeeded = [](std::string_view header, std::string_view name) {
        for (const Json& block : Whole().at("blocks")) {
            for (const Json& key : block.at("keys")) {
                if (block.at("header") == header && key.at("key") == name) {
                    return key.at("needed").get<bool>();
                }
            }
        }
        ADD_FAILURE() << header << ", " << name;
        return false;
    };
    EXPECT_TRUE(isNeeded("VIDEO INPUT", "Video source"));
    EXPECT_TRUE(isNeeded("VIDEO INPUT AVAILABILITY", "Audio sources"));
    EXPECT_FALSE(isNeeded("VIDEO INPUT AVAILABILITY", "Video pixel formats"));
    EXPECT_TRUE(isNeeded("VIDEO OUTPUT", "Transition setting"));
    EXPECT_FALSE(isNeeded("VIDEO OUTPUT", "Still frame action"));
    EXPECT_TRUE(isNeeded("PRESET AVAILABILITY", "Preset range"));
    EXPECT_FALSE(isNeeded("PRESET", "Save"));
    EXPECT_FALSE(isNeeded("ALIGN", "Align size X left"));
}

TEST(Description, NamesTheKeyThatOffersTheValuesOfASetting) {
    for (const Json& block : Whole().at("blocks")) {
        for (const Json& key : block.at("keys")) {
            if (block.at("header") == "VIDEO PROC AMP" && key.at("key") == "Gain") {
                EXPECT_EQ(key.at("offeredBy"), Json::array({"Gain range"}));
                return;
            }
        }
    }
    FAIL() << "no gain";
}

TEST(Description, HasEveryPropertyWithItsInterface) {
    ASSERT_EQ(Whole().at("properties").size(), Properties::AllProperties().size());
    const std::string definitions = InterfaceDefinitions();
    for (const Json& property : Whole().at("properties")) {
        const std::string heading = "interface " + property.at("interface").get<std::string>() + " :";
        EXPECT_NE(definitions.find(heading), std::string::npos) << property;
    }
}

TEST(Description, PutsEveryPropertyIntoTheSetOfItsFeature) {
    const std::string definitions = InterfaceDefinitions();
    std::map<std::string, std::uint32_t> sets = {{"IMorquilDevice", morquilDeviceControlPropertySetId}};
    for (const Json& feature : Whole().at("features")) {
        sets[feature.at("interface")] = feature.at("propertySet").at("value");
    }
    for (const Json& property : Whole().at("properties")) {
        const std::regex definition(property.at("propertySet").get<std::string>() + R"(\s*= (0x\w+))");
        std::smatch number;
        ASSERT_TRUE(std::regex_search(definitions, number, definition)) << property;
        EXPECT_EQ(std::stoul(number[1], nullptr, 16), sets.at(property.at("interface"))) << property;
    }
}

TEST(Description, GivesEveryPropertyTheWordsOfItsEnumeration) {
    std::map<std::string, Json> words;
    for (const Json& vocabulary : Whole().at("vocabularies")) {
        for (const Json& word : vocabulary.at("words")) {
            words[vocabulary.value("enumeration", "")].push_back(word.at("word"));
        }
    }
    int compared = 0;
    for (const Json& property : Whole().at("properties")) {
        if (property.at("kind") == "word") {
            EXPECT_EQ(property.at("words"), words.at(property.at("enumeration"))) << property;
            ++compared;
        }
    }
    EXPECT_GT(compared, 50);
}

TEST(Description, NamesTheBlockThatEachFeatureFollows) {
    std::set<std::string> interfaces;
    for (const Json& feature : Whole().at("features")) {
        interfaces.insert(feature.at("interface"));
        EXPECT_EQ(feature.at("propertySet").at("characters").get<std::string>().size(), 4u);
    }
    EXPECT_EQ(interfaces.size(), 19u);
    for (const Json& property : Whole().at("properties")) {
        const std::string interfaceName = property.at("interface");
        EXPECT_TRUE(interfaceName == "IMorquilDevice" || interfaces.contains(interfaceName)) << property;
    }
}

}  // namespace
}  // namespace Morquil::Testing
