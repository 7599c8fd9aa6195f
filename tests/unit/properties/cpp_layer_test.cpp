// The C++ layer's properties by name against the table: the same rows, values, offers, checks and changes.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "properties/property.h"
#include "tests/unit/properties/complete_host.h"

namespace Morquil::Testing {
namespace {

using namespace Properties;

using LayerTable = morquil::detail::PropertyTable<>;

TEST(CppLayer, HasTheRowsOfTheTable) {
    ASSERT_EQ(std::size(LayerTable::rows), AllProperties().size());
    for (std::size_t at = 0; at < AllProperties().size(); ++at) {
        const Property& property = AllProperties()[at];
        const morquil::detail::PropertyRow& row = LayerTable::rows[at];
        const morquil::PropertyInfo& info = row.info;
        EXPECT_EQ(info.name, property.name);
        EXPECT_EQ(info.summary, property.summary) << property.name;
        EXPECT_EQ(static_cast<int>(info.kind), static_cast<int>(property.type.kind)) << property.name;
        EXPECT_EQ(info.unit, NameOf(property.type.unit)) << property.name;
        EXPECT_EQ(info.set, property.set) << property.name;
        EXPECT_EQ(info.isReadable, property.IsReadable()) << property.name;
        EXPECT_EQ(info.isWritable, property.IsWritable()) << property.name;
        EXPECT_EQ(info.mostBytes, property.type.mostBytes) << property.name;
        EXPECT_EQ(row.item, property.number - 1) << property.name;
        EXPECT_EQ(row.exists != nullptr, property.exists != nullptr) << property.name;
        EXPECT_EQ(row.offer != nullptr, property.offer != nullptr) << property.name;
    }
}

TEST(CppLayer, HasTheLimitsAndWordsOfTheTable) {
    for (std::size_t at = 0; at < AllProperties().size(); ++at) {
        const ValueType& type = AllProperties()[at].type;
        const morquil::detail::PropertyRow& row = LayerTable::rows[at];
        if (type.kind == Kind::Number || type.kind == Kind::Bits) {
            EXPECT_EQ(row.info.smallest, type.smallest) << row.info.name;
            EXPECT_EQ(row.info.largest, type.largest) << row.info.name;
        }
        ASSERT_EQ(row.words.count, type.words.size()) << row.info.name;
        for (std::size_t word = 0; word < type.words.size(); ++word) {
            EXPECT_EQ(row.words.first[word].text, type.words[word].word) << row.info.name;
            EXPECT_EQ(row.words.first[word].value, type.words[word].value) << row.info.name;
        }
    }
}

std::string TextInTable(const Property& property, const std::optional<Value>& value) {
    return value ? FormatValue(property.type, *value) : "not known";
}
std::string TextInLayer(const std::optional<morquil::PropertyValue>& value) {
    return value ? value->Text() : "not known";
}

TEST(CppLayer, HasTheValuesOfTheTable) {
    const CompleteHost host;
    for (const Property& property : AllProperties()) {
        const morquil::Property own = host.Device()[property.name];
        EXPECT_EQ(TextInLayer(own.Known()), TextInTable(property, Read(property, host.Device()))) << property.name;
        EXPECT_EQ(own.Exists(), Exists(property, host.Device())) << property.name;
    }
}

std::string OfferOf(const morquil::Property& property) {
    std::string text;
    for (const morquil::PropertyValue& value : property.GetOffered()) {
        text += (text.empty() ? "" : ", ") + value.Text();
    }
    try {
        const morquil::Range<morquil::PropertyValue> range = property.GetRange();
        return range.min.Text() + " to " + range.max.Text();
    } catch (const morquil::NotKnown&) {
        return text;
    }
}

// With the picture heights that ranges of lines depend on.
TEST(CppLayer, OffersWhatTheTableOffers) {
    for (const char* const mode : {"525i59.94 NTSC", "625i50 PAL", "720p50", "1080i50", "2160p25"}) {
        CompleteHost host;
        host.DeviceSends("VIDEO INPUT:\nVideo mode: " + std::string(mode) + "\n\n");
        host.DeviceSends("VIDEO OUTPUT:\nVideo mode: " + std::string(mode) + "\n\n");
        for (const Property& property : AllProperties()) {
            EXPECT_EQ(OfferOf(host.Device()[property.name]), FormatOffer(property, Offered(property, host.Device())))
                << property.name << " at " << mode;
        }
    }
}

const std::vector<std::string>& TextsToTry() {
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> all = {"0",
                                        "1",
                                        "3",
                                        "-5",
                                        "+7",
                                        "0x1F",
                                        "0X",
                                        "99999999999",
                                        "4294967295",
                                        "1.5",
                                        "-0.25",
                                        "1e1",
                                        "nan",
                                        "inf",
                                        ".5",
                                        " 1",
                                        "1 ",
                                        "TRUE",
                                        "no",
                                        "On",
                                        "maybe",
                                        "10:00:00:00",
                                        "23.59;59:59",
                                        "24:00:00:00",
                                        "1:2:3:4",
                                        "10.0.0.1",
                                        "Studio",
                                        "a\nb",
                                        "-",
                                        "0000000001",
                                        std::string("a\0b", 3),
                                        std::string(49, 'x'),
                                        std::string(50, 'x')};
        for (const Property& property : AllProperties()) {
            if (!property.type.words.empty()) {
                all.emplace_back(property.type.words.front().word);
                all.emplace_back(property.type.words.back().word);
            }
        }
        return all;
    }();
    return texts;
}

TEST(CppLayer, AcceptsTheTextsThatTheTableAccepts) {
    const CompleteHost host;
    for (const Property& property : AllProperties()) {
        const bool isParsed = property.type.kind != Kind::Nothing && property.type.kind != Kind::Address;
        for (const std::string& text : isParsed ? TextsToTry() : std::vector<std::string>()) {
            const bool isAccepted = std::holds_alternative<Value>(Check(property, host.Device(), text));
            bool isAcceptedHere = true;
            try {
                host.Device()[property.name].Check(text);
            } catch (const morquil::InvalidArgument&) {
                isAcceptedHere = false;
            }
            EXPECT_EQ(isAcceptedHere, isAccepted) << property.name << ": " << text;
        }
    }
}

TEST(CppLayer, SendsWhatTheTableSends) {
    CompleteHost host;
    int sent = 0;
    for (const Property& property : AllProperties()) {
        for (const std::string& text : TextsToTry()) {
            const Checked checked = Check(property, host.Device(), text);
            if (property.type.kind != Kind::Nothing && std::holds_alternative<Value>(checked)) {
                const Value& value = std::get<Value>(checked);
                const std::string expected = host.BlockSentBy([&] { Set(property, host.Device(), value); });
                EXPECT_EQ(host.BlockSentBy([&] { host.Device()[property.name].Set(text); }), expected) << property.name;
                EXPECT_NE(expected, "") << property.name;
                ++sent;
                break;
            }
        }
    }
    EXPECT_GT(sent, 100);
}

TEST(CppLayer, SendsCommandsThatHaveNoValue) {
    CompleteHost host;
    for (const Property& property : AllProperties()) {
        if (property.type.kind == Kind::Nothing) {
            const std::string expected = host.BlockSentBy([&] { Set(property, host.Device(), Value(std::string())); });
            EXPECT_EQ(host.BlockSentBy([&] { host.Device()[property.name].Set(); }), expected) << property.name;
        }
    }
}

}  // namespace
}  // namespace Morquil::Testing
