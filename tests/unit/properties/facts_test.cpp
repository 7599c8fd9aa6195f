// What the types of the calls do not tell, stated a second time by hand.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "properties/property.h"

namespace Morquil::Testing {
namespace {

using namespace Properties;

TEST(PropertyFacts, GiveNumbersTheirUnits) {
    const std::map<std::string, std::string> expected = {
        {"reference.line-offset", "lines"},
        {"reference.pixel-offset", "pixels"},
        {"aspect.last-input-width", "pixels"},
        {"aspect.last-input-height", "pixels"},
        {"aspect.last-output-width", "pixels"},
        {"aspect.last-output-height", "pixels"},
        {"timecode.input-line", "line number"},
        {"timecode.output-line", "line number"},
        {"closed-caption.input-line", "line number"},
        {"closed-caption.output-line", "line number"},
        {"video-index.afd-output-line", "line number"},
    };
    std::map<std::string, std::string> units;
    for (const Property& property : AllProperties()) {
        if (property.type.unit != Unit::None) {
            units[property.name] = NameOf(property.type.unit);
            EXPECT_EQ(property.type.kind, Kind::Number) << property.name;
        }
    }
    EXPECT_EQ(units, expected);
}

TEST(PropertyFacts, SayOnWhichModesAnOfferDepends) {
    using Names = std::vector<std::string>;
    const std::map<std::string, Names> expected = {
        {"output.video-mode", {"input.video-mode"}},
        {"output.aspect-ratio", {"input.video-mode", "output.video-mode"}},
        {"timecode.input-line", {"input.video-mode"}},
        {"timecode.output-line", {"output.video-mode"}},
        {"timecode.drop-frame-mode", {"output.video-mode"}},
        {"video-index.afd-output-line", {"output.video-mode"}},
        {"reference.line-offset", {"output.video-mode"}},
        {"reference.pixel-offset", {"output.video-mode"}},
    };
    std::map<std::string, Names> follows;
    for (const Property& property : AllProperties()) {
        for (const std::string_view followed : property.offerFollows) {
            EXPECT_NE(FindProperty(followed), nullptr) << property.name;
            follows[property.name].emplace_back(followed);
        }
    }
    EXPECT_EQ(follows, expected);
}

TEST(PropertyFacts, LimitEveryTextThatCanBeSet) {
    for (const Property& property : AllProperties()) {
        const bool isText = property.type.kind == Kind::Text && property.IsWritable();
        EXPECT_EQ(property.type.mostBytes, isText ? 49u : 0u) << property.name;
    }
}

TEST(PropertyFacts, NameTheSetOfEveryInterface) {
    std::map<std::string_view, std::string_view> sets;
    for (const Property& property : AllProperties()) {
        sets[property.interfaceName] = property.setName;
    }
    EXPECT_EQ(sets.size(), 20u);
    EXPECT_EQ(sets["IMorquilDevice"], "morquilDeviceControlPropertySetId");
    EXPECT_EQ(sets["IMorquilVideoProcAmp"], "morquilVideoProcAmpPropertySetId");
    EXPECT_EQ(sets["IMorquil3dMode"], "morquil3dModePropertySetId");
}

TEST(PropertyFacts, NumberWhatThereIsSeveralTimes) {
    std::map<std::string, int> counts;
    for (const Property& property : AllProperties()) {
        if (property.number != 0) {
            EXPECT_TRUE(property.name.ends_with("." + std::to_string(property.number))) << property.name;
            ++counts[std::string(property.getter)];
        }
    }
    const std::map<std::string, int> expected = {
        {"AudioMapping::GetAudioMap", 16}, {"AudioMapping::GetAudioInMap", 8}, {"Preset::GetPresetName", 6}};
    EXPECT_EQ(counts, expected);
}

}  // namespace
}  // namespace Morquil::Testing
