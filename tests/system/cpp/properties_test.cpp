// Properties by name through the C++ layer.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/system/cpp/connected.h"
#include "tests/system/cpp/echoing_device.h"

namespace Morquil::Testing {
namespace {

using morquil::PropertyKind;
using morquil::VideoMode;

constexpr std::chrono::seconds longEnough{60};

/// What the exception says that `call` throws.
template <class Exception, class Call>
std::string Thrown(Call call) {
    try {
        call();
        return "nothing was thrown";
    } catch (const Exception& error) {
        return error.what();
    }
}

std::vector<std::string> NamesOf(const std::vector<morquil::Property>& properties) {
    std::vector<std::string> names;
    for (const morquil::Property& property : properties) {
        names.emplace_back(property.Info().name);
    }
    return names;
}

TEST(CppProperty, IsReadAsTextAndTyped) {
    const Connected connected;
    const auto mode = connected.host["output.video-mode"];
    EXPECT_EQ(mode.Text(), "1080i50");
    EXPECT_EQ(mode.Get<VideoMode>(), VideoMode::Mode1080i50);
    EXPECT_EQ(mode.Get<std::string>(), "1080i50");
    EXPECT_EQ(connected.host["output.transition-setting"].Get<int>(), 10);
    EXPECT_EQ(connected.host["output.transition-setting"].Get<double>(), 10.0);
    EXPECT_EQ(connected.host["Input.Auto-Detection"].Get<bool>(), true);
    EXPECT_EQ(connected.host["input.auto-detection"].Text(), "true");
    EXPECT_EQ(connected.host["device.software-version"].Text(), "0x10");
    EXPECT_EQ(connected.host[std::string("device.name")].Text(), "Scripted");
}

TEST(CppProperty, SaysWhatItIs) {
    const Connected connected;
    const morquil::PropertyInfo& mode = connected.host["output.video-mode"].Info();
    EXPECT_EQ(mode.kind, PropertyKind::Word);
    EXPECT_EQ(mode.enumeration, "VideoMode");
    EXPECT_EQ(mode.set, morquil::PropertySet::OutputConfiguration);
    EXPECT_TRUE(mode.isReadable && mode.isWritable);
    EXPECT_FALSE(connected.host["input.signal-present"].Info().isWritable);
    EXPECT_FALSE(connected.host["timecode.start"].Info().isReadable);
    EXPECT_EQ(connected.host["reference.line-offset"].Info().unit, "lines");
}

TEST(CppProperty, ThatDoesNotExistIsNamed) {
    const Connected connected;
    EXPECT_EQ(Thrown<morquil::NoSuchProperty>([&] { connected.host["output.vidoe-mode"]; }),
              "output.vidoe-mode: there is no such property");
}

TEST(CppProperty, ThatIsNotKnownIsNamed) {
    const Connected connected;
    const auto high = connected.host["clip.luma-high"];
    EXPECT_EQ(high.Known(), std::nullopt);
    EXPECT_EQ(Thrown<morquil::NotKnown>([&] { high.Get(); }), "clip.luma-high: the device has not reported the value");
    EXPECT_EQ(Thrown<morquil::NotKnown>([&] { connected.host["timecode.start"].Get(); }),
              "timecode.start: it is a command, and has no value");
    EXPECT_EQ(Thrown<morquil::NotKnown>([&] { connected.host["input.video-mode"].GetRange(); }),
              "input.video-mode: the device has reported no range");
}

TEST(CppProperty, HasNoValueOfAnotherType) {
    const Connected connected;
    const auto mode = connected.host["output.video-mode"];
    EXPECT_THROW(mode.Get<morquil::AspectRatio>(), morquil::InvalidArgument);
    EXPECT_THROW(mode.Get<int>(), morquil::InvalidArgument);
    EXPECT_THROW(connected.host["output.transition-setting"].Get<bool>(), morquil::InvalidArgument);
    EXPECT_THROW(connected.host["input.auto-detection"].Get<int>(), morquil::InvalidArgument);
}

TEST(CppProperty, IsNotCutToASmallerType) {
    DeviceScript script = CompleteDevice();
    script.greeting += "VIDEO PROC AMP:\nGain: 300\nHue: -5\n\n";
    ScriptedDevice device(script);
    const morquil::Device host = morquil::Connect(device.Address());
    EXPECT_EQ(host["proc-amp.gain"].Get<std::int16_t>(), 300);
    EXPECT_THROW(host["proc-amp.gain"].Get<std::int8_t>(), morquil::InvalidArgument);
    EXPECT_THROW(host["proc-amp.hue"].Get<std::uint64_t>(), morquil::InvalidArgument);
    host.Disconnect();
}

TEST(CppProperty, IsSentAsTextAndTyped) {
    Connected connected;
    const auto sent = [&] { return connected.device.NextChange(); };
    connected.host["noise-reduction.enabled"].Set(true);
    EXPECT_EQ(sent(), "NOISE REDUCTION:\nEnabled: true\n\n");
    connected.host["noise-reduction.enabled"].Set("off");
    EXPECT_EQ(sent(), "NOISE REDUCTION:\nEnabled: false\n\n");
    connected.host["proc-amp.gain"].Set(-12);
    EXPECT_EQ(sent(), "VIDEO PROC AMP:\nGain: -12\n\n");
    connected.host["proc-amp.gain"].Set("+13");
    EXPECT_EQ(sent(), "VIDEO PROC AMP:\nGain: 13\n\n");
    connected.host["input.video-source"].Set(morquil::VideoSource::HDMI);
    EXPECT_EQ(sent(), "VIDEO INPUT:\nVideo source: HDMI\n\n");
    connected.host["input.video-source"].Set("sdi1");
    EXPECT_EQ(sent(), "VIDEO INPUT:\nVideo source: SDI1\n\n");
    connected.host["aspect.size-x"].Set("0.5");
    EXPECT_EQ(sent(), "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size X left: 0.500000\n\n");
    connected.host["aspect.size-x"].Set(2);
    EXPECT_EQ(sent(), "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size X left: 2.000000\n\n");
    connected.host["network.name"].Set(std::string("Z\u00FCrich"));
    EXPECT_EQ(sent(), "NETWORK CONFIG:\nFriendly name: Z\xC3\xBCrich\n\n");
    connected.host["audio.map.16"].Set("TTMute");
    EXPECT_EQ(sent(), "AUDIO:\nAudioOut15: TTMute\n\n");
}

TEST(CppProperty, IsRefusedBeforeAnythingIsSent) {
    Connected connected;
    const auto refusal = [&](const char* name, const auto& value) {
        return Thrown<morquil::InvalidArgument>([&] { connected.host[name].Set(value); });
    };
    EXPECT_EQ(refusal("proc-amp.gain", "61"), "proc-amp.gain: 61 is outside -60 to 60");
    EXPECT_EQ(refusal("proc-amp.gain", 61), "proc-amp.gain: 61 is outside -60 to 60");
    EXPECT_EQ(refusal("proc-amp.gain", "much"), "proc-amp.gain: \"much\" is not a whole number");
    EXPECT_EQ(refusal("proc-amp.gain", true), "proc-amp.gain: the value is of another type than the property's");
    EXPECT_EQ(refusal("proc-amp.gain", 1.5), "proc-amp.gain: the value is of another type than the property's");
    EXPECT_EQ(refusal("proc-amp.gain", UINT64_MAX),
              "proc-amp.gain: 9223372036854775807 is outside -2147483648 to 2147483647");
    EXPECT_EQ(refusal("output.video-mode", "1080i51"), "output.video-mode: \"1080i51\" is not a word of VideoMode");
    EXPECT_EQ(refusal("output.video-mode", morquil::AspectRatio::Smart),
              "output.video-mode: the value is of another type than the property's");
    EXPECT_EQ(refusal("input.video-source", "SVideo"),
              "input.video-source: SVideo is not offered now; the device accepts SDI1, HDMI");
    EXPECT_EQ(refusal("input.signal-present", true), "input.signal-present: it can only be read");
    EXPECT_EQ(refusal("network.name", "a\nb"), "network.name: the text has a line end or a zero character in it");
    EXPECT_EQ(refusal("network.name", std::string(50, 'x')),
              "network.name: the text has 50 bytes, and at most 49 are kept");
    EXPECT_EQ(refusal("timecode.generate-value", "24:00:00:00"),
              "timecode.generate-value: \"24:00:00:00\" is not a timecode such as 01:02:03:04");
    EXPECT_EQ(refusal("timecode.start", "now"), "timecode.start: a command without a value");
    EXPECT_EQ(Thrown<morquil::InvalidArgument>([&] { connected.host["proc-amp.gain"].Set(); }),
              "proc-amp.gain: it needs a value");
    EXPECT_THROW(connected.host["input.video-source"].Set("SVideo"), morquil::NotOffered);
    EXPECT_THROW(connected.host["proc-amp.gain"].Check(61), morquil::InvalidArgument);
    // The first block that is sent is the first change that is accepted.
    connected.host["proc-amp.gain"].Check(1);
    connected.host["proc-amp.gain"].Set(2);
    EXPECT_EQ(connected.device.NextChange(), "VIDEO PROC AMP:\nGain: 2\n\n");
}

TEST(CppProperty, SaysWhatTheDeviceAcceptsNow) {
    const Connected connected;
    const morquil::Range<int> gain = connected.host["proc-amp.gain"].GetRange<int>();
    EXPECT_EQ(gain.min, -60);
    EXPECT_EQ(gain.max, 60);
    EXPECT_EQ(connected.host["proc-amp.gain"].GetRange().max.Text(), "60");
    std::vector<std::string> offered;
    for (const morquil::PropertyValue& value : connected.host["input.video-source"].GetOffered()) {
        offered.push_back(value.Text());
    }
    EXPECT_EQ(offered, (std::vector<std::string>{"SDI1", "HDMI"}));
    EXPECT_TRUE(connected.host["proc-amp.gain"].GetOffered().empty());
}

TEST(CppProperty, ReportsWhatBecameOfAChange) {
    ConnectedTo accepting(Accept);
    const auto gain = accepting.host["proc-amp.gain"];
    EXPECT_TRUE(gain.Apply(20, longEnough).IsApplied());
    EXPECT_EQ(gain.Get<int>(), 20);
    EXPECT_TRUE(gain.Apply("21", longEnough).IsApplied());
    EXPECT_EQ(gain.Text(), "21");
    ConnectedTo refusing(Refuse);
    EXPECT_EQ(refusing.host["proc-amp.gain"].Apply(20, longEnough).result, morquil::Result::Refused);
    EXPECT_THROW(refusing.host["proc-amp.gain"].Apply(99), morquil::InvalidArgument);
}

TEST(CppProperty, CanBeChangedTogetherWithOthers) {
    ConnectedTo accepting(Accept);
    const morquil::Device& host = accepting.host;
    const morquil::Outcome outcome = host.Apply(
        [&] {
            host["proc-amp.gain"].Set(5);
            host["noise-reduction.enabled"].Set(true);
        },
        longEnough);
    EXPECT_EQ(outcome.acknowledged, 2U);
    EXPECT_EQ(host["proc-amp.gain"].Text() + " " + host["noise-reduction.enabled"].Text(), "5 true");
}

TEST(CppProperty, CanBeCopiedFromAnotherDevice) {
    ConnectedTo one(Accept);
    ConnectedTo other(Accept);
    EXPECT_TRUE(one.host["proc-amp.gain"].Apply(7, longEnough).IsApplied());
    EXPECT_TRUE(other.host["proc-amp.gain"].Apply(one.host["proc-amp.gain"].Get(), longEnough).IsApplied());
    EXPECT_EQ(other.host["proc-amp.gain"].Get(), one.host["proc-amp.gain"].Get());
}

TEST(CppProperty, OutlivesTheHostsOwnDevice) {
    ScriptedDevice device(CompleteDevice());
    const auto mode = [&] { return morquil::Connect(device.Address())["output.video-mode"]; }();
    EXPECT_EQ(mode.Text(), "1080i50");
}

TEST(CppProperties, AreFoundByPattern) {
    const Connected connected;
    const morquil::Device& host = connected.host;
    EXPECT_EQ(NamesOf(host.Properties("proc-amp.gain")), std::vector<std::string>{"proc-amp.gain"});
    EXPECT_EQ(NamesOf(host.Properties("color")),
              (std::vector<std::string>{"color.red", "color.green", "color.blue", "color.reset-values"}));
    EXPECT_EQ(host.Properties("audio.map").size(), 16U);
    EXPECT_EQ(host.Properties("audio.map.?").size(), 9U);
    EXPECT_EQ(host.Properties("*.VIDEO-MODE").size(), 2U);
    EXPECT_TRUE(host.Properties("proc-am").empty());
    EXPECT_TRUE(host.Properties("").empty());
    EXPECT_EQ(host.Properties().size(), host.Properties("**").size());
}

}  // namespace
}  // namespace Morquil::Testing
