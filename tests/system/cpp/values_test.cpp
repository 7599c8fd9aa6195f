// Values through the C++ layer: each kind on its way out and in.
#include <gtest/gtest.h>

#include "tests/system/cpp/connected.h"

namespace Morquil::Testing {
namespace {

using morquil::VideoMode;

/// A device with its own name.
class ScriptedName {
public:
    explicit ScriptedName(const std::string& name)
        : device_([&] {
              DeviceScript script = CompleteDevice();
              script.greeting += "MORQUIL DEVICE:\nModel name: " + name + "\n\n";
              return script;
          }()) {}
    std::string Read() const {
        const morquil::Device host = morquil::Connect(device_.Address());
        std::string name = host.GetDeviceName();
        host.Disconnect();
        return name;
    }

private:
    ScriptedDevice device_;
};

TEST(CppValues, AreReadAsNumbersWordsAndTruth) {
    const Connected connected;
    const morquil::Device& host = connected.host;
    EXPECT_EQ(host.GetDeviceName(), "Scripted");
    EXPECT_EQ(host.GetSoftwareVersion(), 0x10U);
    EXPECT_EQ(host.OutputConfiguration().GetVideoMode(), VideoMode::Mode1080i50);
    EXPECT_EQ(host.OutputConfiguration().GetTransitionSetting(), 10);
    EXPECT_TRUE(host.InputConfiguration().GetAutoDetectionEnabled());
    EXPECT_FALSE(host.NoiseReduction().GetEnabled());
    EXPECT_TRUE(host.InputConfiguration().IsVideoSourceAvailable(morquil::VideoSource::HDMI));
    EXPECT_FALSE(host.InputConfiguration().IsVideoSourceAvailable(morquil::VideoSource::SVideo));
    const morquil::Range<int> gain = host.VideoProcAmp().GetGainRange();
    EXPECT_EQ(gain.min, -60);
    EXPECT_EQ(gain.max, 60);
}

TEST(CppValues, AreWrittenAsTheDeviceReadsThem) {
    Connected connected;
    const auto sent = [&] { return connected.device.NextChange(); };
    connected.host.OutputConfiguration().SetVideoMode(VideoMode::NTSC);
    EXPECT_EQ(sent(), "VIDEO OUTPUT:\nVideo mode: 525i59.94 NTSC\n\n");
    connected.host.VideoProcAmp().SetGain(-12);
    EXPECT_EQ(sent(), "VIDEO PROC AMP:\nGain: -12\n\n");
    connected.host.VideoClip().SetLumaLow(0xFFFFFFFF);
    EXPECT_EQ(sent(), "VIDEO ADJUST:\nLuma low: -1\n\n");
    connected.host.NoiseReduction().SetEnabled(true);
    EXPECT_EQ(sent(), "NOISE REDUCTION:\nEnabled: true\n\n");
    connected.host.VariableAspectRatio().SetSizeX(0.5);
    EXPECT_EQ(sent(), "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size X left: 0.500000\n\n");
    connected.host.AudioMapping().SetAudioMap(15, morquil::AudioSelect::Mute);
    EXPECT_EQ(sent(), "AUDIO:\nAudioOut15: TTMute\n\n");
    connected.host.NetworkConfig().SetFriendlyName("Z\u00FCrich \U0001F600");
    EXPECT_EQ(sent(), "NETWORK CONFIG:\nFriendly name: Z\xC3\xBCrich \xF0\x9F\x98\x80\n\n");
}

TEST(CppValues, KeepTheirCharactersOnTheWayIn) {
    for (const std::string name : {"Studio", "Z\u00FCrich", "\u20AC\uFFFD", "\U0001F600\U0010FFFF"}) {
        ScriptedName device(name);
        EXPECT_EQ(device.Read(), name);
    }
}

TEST(CppValues, ThatAreNotUtf8ReachTheDeviceAsReplacementCharacters) {
    Connected connected;
    connected.host.NetworkConfig().SetFriendlyName("a\xFFz\xC3");
    EXPECT_EQ(connected.device.NextChange(), "NETWORK CONFIG:\nFriendly name: a\xEF\xBF\xBDz\xEF\xBF\xBD\n\n");
}

TEST(CppValues, ThatAreUnknownNameTheCallThatAskedForThem) {
    const Connected connected;
    try {
        connected.host.VideoClip().GetLumaHigh();
        FAIL() << "the device has never reported it";
    } catch (const morquil::NotKnown& error) {
        EXPECT_EQ(error.Call(), "VideoClip::GetLumaHigh");
        EXPECT_EQ(error.Result(), E_FAIL);
        EXPECT_STREQ(error.what(), "VideoClip::GetLumaHigh: the device has not reported the value");
    }
}

TEST(CppValues, OutsideTheirBoundsAreRefusedInWords) {
    const Connected connected;
    try {
        connected.host.OutputConfiguration().SetVideoMode(static_cast<VideoMode>(34));
        FAIL() << "no such mode";
    } catch (const morquil::Error& error) {
        EXPECT_STREQ(error.what(),
                     "OutputConfiguration::SetVideoMode: the value is outside its bounds, or the text has a "
                     "line end or a zero character in it");
    }
}

TEST(CppValues, HaveAnAvailabilityWhateverItsResultSays) {
    Connected connected;
    EXPECT_FALSE(connected.host.Reference().IsGenRefAvailable(morquil::GenReference::TriLevel));
    EXPECT_THROW(connected.host.Reference().IsGenRefAvailable(static_cast<morquil::GenReference>(2)), morquil::Error);
}

TEST(CppWords, AreFoundBothWays) {
    EXPECT_EQ(ToText(VideoMode::Mode1080i5994), "1080i59.94");
    EXPECT_EQ(morquil::FromText<VideoMode>("1080I59.94"), VideoMode::Mode1080i5994);
    EXPECT_EQ(morquil::FromText<VideoMode>("1080i51"), std::nullopt);
    EXPECT_EQ(morquil::FromText<VideoMode>(""), std::nullopt);
    EXPECT_EQ(ToText(static_cast<VideoMode>(99)), "");
    EXPECT_EQ(ToText(static_cast<morquil::Mode3d>(3)), "3DModeAlign");
    EXPECT_EQ(ToText(morquil::AspectRatio::LetterBox), "LetterBox");
    EXPECT_EQ(ToText(morquil::AFDInsertType::TypeA), "1010");
    EXPECT_EQ(ToText(morquil::AFDInsertType::Type0), "0000");
}

}  // namespace
}  // namespace Morquil::Testing
