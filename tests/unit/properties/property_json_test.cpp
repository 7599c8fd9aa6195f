#include "properties/json/property_json.h"

#include <gtest/gtest.h>

#include <string>

namespace Morquil::Testing {
namespace {

using namespace Properties;

Json JsonOf(const char* name, const Value& value) {
    return ToJson(FindProperty(name)->type, value);
}

TEST(PropertyJson, KeepsNumbersAndTruthsAndWritesTheRestAsPeopleDo) {
    EXPECT_EQ(JsonOf("proc-amp.gain", std::int64_t{-3}), Json(-3));
    EXPECT_EQ(JsonOf("aspect.size-x", 1.5), Json(1.5));
    EXPECT_EQ(JsonOf("device.panel-lock", true), Json(true));
    EXPECT_EQ(JsonOf("output.option", std::int64_t{1}), Json("Black"));
    EXPECT_EQ(JsonOf("network.address", std::int64_t{0x01020304}), Json("1.2.3.4"));
    EXPECT_EQ(ToJson(FindProperty("proc-amp.gain")->type, std::optional<Value>()), Json());
}

TEST(PropertyJson, ReadsBackTheTextOfWhatItWrites) {
    const struct {
        const char* name;
        Value value;
    } cases[] = {{"proc-amp.gain", std::int64_t{-3}},
                 {"aspect.size-x", 1.5},
                 {"device.panel-lock", false},
                 {"output.option", std::int64_t{2}},
                 {"timecode.generate-value", std::int64_t{0x01020304}},
                 {"network.name", std::string("Studio \"1\"")}};
    for (const auto& [name, value] : cases) {
        const ValueType& type = FindProperty(name)->type;
        EXPECT_EQ(ParseValue(type, TextOf(ToJson(type, value))), Checked(value)) << name;
    }
}

TEST(PropertyJson, WritesAnOfferAsARangeOrWords) {
    const ValueType& gain = FindProperty("proc-amp.gain")->type;
    EXPECT_EQ(ToJson(gain, Limits{std::int64_t{-1}, std::int64_t{1}}).dump(), R"({"min":-1,"max":1})");
    EXPECT_EQ(ToJson(FindProperty("output.option")->type, std::vector<std::int64_t>{0, 1}).dump(),
              R"(["Input","Black"])");
    EXPECT_EQ(ToJson(gain, Offer()), Json());
}

TEST(PropertyJson, DescribesARowForOtherLanguages) {
    EXPECT_EQ(DescribeProperty(*FindProperty("timecode.output-line")).dump(),
              R"({"name":"timecode.output-line","kind":"number","readable":true,"writable":true,)"
              R"("summary":"Line of the timecode at the output","interface":"IMorquilTimecode",)"
              R"("getter":"Timecode::GetOutputLine",)"
              R"("setter":"Timecode::SetOutputLine","range":"Timecode::GetLineRange","min":0,"max":4294967295,)"
              R"("access":"read/write","propertySet":"morquilTimecodePropertySetId","unit":"line number",)"
              R"("offer":"range","offerFollows":["output.video-mode"]})");
    const Json map = DescribeProperty(*FindProperty("audio.map.16"));
    EXPECT_EQ(map.at("index"), 15);
    EXPECT_EQ(map.at("offer"), "words");
    EXPECT_EQ(map.at("enumeration"), "_MorquilAPIAudioSelect");
    EXPECT_EQ(DescribeProperty(*FindProperty("timecode.start")).at("access"), "command");
}

}  // namespace
}  // namespace Morquil::Testing
