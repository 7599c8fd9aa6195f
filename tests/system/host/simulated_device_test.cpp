// A host and the simulated device: what is set comes back.
#include <gtest/gtest.h>

#include <optional>

#include "simulator/device/simulated_device.h"
#include "tests/system/host/host.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {
namespace {

using Simulator::SimulatedDevice;

constexpr SimulatedDevice::HostId onlyHost = 1;

class Simulated : public testing::Test {
protected:
    Simulated() : device(Script()) {}
    void SetUp() override {
        ConnectOutcome outcome = Connect(device.Address());
        ASSERT_EQ(outcome.result, ok) << outcome.reason;
        object = std::move(outcome.device);
        watched.emplace(device, object);
        watched->Report("");
    }
    void TearDown() override {
        watched.reset();
        if (object) {
            Disconnect(object);
        }
    }

    DeviceScript Script() {
        simulator.Connect(onlyHost);
        return {.greeting = simulator.TakeTextFor(onlyHost), .respond = [this](const std::string& block) {
                    simulator.Receive(onlyHost, block);
                    return simulator.TakeTextFor(onlyHost);
                }};
    }
    /// The property sets notified of the answer to what has been set.
    std::string AwaitAnswer() {
        EXPECT_NE(device.NextChange(), "");
        return watched->Report("");
    }
    std::string UsePanel(const std::string& command) {
        std::string text;
        device.Do([&] {
            EXPECT_EQ(simulator.UsePanel(command).refusal, "");
            text = simulator.TakeTextFor(onlyHost);
        });
        return watched->Report(text);
    }

    SimulatedDevice simulator{{}};
    ScriptedDevice device;
    RawObject object;
    std::optional<WatchedDevice> watched;
};

struct Property {
    const char* iid;
    int setter;
    int getter;
    int value;
};

// clang-format off
constexpr Property properties[] = {
    {Iid::inputConfiguration, 3, 4, 0}, {Iid::inputConfiguration, 5, 6, 1}, {Iid::inputConfiguration, 7, 8, 1},
    {Iid::inputConfiguration, 9, 10, 5}, {Iid::inputConfiguration, 12, 13, 2}, {Iid::inputConfiguration, 19, 20, 1},
    // What can be set depends on the modes: two links and level B need 1080p50, full colour needs 2160p50.
    {Iid::inputConfiguration, 21, 22, 1}, {Iid::outputConfiguration, 3, 4, 15},
    {Iid::outputConfiguration, 7, 8, 4}, {Iid::outputConfiguration, 20, 21, 1}, {Iid::outputConfiguration, 22, 23, 1},
    {Iid::outputConfiguration, 3, 4, 33}, {Iid::outputConfiguration, 5, 6, 2}, {Iid::outputConfiguration, 24, 25, 1},
    {Iid::outputConfiguration, 26, 27, 1}, {Iid::outputConfiguration, 28, 29, 4}, {Iid::outputConfiguration, 30, 31, 3},
    {Iid::outputConfiguration, 32, 33, 55}, {Iid::outputConfiguration, 36, 37, 2},
    {Iid::videoProcAmp, 3, 4, 21}, {Iid::videoProcAmp, 6, 7, -22}, {Iid::videoProcAmp, 9, 10, 23},
    {Iid::videoProcAmp, 12, 13, -24}, {Iid::videoProcAmp, 15, 16, 25}, {Iid::videoProcAmp, 18, 19, -26},
    {Iid::videoProcAmp, 21, 22, 12},
    {Iid::colorCorrection, 3, 4, 31}, {Iid::colorCorrection, 6, 7, -32}, {Iid::colorCorrection, 9, 10, 33},
    {Iid::videoClip, 3, 4, 41}, {Iid::videoClip, 6, 7, 942}, {Iid::videoClip, 9, 10, 43}, {Iid::videoClip, 12, 13, 944},
    {Iid::aspectFill, 3, 4, 101}, {Iid::aspectFill, 6, 7, 102}, {Iid::aspectFill, 9, 10, 103},
    {Iid::noiseReduction, 3, 4, 1}, {Iid::noiseReduction, 5, 6, -5}, {Iid::noiseReduction, 8, 9, 1},
    {Iid::noiseReduction, 10, 11, 1},
    {Iid::testPattern, 3, 4, 5}, {Iid::testPattern, 5, 6, 2}, {Iid::testPattern, 7, 8, 3}, {Iid::testPattern, 9, 12, 1},
    {Iid::testPattern, 10, 13, -4}, {Iid::testPattern, 11, 14, 5},
    {Iid::videoAdvanced, 3, 4, 1}, {Iid::videoAdvanced, 5, 6, 0}, {Iid::videoAdvanced, 7, 8, 0},
    {Iid::videoAdvanced, 9, 10, 1}, {Iid::videoAdvanced, 11, 12, 2}, {Iid::videoAdvanced, 13, 14, 3},
    {Iid::videoAdvanced, 15, 16, 1},
    {Iid::timecode, 3, 4, 4}, {Iid::timecode, 6, 7, 14}, {Iid::timecode, 8, 9, 15}, {Iid::timecode, 11, 12, 2},
    {Iid::timecode, 14, 15, 1}, {Iid::timecode, 16, 17, 1}, {Iid::timecode, 18, 19, 0x11223314},
    {Iid::timecode, 20, 21, 0x12233415}, {Iid::timecode, 22, 23, 1},
    {Iid::closedCaption, 3, 4, 0}, {Iid::closedCaption, 5, 6, 11}, {Iid::closedCaption, 8, 9, 12},
    {Iid::closedCaption, 11, 12, 0}, {Iid::closedCaption, 13, 14, 2}, {Iid::closedCaption, 15, 16, 3},
    {Iid::videoIndex, 3, 4, 1}, {Iid::videoIndex, 5, 6, 18}, {Iid::videoIndex, 8, 9, 13},
    {Iid::reference, 3, 4, 2}, {Iid::reference, 6, 7, 1}, {Iid::reference, 8, 9, -5}, {Iid::reference, 11, 12, 6},
    {Iid::variableAspectRatio, 15, 16, 7}, {Iid::variableAspectRatio, 18, 19, 8}, {Iid::variableAspectRatio, 21, 22, 1},
    {Iid::mode3d, 3, 4, 3}, {Iid::mode3d, 5, 6, 60}, {Iid::mode3d, 8, 9, -7}, {Iid::mode3d, 11, 12, 1},
    {Iid::mode3d, 13, 14, 2},
    {Iid::audioMapping, 3, 4, -6}, {Iid::audioMapping, 6, 7, 40}, {Iid::audioMapping, 9, 10, 0},
    {Iid::audioMapping, 16, 17, 7}, {Iid::audioMapping, 18, 19, 12},
};
// clang-format on

/// Whether other settings and offers depend on the property.
bool IsMode(const Property& property) {
    return (property.iid == Iid::inputConfiguration && property.setter == 21) ||
           (property.iid == Iid::outputConfiguration && property.setter == 3);
}

TEST_F(Simulated, ReturnsEveryNumberAndWordThatIsSet) {
    for (const Property& property : properties) {
        SCOPED_TRACE(testing::Message() << property.iid << " slot " << property.setter);
        const RawObject feature = object.QueryInterface(property.iid);
        int value = -9999;
        EXPECT_EQ(feature.Call(property.getter, &value), ok);
        EXPECT_NE(value, property.value);

        EXPECT_EQ(feature.Call(property.setter, property.value), ok);
        const std::string notified = AwaitAnswer();
        if (!IsMode(property)) {
            EXPECT_EQ(notified, property.iid == Iid::outputConfiguration ? "ouco" : "");
        }

        EXPECT_EQ(feature.Call(property.getter, &value), ok);
        EXPECT_EQ(value, property.value);
    }
}

TEST_F(Simulated, KeepsAValueThatTheDeviceRefuses) {
    const RawObject procAmp = object.QueryInterface(Iid::videoProcAmp);
    int gain = 9;
    EXPECT_EQ(procAmp.Call(3, 61), ok);
    EXPECT_EQ(AwaitAnswer(), "");
    EXPECT_EQ(procAmp.Call(4, &gain), ok);
    EXPECT_EQ(gain, 0);
}

TEST_F(Simulated, NotifiesOfWhatFollowsFromAnotherOutputMode) {
    EXPECT_EQ(object.QueryInterface(Iid::outputConfiguration).Call(3, 33), ok);
    EXPECT_EQ(AwaitAnswer(), "ouco ouco vtpa viad vara vara");
    int demux = 0;
    EXPECT_EQ(object.QueryInterface(Iid::outputConfiguration).Call(21, &demux), ok);
    EXPECT_EQ(demux, 2);
    unsigned lowest = 0;
    unsigned highest = 0;
    EXPECT_EQ(object.QueryInterface(Iid::variableAspectRatio).Call(17, &lowest, &highest), ok);
    EXPECT_EQ(highest, 1920U);
}

TEST_F(Simulated, ReturnsEveryDecimalThatIsSet) {
    const RawObject geometry = object.QueryInterface(Iid::variableAspectRatio);
    for (const int setter : {3, 6, 9, 12}) {
        double value = 0;
        const double wanted = 0.5 + setter / 32.0;
        EXPECT_EQ(geometry.Call(setter, wanted), ok);
        EXPECT_EQ(AwaitAnswer(), "");
        EXPECT_EQ(geometry.Call(setter + 1, &value), ok);
        EXPECT_EQ(value, wanted);
    }
}

TEST_F(Simulated, ReturnsTheAudioMaps) {
    const RawObject audio = object.QueryInterface(Iid::audioMapping);
    for (const int setter : {12, 14}) {
        for (unsigned index = 0; index < 8; ++index) {
            int value = 0;
            EXPECT_EQ(audio.Call(setter, index, 15 - static_cast<int>(index)), ok);
            EXPECT_EQ(AwaitAnswer(), "");
            EXPECT_EQ(audio.Call(setter + 1, index, &value), ok);
            EXPECT_EQ(value, 15 - static_cast<int>(index));
        }
    }
}

TEST_F(Simulated, ReturnsNames) {
    const HostText name(std::u16string_view(u"Z\u00FCrich \u20AC \U0001F600"));
    HostText read;
    const RawObject network = object.QueryInterface(Iid::networkConfig);
    EXPECT_EQ(network.Call(4, name.Get()), ok);
    EXPECT_EQ(AwaitAnswer(), "");
    EXPECT_EQ(network.Call(3, read.Out()), ok);
    EXPECT_EQ(read.Text(), name.Text());

    const RawObject filenames = object.QueryInterface(Iid::deviceFilenames);
    EXPECT_EQ(filenames.Call(4, name.Get()), ok);
    EXPECT_EQ(AwaitAnswer(), "");
    EXPECT_EQ(filenames.Call(3, read.Out()), ok);
    EXPECT_EQ(read.Text(), name.Text());

    const RawObject preset = object.QueryInterface(Iid::preset);
    for (const int index : {0, 5}) {
        EXPECT_EQ(preset.Call(7, index, name.Get()), ok);
        EXPECT_EQ(AwaitAnswer(), "");
        EXPECT_EQ(preset.Call(6, index, read.Out()), ok);
        EXPECT_EQ(read.Text(), name.Text());
    }
}

TEST_F(Simulated, NotifiesOfTheEchoOfANameThatWasCut) {
    const RawObject filenames = object.QueryInterface(Iid::deviceFilenames);
    const HostText name(std::string_view("12345678901234567890123456789012345678901234567890"));
    HostText read;

    EXPECT_EQ(filenames.Call(4, name.Get()), ok);

    EXPECT_EQ(AwaitAnswer(), "fnam");
    EXPECT_EQ(filenames.Call(3, read.Out()), ok);
    EXPECT_EQ(read.Text().size(), 49U);
}

TEST_F(Simulated, ReturnsThePanelLock) {
    std::int32_t lock = 9;
    EXPECT_EQ(object.Call(Slot::setPanelLock, 1), ok);
    EXPECT_EQ(AwaitAnswer(), "devc");
    EXPECT_EQ(object.Call(Slot::getPanelLock, &lock), ok);
    EXPECT_EQ(lock, 1);
}

TEST_F(Simulated, NotifiesOfFrontPanelChanges) {
    EXPECT_EQ(UsePanel("set VIDEO PROC AMP Gain 12"), "vpap");
    EXPECT_EQ(UsePanel("set VIDEO ADJUST Aspect fill Cr 99"), "aspf");
    EXPECT_EQ(UsePanel("set ANCILLARY DATA CC enabled false"), "clca");

    int gain = 0;
    EXPECT_EQ(object.QueryInterface(Iid::videoProcAmp).Call(4, &gain), ok);
    EXPECT_EQ(gain, 12);
}

TEST_F(Simulated, KnowsEverythingOnceItIsConnected) {
    std::int32_t answer = 0;
    std::uint32_t version = 0;
    EXPECT_EQ(object.Call(Slot::getSoftwareVersion, &version), ok);
    EXPECT_EQ(version, 0x20417U);
    EXPECT_EQ(object.Call(Slot::getNetworkUpdateSupported, &answer), ok);
    EXPECT_EQ(answer, 2);
    EXPECT_EQ(object.Call(Slot::isConversionSupported, 7, 4, 0, &answer), ok);
    EXPECT_EQ(answer, 1);
    int min = 0;
    int max = 0;
    EXPECT_EQ(object.QueryInterface(Iid::videoProcAmp).Call(5, &min, &max), ok);
    EXPECT_EQ(min, -60);
    EXPECT_EQ(max, 60);
}

}  // namespace
}  // namespace Morquil::Testing
