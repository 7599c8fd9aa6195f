#include "device/device.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

using Device = DeviceTest;

const std::vector<const IID*>& FeatureIdentifiers() {
    static const std::vector<const IID*> identifiers{&IID_IMorquilInputConfiguration,
                                                     &IID_IMorquilOutputConfiguration,
                                                     &IID_IMorquilVideoProcAmp,
                                                     &IID_IMorquilColorCorrection,
                                                     &IID_IMorquilVideoClip,
                                                     &IID_IMorquilAspectFill,
                                                     &IID_IMorquilNoiseReduction,
                                                     &IID_IMorquilTestPattern,
                                                     &IID_IMorquilVideoAdvanced,
                                                     &IID_IMorquilTimecode,
                                                     &IID_IMorquilClosedCaption,
                                                     &IID_IMorquilVideoIndex,
                                                     &IID_IMorquilReference,
                                                     &IID_IMorquilVariableAspectRatio,
                                                     &IID_IMorquilAudioMapping,
                                                     &IID_IMorquil3dMode,
                                                     &IID_IMorquilNetworkConfig,
                                                     &IID_IMorquilDeviceFilenames,
                                                     &IID_IMorquilPreset};
    return identifiers;
}

constexpr _MorquilPropertySetId propertySets[] = {morquilInputConfigurationPropertySetId,
                                                  morquilOutputConfigurationPropertySetId,
                                                  morquilVideoProcAmpPropertySetId,
                                                  morquilTestPatternPropertySetId,
                                                  morquilVideoAdvancedPropertySetId,
                                                  morquilNoiseReductionPropertySetId,
                                                  morquilColorCorrectionPropertySetId,
                                                  morquilVideoClipPropertySetId,
                                                  morquilAspectFillPropertySetId,
                                                  morquilTimecodePropertySetId,
                                                  morquilClosedCaptionPropertySetId,
                                                  morquilVideoIndexPropertySetId,
                                                  morquilReferencePropertySetId,
                                                  morquilVariableAspectRatioPropertySetId,
                                                  morquilAudioMappingPropertySetId,
                                                  morquil3dModePropertySetId,
                                                  morquilNetworkConfigPropertySetId,
                                                  morquilDeviceFilenamesPropertySetId,
                                                  morquilPresetPropertySetId,
                                                  morquilDeviceControlPropertySetId};

// ---- Identity -------------------------------------------------------------------------------------------------------

TEST_F(Device, IsItsOwnIdentity) {
    for (const IID* const iid : {&IID_IUnknown, &IID_IMorquilDevice}) {
        void* out = nullptr;
        EXPECT_EQ(rig.device->QueryInterface(*iid, &out), S_OK);
        EXPECT_EQ(out, static_cast<IMorquilDevice*>(rig.device));
        EXPECT_EQ(rig.device->Release(), 1U);
    }
}

TEST_F(Device, HandsOutEveryFeatureWithAReferenceToItself) {
    std::vector<void*> faces;
    for (const IID* const iid : FeatureIdentifiers()) {
        void* out = nullptr;
        ASSERT_EQ(rig.device->QueryInterface(*iid, &out), S_OK);
        ASSERT_NE(out, nullptr);
        auto* const feature = static_cast<IUnknown*>(out);
        EXPECT_EQ(feature->AddRef(), 3U);
        EXPECT_EQ(rig.device->Release(), 2U);
        for (void* const earlier : faces) {
            EXPECT_NE(earlier, out) << "two interfaces are one object";
        }
        faces.push_back(out);
        void* identity = nullptr;
        EXPECT_EQ(feature->QueryInterface(IID_IUnknown, &identity), S_OK);
        EXPECT_EQ(identity, static_cast<IMorquilDevice*>(rig.device));
        EXPECT_EQ(feature->Release(), 2U);
        EXPECT_EQ(feature->Release(), 1U);
    }
}

TEST_F(Device, RefusesInterfacesThatItDoesNotHave) {
    for (const IID* const iid : {&IID_IMorquilAlign, &IID_IMorquilDiscovery, &IID_IClassFactory, &GUID_NULL}) {
        void* out = &rig;
        EXPECT_EQ(rig.device->QueryInterface(*iid, &out), E_NOINTERFACE);
        EXPECT_EQ(out, nullptr);
    }
    EXPECT_EQ(rig.device->QueryInterface(IID_IMorquilDevice, nullptr), E_POINTER);
    EXPECT_EQ(rig.device->QueryInterface(IID_IMorquilAlign, nullptr), E_POINTER);
    EXPECT_EQ(rig.device->AddRef(), 2U);
    EXPECT_EQ(rig.device->Release(), 1U);
}

// ---- Property observers ---------------------------------------------------------------------------------------------

TEST_F(Device, AcceptsPropertyObserversForTwentySets) {
    const Held<PropertyObserver> observer;
    ULONG references = 1;
    for (const _MorquilPropertySetId set : propertySets) {
        SCOPED_TRACE(FourCharacters(set));
        EXPECT_EQ(rig.device->RemovePropertyObserver(observer.Get(), set), S_FALSE);
        EXPECT_EQ(rig.device->AddPropertyObserver(observer.Get(), set), S_OK);
        EXPECT_EQ(rig.device->AddPropertyObserver(observer.Get(), set), S_FALSE);
        EXPECT_EQ(observer->References(), ++references);
    }
    for (const _MorquilPropertySetId set : propertySets) {
        EXPECT_EQ(rig.device->RemovePropertyObserver(observer.Get(), set), S_OK);
        EXPECT_EQ(rig.device->RemovePropertyObserver(observer.Get(), set), S_FALSE);
        EXPECT_EQ(observer->References(), --references);
    }
}

TEST_F(Device, RefusesPropertyObserversForAnythingElse) {
    const Held<PropertyObserver> observer;
    for (const auto set : {morquilAlignPropertySetId, static_cast<_MorquilPropertySetId>(0)}) {
        EXPECT_EQ(rig.device->AddPropertyObserver(observer.Get(), set), E_FAIL);
        EXPECT_EQ(rig.device->RemovePropertyObserver(observer.Get(), set), E_FAIL);
    }
    EXPECT_EQ(observer->References(), 1U);
}

TEST(DeviceObservers, AreReleasedOnceWithTheDevice) {
    const Watchdog watchdog;
    const Held<PropertyObserver> observer;
    const Held<ConnectionObserver> connectionObserver;
    {
        DeviceRig rig;
        for (const _MorquilPropertySetId set : propertySets) {
            rig.device->AddPropertyObserver(observer.Get(), set);
        }
        rig.device->AddConnectionObserver(connectionObserver.Get());
        rig.ConnectToGoodDevice();
    }
    EXPECT_TRUE(observer->AwaitReferences(1));
    EXPECT_TRUE(connectionObserver->AwaitReferences(1));
}

// ---- What the device itself answers ---------------------------------------------------------------------------------

TEST_F(Device, KnowsNothingBeforeItIsConnected) {
    BSTR name = nullptr;
    UINT version = 77;
    LONG flag = 77;
    EXPECT_EQ(rig.device->GetDeviceName(&name), E_FAIL);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(rig.device->GetSoftwareVersion(&version), E_FAIL);
    EXPECT_EQ(rig.device->GetFPGAVersion(&version), E_FAIL);
    EXPECT_EQ(version, 77U);
    EXPECT_EQ(rig.device->GetPanelLock(&flag), E_FAIL);
    EXPECT_EQ(rig.device->GetRemoteLock(&flag), E_FAIL);
    EXPECT_EQ(flag, 77);
    EXPECT_EQ(rig.device->GetNetworkUpdateSupported(&flag), S_OK);
    EXPECT_EQ(flag, 0);
}

TEST_F(Device, RefusesNullPointers) {
    EXPECT_EQ(rig.device->GetDeviceName(nullptr), E_POINTER);
    EXPECT_EQ(rig.device->GetSoftwareVersion(nullptr), E_POINTER);
    EXPECT_EQ(rig.device->GetFPGAVersion(nullptr), E_POINTER);
    EXPECT_EQ(rig.device->GetPanelLock(nullptr), E_POINTER);
    EXPECT_EQ(rig.device->GetRemoteLock(nullptr), E_POINTER);
    EXPECT_EQ(rig.device->GetNetworkUpdateSupported(nullptr), E_POINTER);
    EXPECT_EQ(rig.device->IsConversionSupported(morquilAPIVideoMode1080i50, morquilAPIVideoMode1080i50,
                                                morquilAPIAspectRatioSmart, nullptr),
              E_POINTER);
    EXPECT_EQ(rig.device->SaveSettingsFile(nullptr), E_INVALIDARG);
    EXPECT_EQ(rig.device->LoadSettingsFile(nullptr), E_INVALIDARG);
}

TEST_F(Device, AnswersItsIdentity) {
    rig.ConnectToGoodDevice();
    BSTR name = nullptr;
    UINT software = 0;
    UINT fpga = 0;
    LONG panelLock = 1;
    LONG remoteLock = 1;
    EXPECT_EQ(rig.device->GetDeviceName(&name), S_OK);
    EXPECT_EQ(OwnedBstr(name).Units(), OLESTR("Rack converter"));
    EXPECT_EQ(rig.device->GetSoftwareVersion(&software), S_OK);
    EXPECT_EQ(software, 0x0102U);
    EXPECT_EQ(rig.device->GetFPGAVersion(&fpga), S_OK);
    EXPECT_EQ(fpga, 0x0A0BU);
    EXPECT_EQ(rig.device->GetPanelLock(&panelLock), S_OK);
    EXPECT_EQ(panelLock, 0);
    EXPECT_EQ(rig.device->GetRemoteLock(&remoteLock), S_OK);
    EXPECT_EQ(remoteLock, 0);
}

TEST_F(Device, AnswersWhetherItCanBeUpdatedWithTheBitItself) {
    rig.ConnectToGoodDevice();
    LONG supported = 0;
    for (const auto& [version, expected] : {std::pair("2.22", 2), std::pair("1.22", 0), std::pair("7.22", 2),
                                            std::pair("0.22", 0), std::pair("-1.22", 2)}) {
        rig.DeviceSends("PROTOCOL PREAMBLE:\nVersion: " + std::string(version) + "\n\n");
        EXPECT_EQ(rig.device->GetNetworkUpdateSupported(&supported), S_OK);
        EXPECT_EQ(supported, expected) << version;
    }
}

TEST_F(Device, AnswersWhichConversionsItSupports) {
    rig.ConnectToGoodDevice();
    int supportedCount = 0;
    for (int input = -2; input < 37; ++input) {
        for (int output = -2; output < 37; ++output) {
            for (int ratio = -2; ratio < 8; ++ratio) {
                LONG supported = 2;
                EXPECT_EQ(rig.device->IsConversionSupported(static_cast<_MorquilAPIVideoMode>(input),
                                                            static_cast<_MorquilAPIVideoMode>(output),
                                                            static_cast<_MorquilAPIAspectRatio>(ratio), &supported),
                          S_OK);
                supportedCount += supported;
            }
        }
    }
    EXPECT_EQ(supportedCount, 1);
    LONG supported = 0;
    rig.device->IsConversionSupported(morquilAPIVideoMode1080i50, morquilAPIVideoMode720p50,
                                      morquilAPIAspectRatioAnamorphic, &supported);
    EXPECT_EQ(supported, 1);
}

TEST_F(Device, ReplacesTheTableOfConversions) {
    rig.ConnectToGoodDevice();
    rig.DeviceSends("SUPPORTED CONVERSIONS:\nInput: 720p50\nOutput: 720p50\nAspect ratio: Smart\n\n");
    LONG supported = 2;
    rig.device->IsConversionSupported(morquilAPIVideoMode1080i50, morquilAPIVideoMode720p50,
                                      morquilAPIAspectRatioAnamorphic, &supported);
    EXPECT_EQ(supported, 0);
    rig.device->IsConversionSupported(morquilAPIVideoMode720p50, morquilAPIVideoMode720p50, morquilAPIAspectRatioSmart,
                                      &supported);
    EXPECT_EQ(supported, 1);
}

TEST_F(Device, QueuesThePanelLockEvenBeforeItIsConnected) {
    EXPECT_EQ(rig.device->SetPanelLock(1), S_OK);
    rig.ConnectToGoodDevice();
    EXPECT_EQ(rig.link.Sends().front(), "MORQUIL DEVICE:\nPanel lock: true\n\n");
}

TEST_F(Device, ReportsThatASetterCouldNotBeSent) {
    rig.ConnectToGoodDevice();
    rig.link.RefuseSignals();
    EXPECT_EQ(rig.device->SetPanelLock(1), E_FAIL);
    EXPECT_EQ(rig.device->SetPanelLock(0), S_OK) << "merged into the one that waits";
    rig.link.AllowSignals();
}

TEST_F(Device, AnswersSFalseForAFileItCannotLoadAndSOkForOneItCannotSave) {
    const OwnedBstr path{Utf16{OLESTR("no such folder/settings.txt")}};
    EXPECT_EQ(rig.device->LoadSettingsFile(path.Get()), S_FALSE);
    EXPECT_EQ(rig.device->SaveSettingsFile(path.Get()), S_OK);
}

}  // namespace
}  // namespace Morquil
