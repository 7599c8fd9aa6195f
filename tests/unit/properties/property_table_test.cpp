// The table, and whether it covers the interfaces.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "properties/property.h"
#include "properties/spelling.h"

namespace Morquil::Testing {
namespace {

using Properties::AllProperties;
using Properties::FindProperty;
using Properties::Matching;
using Properties::NearestName;
using Properties::Property;

// The device does not return this interface.
constexpr std::string_view notOfTheDevice = "Align";

// Changes that are not properties, and changes whose commands have other verbs.
const std::regex changingMethod("(Set\\w+|ResetAll|ResetValues|StartTimecode|SavePreset|RecallPreset)");

std::string InterfaceDefinitions() {
    std::ifstream file(MORQUIL_SOURCES "/api/MorquilAPI.idl", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_FALSE(text.empty());
    std::string plain;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t comment = std::min(text.find("/*", at), text.size());
        plain += text.substr(at, comment - at);
        const std::size_t end = text.find("*/", comment);
        at = end == std::string::npos ? text.size() : end + 2;
    }
    return plain;
}

// The C++ layer's name for an interface.
std::string LayerName(const std::string& name) {
    return name == "IMorquil3dMode" ? "Mode3d" : name.substr(8);
}

// "VideoProcAmp::SetGain" for each method of a device that changes something or that reads one value.
std::set<std::string> MethodsLike(const std::regex& wanted) {
    const std::string text = InterfaceDefinitions();
    const std::regex interfaces(R"(interface (IMorquil\w+) : IUnknown\s*\{([^}]*)\})");
    const std::regex methods(R"(HRESULT (\w+)\()");
    std::set<std::string> names;
    for (std::sregex_iterator one(text.begin(), text.end(), interfaces), end; one != end; ++one) {
        const std::string owner = LayerName((*one)[1]);
        const std::string body = (*one)[2];
        for (std::sregex_iterator method(body.begin(), body.end(), methods); method != end; ++method) {
            const std::string name = (*method)[1];
            if (std::regex_match(name, wanted) && owner != notOfTheDevice) {
                names.insert(owner + "::" + name);
            }
        }
    }
    return names;
}

TEST(PropertyTable, HasARowForEveryMethodThatChangesSomething) {
    std::set<std::string> covered;
    for (const Property& property : AllProperties()) {
        if (property.IsWritable()) {
            covered.insert(std::string(property.setter));
        }
    }
    EXPECT_EQ(covered, MethodsLike(changingMethod));
}

TEST(PropertyTable, HasARowForEveryMethodThatReadsAValue) {
    std::set<std::string> covered;
    for (const Property& property : AllProperties()) {
        if (property.getter.find("::Get") != std::string::npos) {
            covered.insert(std::string(property.getter));
        }
    }
    std::set<std::string> getters = MethodsLike(std::regex("Get\\w+"));
    std::erase_if(getters, [](const std::string& name) { return name.ends_with("Range"); });
    EXPECT_EQ(covered, getters);
}

TEST(PropertyTable, HasUniqueNamesOfOneForm) {
    const std::regex form(R"([a-z0-9-]+(\.[a-z0-9-]+){1,2})");
    std::set<std::string> names;
    for (const Property& property : AllProperties()) {
        EXPECT_TRUE(names.insert(property.name).second) << property.name;
        EXPECT_TRUE(std::regex_match(property.name, form)) << property.name;
        EXPECT_FALSE(property.summary.empty()) << property.name;
        EXPECT_TRUE(property.IsReadable() || property.IsWritable()) << property.name;
    }
}

TEST(PropertyTable, FindsEveryNameInAnyCase) {
    for (const Property& property : AllProperties()) {
        std::string name = property.name;
        name.front() = static_cast<char>(std::toupper(name.front()));
        EXPECT_EQ(FindProperty(name), &property) << name;
    }
    EXPECT_EQ(FindProperty("proc-amp"), nullptr);
    EXPECT_EQ(FindProperty("zzz"), nullptr);
}

TEST(PropertyTable, SuggestsNamesAndTheirBeginnings) {
    EXPECT_EQ(NearestName("proc-amp.gian"), "proc-amp.gain");
    EXPECT_EQ(NearestName("procamp"), "proc-amp");
    EXPECT_EQ(NearestName("proc-amp.sat"), "proc-amp.saturation");
    EXPECT_EQ(NearestName("0"), "");
}

TEST(PropertyTable, KnowsTheNamesOfTheCppLayer) {
    for (const char* const name : {"VideoProcAmp::SetGain", "VideoProcAmp.GetGain", "videoProcAmp.gain"}) {
        EXPECT_EQ(NearestName(name), "proc-amp.gain") << name;
    }
    EXPECT_EQ(NearestName("OutputConfiguration.SetVideoMode"), "output.video-mode");
}

TEST(PropertyTable, SelectsByNameBeginningAndPattern) {
    EXPECT_EQ(Matching("proc-amp.gain").size(), 1u);
    EXPECT_EQ(Matching("proc-amp"), Matching("proc-amp.*"));
    EXPECT_EQ(Matching("audio.map").size(), 16u);
    EXPECT_EQ(Matching("audio.map.?").size(), 9u);
    EXPECT_EQ(Matching("AUDIO.**1").size(), 3u);
    EXPECT_EQ(Matching("*").size(), AllProperties().size());
    EXPECT_TRUE(Matching("proc-am").empty());
}

TEST(PropertyTable, KnowsWhatChangesTheVideoModes) {
    std::set<std::string> names;
    for (const Property& property : AllProperties()) {
        if (property.changesModes) {
            EXPECT_TRUE(property.IsWritable()) << property.name;
            names.insert(property.name);
        }
    }
    EXPECT_EQ(names, (std::set<std::string>{"input.auto-detection", "input.video-mode", "input.video-source",
                                            "output.video-mode", "preset.recall"}));
}

TEST(PropertyTable, KnowsForWhatTheVideoModesDoNotMatter) {
    std::set<std::string> features;
    for (const Property& property : AllProperties()) {
        if (!property.dependsOnModes) {
            EXPECT_TRUE(property.offerFollows.empty()) << property.name;
            features.insert(property.name.substr(0, property.name.find('.')));
        }
    }
    EXPECT_EQ(features,
              (std::set<std::string>{"aspect-fill", "audio", "clip", "color", "noise-reduction", "proc-amp"}));
}

TEST(Spelling, NamesTypesForPeople) {
    EXPECT_EQ(Properties::Spoken("VideoMode"), "video mode");
    EXPECT_EQ(Properties::Spoken("SDIMode"), "SDI mode");
    EXPECT_EQ(Properties::Spoken("AFDInsertType"), "AFD insert type");
    EXPECT_EQ(Properties::Spoken("QuadSDIOutput"), "quad SDI output");
}

}  // namespace
}  // namespace Morquil::Testing
