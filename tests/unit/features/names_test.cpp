// The features with names: the network configuration, the device's file names and the presets.
#include <gtest/gtest.h>

#include <string>

#include "features/device_filenames.h"
#include "features/network_config.h"
#include "features/preset.h"
#include "tests/kit/owned_bstr.h"
#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

Utf16 Repeated(std::size_t count, unsigned unit) {
    return Utf16(count, static_cast<OLECHAR>(unit));
}
std::string Repeated(std::size_t count, const std::string& utf8) {
    std::string text;
    while (count-- != 0) {
        text += utf8;
    }
    return text;
}
Utf16 Plain(const std::string& ascii) {
    return Utf16(ascii.begin(), ascii.end());
}

const std::string eAcute = "\xC3\xA9";
const std::string euro = "\xE2\x82\xAC";

// Each has its own setter, getter and key; all follow one set of rules.
template <class FeatureClass>
struct Naming;
template <>
struct Naming<CMorquilNetworkConfig> {
    static HRESULT Set(CMorquilNetworkConfig& feature, BSTR name) { return feature.SetFriendlyName(name); }
    static HRESULT Get(CMorquilNetworkConfig& feature, BSTR* name) { return feature.GetFriendlyName(name); }
    static constexpr const char* key = "Friendly name: ";
    static constexpr std::size_t sentBytes = 49;
};
template <>
struct Naming<CMorquilDeviceFilenames> {
    static HRESULT Set(CMorquilDeviceFilenames& feature, BSTR name) { return feature.SetStillFrameName(name); }
    static HRESULT Get(CMorquilDeviceFilenames& feature, BSTR* name) { return feature.GetStillFrameName(name); }
    static constexpr const char* key = "Still frame name: ";
    static constexpr std::size_t sentBytes = 50;
};
template <>
struct Naming<CMorquilPreset> {
    static HRESULT Set(CMorquilPreset& feature, BSTR name) { return feature.SetPresetName(3, name); }
    static HRESULT Get(CMorquilPreset& feature, BSTR* name) { return feature.GetPresetName(3, name); }
    static constexpr const char* key = "PresetName3: ";
    static constexpr std::size_t sentBytes = 49;
};

template <class FeatureClass>
class NamedFeatures : public FeatureTest<FeatureClass> {
protected:
    using Naming = Testing::Naming<FeatureClass>;

    HRESULT SetName(const Utf16& name) { return Naming::Set(this->feature, OwnedBstr(name).Get()); }
    static std::string Line(const std::string& name) { return Naming::key + name + "\n"; }
};
using NamedFeatureClasses = testing::Types<CMorquilNetworkConfig, CMorquilDeviceFilenames, CMorquilPreset>;
TYPED_TEST_SUITE(NamedFeatures, NamedFeatureClasses);

TYPED_TEST(NamedFeatures, SendTheNameAsUtf8) {
    this->ExpectSent(this->SetName(Plain("Studio 1")), this->Line("Studio 1"));
    this->ExpectSent(this->SetName(Utf16{0xE9, 0x20AC}), this->Line(eAcute + euro));
    this->ExpectSent(this->SetName(Plain("%s: 100%")), this->Line("%s: 100%"));
    this->ExpectSent(this->SetName(Utf16{}), this->Line(""));
}

TYPED_TEST(NamedFeatures, RefuseNullInsteadOfAName) {
    this->ExpectRefused(TestFixture::Naming::Set(this->feature, nullptr));
}

TYPED_TEST(NamedFeatures, RefuseANameThatWouldEndItsLine) {
    for (const unsigned unit : {0x0AU, 0x0DU, 0x00U}) {
        for (const std::size_t place : {0U, 2U, 4U, 100U}) {
            SCOPED_TRACE(unit);
            Utf16 name = Repeated(place, 'x');
            name += static_cast<OLECHAR>(unit);
            this->ExpectRefused(this->SetName(name));
            this->ExpectRefused(this->SetName(name + Plain("yz")));
        }
    }
    this->ExpectSent(this->SetName(Plain("a\tb\x1F")), this->Line("a\tb\x1F"));
}

TYPED_TEST(NamedFeatures, CutALongNameAtItsEnd) {
    const std::size_t limit = TestFixture::Naming::sentBytes;
    this->ExpectSent(this->SetName(Repeated(limit, 'x')), this->Line(std::string(limit, 'x')));
    this->ExpectSent(this->SetName(Repeated(limit + 1, 'x')), this->Line(std::string(limit, 'x')));
    this->ExpectSent(this->SetName(Repeated(60, 'x')), this->Line(std::string(limit, 'x')));
    this->ExpectSent(this->SetName(Repeated(5000, 'x')), this->Line(std::string(limit, 'x')));
}

TYPED_TEST(NamedFeatures, CutNoCharacterInHalf) {
    const std::size_t limit = TestFixture::Naming::sentBytes;
    this->ExpectSent(this->SetName(Repeated(30, 0xE9)), this->Line(Repeated(limit / 2, eAcute)));
    this->ExpectSent(this->SetName(Repeated(30, 0x20AC)), this->Line(Repeated(limit / 3, euro)));
    Utf16 pairs;
    for (int i = 0; i < 30; ++i) {
        pairs += static_cast<OLECHAR>(0xD83D);
        pairs += static_cast<OLECHAR>(0xDE00);
    }
    this->ExpectSent(this->SetName(pairs), this->Line(Repeated(limit / 4, "\xF0\x9F\x98\x80")));
}

TYPED_TEST(NamedFeatures, AnswerTheReportedName) {
    BSTR name = nullptr;
    EXPECT_EQ(TestFixture::Naming::Get(this->feature, nullptr), E_POINTER);
    EXPECT_EQ(TestFixture::Naming::Get(this->feature, &name), E_FAIL);
    EXPECT_EQ(name, nullptr);
    this->Report(this->Line("caf" + eAcute));
    EXPECT_EQ(TestFixture::Naming::Get(this->feature, nullptr), E_POINTER);
    ASSERT_EQ(TestFixture::Naming::Get(this->feature, &name), S_OK);
    EXPECT_EQ(OwnedBstr(name).Units(), Plain("caf") + Utf16{0xE9});
}

class NetworkConfigFeature : public FeatureTest<CMorquilNetworkConfig> {};

TEST_F(NetworkConfigFeature, AnswersFromTheReport) {
    ExpectGets(&CMorquilNetworkConfig::GetDHCPEnabled, 1, "DHCP enabled: true\n");
    ExpectGets(&CMorquilNetworkConfig::GetIPAddress, 3232238152U, "IP address: 3232238152\n");
    ExpectGets(&CMorquilNetworkConfig::GetGateway, 3232238081U, "Gateway: 3232238081\n");
    ExpectGets(&CMorquilNetworkConfig::GetSubnet, 4294967040U, "Subnet: 4294967040\n");
}

TEST_F(NetworkConfigFeature, DoesNotCountAnotherCaseOfTheNameAsAChange) {
    Report("Friendly name: Studio\n");
    EXPECT_FALSE(IsNotifiedOf("Friendly name: STUDIO\n"));
    EXPECT_TRUE(IsNotifiedOf("Friendly name: Studios\n"));
}

class DeviceFilenamesFeature : public FeatureTest<CMorquilDeviceFilenames> {};

TEST_F(DeviceFilenamesFeature, SendsOneByteMoreThanItKeeps) {
    OwnedBstr name(Repeated(60, 'x'));
    ExpectSent(feature.SetStillFrameName(name.Get()), "Still frame name: " + std::string(50, 'x') + "\n");
    Report("Still frame name: " + std::string(50, 'x') + "\n");
    EXPECT_EQ(feature.GetSettingsText(), "DEVICE FILENAMES:\nStill frame name: " + std::string(49, 'x') + "\n\n");
}

class PresetFeature : public FeatureTest<CMorquilPreset> {};

TEST_F(PresetFeature, SendsOneLineForEachCommand) {
    ExpectSent(feature.SavePreset(1), "Save: 1\n");
    ExpectSent(feature.RecallPreset(2), "Recall: 2\n");
    for (int slot = 0; slot < 6; ++slot) {
        OwnedBstr name(Plain("x"));
        ExpectSent(feature.SetPresetName(slot, name.Get()), "PresetName" + std::to_string(slot) + ": x\n");
    }
}

TEST_F(PresetFeature, AnswersTheReportedRange) {
    ExpectGetsRange(&CMorquilPreset::GetPresetRange, 1, 8, "Preset range: 1 8\n");
}

TEST_F(PresetFeature, ChecksEachNumberAgainstTheRangeOfItsMethod) {
    ReportAvailability("Preset range: 1 8\n");
    OwnedBstr text(Plain("x"));
    BSTR name = nullptr;
    for (int preset = -3; preset < 14; ++preset) {
        const auto passes = [&](int first, int last) { return preset >= first && preset <= last; };
        EXPECT_EQ(feature.SavePreset(preset), passes(1, 9) ? S_OK : E_INVALIDARG) << preset;
        EXPECT_EQ(feature.RecallPreset(preset), passes(1, 10) ? S_OK : E_INVALIDARG) << preset;
        EXPECT_EQ(feature.SetPresetName(preset, text.Get()), passes(0, 7) ? S_OK : E_INVALIDARG) << preset;
        EXPECT_EQ(feature.GetPresetName(preset, &name), passes(0, 7) ? E_FAIL : E_INVALIDARG) << preset;
    }
    EXPECT_EQ(name, nullptr);
}

TEST_F(PresetFeature, SendsNothingForANumberThatItRefuses) {
    ReportAvailability("Preset range: 1 8\n");
    OwnedBstr text(Plain("x"));
    ExpectRefused(feature.SavePreset(10));
    ExpectRefused(feature.RecallPreset(11));
    ExpectRefused(feature.SetPresetName(8, text.Get()));
}

TEST_F(PresetFeature, AcceptsEveryNumberBeforeTheRangeIsKnown) {
    ExpectSent(feature.SavePreset(-5), "Save: -5\n");
    ExpectSent(feature.RecallPreset(INT_MAX), "Recall: 2147483647\n");
}

TEST_F(PresetFeature, ChecksNumbersAtTheEndsOfTheirType) {
    ReportAvailability("Preset range: -2147483648 2147483647\n");
    for (const int preset : {INT_MIN, 0, INT_MAX}) {
        EXPECT_EQ(feature.SavePreset(preset), S_OK) << preset;
        EXPECT_EQ(feature.RecallPreset(preset), S_OK) << preset;
    }
    BSTR name = nullptr;
    EXPECT_EQ(feature.GetPresetName(INT_MIN, &name), E_FAIL);
    EXPECT_EQ(feature.GetPresetName(INT_MAX, &name), E_INVALIDARG);
}

TEST_F(PresetFeature, ChecksTheNumberBeforeThePointer) {
    ReportAvailability("Preset range: 1 8\n");
    EXPECT_EQ(feature.GetPresetName(8, nullptr), E_INVALIDARG);
    EXPECT_EQ(feature.GetPresetName(0, nullptr), E_POINTER);
    EXPECT_EQ(feature.GetPresetName(7, nullptr), E_POINTER);
    ExpectRefused(feature.SetPresetName(0, nullptr));
}

TEST_F(PresetFeature, HasNoNamesBeyondSixSlots) {
    OwnedBstr text(Plain("x"));
    BSTR name = nullptr;
    for (const int slot : {-1, INT_MIN, 6, 7, INT_MAX}) {
        EXPECT_EQ(feature.GetPresetName(slot, &name), E_FAIL) << slot;
        ExpectSent(feature.SetPresetName(slot, text.Get()), "");
    }
    EXPECT_EQ(name, nullptr);
}

TEST_F(PresetFeature, AnswersTheNameOfEachSlot) {
    for (int slot = 0; slot < 6; ++slot) {
        Report("PresetName" + std::to_string(slot) + ": name " + std::to_string(slot) + "\n");
    }
    for (int slot = 0; slot < 6; ++slot) {
        BSTR name = nullptr;
        ASSERT_EQ(feature.GetPresetName(slot, &name), S_OK) << slot;
        EXPECT_EQ(OwnedBstr(name).Units(), Plain("name " + std::to_string(slot)));
    }
}

TEST_F(PresetFeature, NeedsTheRangeToBeComplete) {
    Report("Save: 1\n");
    ReportAvailability("");
    EXPECT_FALSE(feature.IsCacheComplete());
    ReportAvailability("Preset range: 1 8\n");
    EXPECT_TRUE(feature.IsCacheComplete());
}

}  // namespace
}  // namespace Morquil::Testing
