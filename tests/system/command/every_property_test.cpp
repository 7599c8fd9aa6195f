// Every row of the table that can be written, against the simulated device.
#include <gtest/gtest.h>

#include <set>

#include "command/properties/property.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using Command::Json;
using Command::Kind;
using Command::Property;

// Settings, tried in turn, that allow a property more than one value.
const std::vector<std::vector<std::string>> situations = {
    {},
    {"output.video-mode", "1080p50"},
    {"output.video-mode", "2160p50"},
    {"output.video-mode", "625i50 PAL"},
    {"reference.type", "External"},
};

Json ReadJson(const std::string& address, const std::string& command, const std::string& name) {
    const Outcome outcome = RunCommand(address, {command, "--json", name});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    return Json::parse(outcome.out, nullptr, false).value(name, Json());
}

// Values that a property could have, whatever the device.
std::vector<Json> PossibleValues(const Property& property) {
    std::vector<Json> values;
    switch (property.type.kind) {
        case Kind::YesNo:
            return {true, false};
        case Kind::Text:
            return {"Studio \xc3\xa4", "Van 2"};
        case Kind::Timecode:
            return {"01:02:03:04", "05:06:07:08"};
        case Kind::Word:
            for (const Command::NamedValue& named : property.type.words) {
                values.push_back(named.word);
            }
            return values;
        default:
            return {1, 2};
    }
}

// What the device offers, or else all possible values.
std::vector<Json> ValuesFor(const std::string& address, const Property& property) {
    const Json offer = property.offer != nullptr ? ReadJson(address, "ranges", property.name) : Json();
    if (offer.is_object()) {
        return {offer.at("min"), offer.at("max")};
    }
    if (offer.is_array()) {
        return {offer.begin(), offer.end()};
    }
    return PossibleValues(property);
}

std::string AsWord(const Json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

// Sets the property to a value other than its own. Returns: whether such a value exists.
bool SetsAnother(const std::string& address, const Property& property) {
    const Json before = ReadJson(address, "get", property.name);
    for (const Json& value : ValuesFor(address, property)) {
        if (value == before) {
            continue;
        }
        const Outcome outcome = RunCommand(address, {"set", "-t", "2", property.name, "--", AsWord(value)});
        EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
        EXPECT_EQ(ReadJson(address, "get", property.name), value) << property.name;
        return true;
    }
    return false;
}

TEST(SimulatedDevice, AcceptsAndReportsEveryWritableProperty) {
    for (const Property& property : Command::AllProperties()) {
        if (!property.IsWritable() || property.IsCommand()) {
            continue;
        }
        SimulatedOnNetwork device;
        bool isSet = false;
        for (std::size_t at = 0; at < situations.size() && !isSet; ++at) {
            std::vector<std::string> arguments = {"set", "-t", "2"};
            arguments.insert(arguments.end(), situations[at].begin(), situations[at].end());
            if (!situations[at].empty()) {
                const Outcome outcome = RunCommand(device.Address(), arguments);
                EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
            }
            isSet = SetsAnother(device.Address(), property);
        }
        EXPECT_TRUE(isSet) << property.name << " has one value only";
    }
}

TEST(SimulatedDevice, IsSentEveryCommand) {
    for (const Property& property : Command::AllProperties()) {
        if (!property.IsCommand()) {
            continue;
        }
        SimulatedOnNetwork device;
        std::vector<std::string> arguments = {"set", property.name};
        if (property.type.kind != Kind::Nothing) {
            arguments.push_back(AsWord(ValuesFor(device.Address(), property).front()));
        }
        const Outcome outcome = RunCommand(device.Address(), arguments);
        EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
        EXPECT_NE(outcome.out.find("sent"), std::string::npos) << outcome.out;
    }
}

TEST(SimulatedDevice, ReportsEveryReadableProperty) {
    SimulatedOnNetwork device;
    const Outcome outcome = RunCommand(device.Address(), {"get", "--json", "*"});
    ASSERT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    const Json values = Json::parse(outcome.out);
    for (const auto& [name, value] : values.items()) {
        EXPECT_FALSE(value.is_null()) << name;
    }
}

}  // namespace
}  // namespace Morquil::Testing
