// How blocks reach the mirror of a connected device, what they make the host request, and who is notified.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>

#include "device/device.h"
#include "tests/unit/device/device_rig.h"

namespace Morquil {
namespace {

using namespace Testing;

class IncomingBlock : public DeviceTest {
protected:
    static constexpr _MorquilPropertySetId allSets[] = {morquilInputConfigurationPropertySetId,
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

    /// Connects, and observes every set from then on.
    void Connect(FakeConnection::Answer answer = DeviceAnswer) {
        rig.ConnectToGoodDevice(std::move(answer));
        for (const _MorquilPropertySetId set : allSets) {
            ASSERT_EQ(rig.device->AddPropertyObserver(observer.Get(), set), S_OK);
        }
    }

    Held<PropertyObserver> observer;
};

// ---- Changes --------------------------------------------------------------------------------------------------------

struct Change {
    const char* block;
    Texts notified;
};
void PrintTo(const Change& change, std::ostream* out) {
    *out << change.block;
}

class ChangeAtThePanel : public IncomingBlock, public testing::WithParamInterface<Change> {};

TEST_P(ChangeAtThePanel, IsNotifiedOnceForEachOfItsSets) {
    Connect();
    rig.DeviceSends(GetParam().block);
    EXPECT_EQ(observer->TakeNotifications(), GetParam().notified) << GetParam().block;
    rig.DeviceSends(GetParam().block);
    EXPECT_EQ(observer->TakeNotifications(), Texts{}) << "the same again is no change: " << GetParam().block;
}

INSTANTIATE_TEST_SUITE_P(
    IncomingBlock, ChangeAtThePanel,
    testing::Values(
        Change{"VIDEO INPUT:\nVideo source: HDMI\n\n", {"inco"}},
        Change{"VIDEO OUTPUT:\nTransition setting: 20\n\n", {"ouco"}},
        Change{"VIDEO PROC AMP:\nGain: 5\nHue: 6\n\n", {"vpap"}}, Change{"VIDEO ADJUST:\nRed: 5\n\n", {"coco"}},
        Change{"VIDEO ADJUST:\nLuma low: 5\n\n", {"vidc"}}, Change{"VIDEO ADJUST:\nAspect fill luma: 65\n\n", {"aspf"}},
        Change{"VIDEO ADJUST:\nRed: 5\nLuma low: 5\nAspect fill luma: 65\n\n", {"coco", "vidc", "aspf"}},
        Change{"NOISE REDUCTION:\nEnabled: true\n\n", {"nred"}}, Change{"TEST PATTERN:\nMotion: true\n\n", {"vtpa"}},
        Change{"VIDEO ADVANCED:\nRP177: true\n\n", {"viad"}},
        Change{"ANCILLARY DATA:\nTimecode output line: 10\n\n", {"time"}},
        Change{"ANCILLARY DATA:\nCC output line: 10\n\n", {"clca"}},
        Change{"ANCILLARY DATA:\nAFD output line: 12\n\n", {"viin"}}, Change{"GENLOCK:\nLine offset: 5\n\n", {"refe"}},
        Change{"VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size X left: 2.0\n\n", {"vara"}},
        Change{"AUDIO:\nAnalog input ref level: 19\n\n", {"aump"}}, Change{"MODE3D:\n2D3D depth: 1\n\n", {"3dmo"}},
        Change{"NETWORK CONFIG:\nFriendly name: Rack 2\n\n", {"ntwk"}},
        Change{"DEVICE FILENAMES:\nStill frame name: other\n\n", {"fnam"}},
        Change{"PRESET:\nPresetName0: Sports van\n\n", {"prst"}},
        Change{"MORQUIL DEVICE:\nPanel lock: true\n\n", {"devc"}}, Change{"ALIGN:\nAlign size X left: 2.0\n\n", {}},
        Change{"PROTOCOL PREAMBLE:\nVersion: 3.22\n\n", {}},
        Change{"SUPPORTED CONVERSIONS:\nInput: 720p50\nOutput: 720p50\nAspect ratio: Smart\n\n", {}},
        Change{"VIDEO INPUT AVAILABILITY:\nVideo sources: SDI1\n\n", {"inco"}},
        Change{"VIDEO OUTPUT AVAILABILITY:\nHDMI outputs: RGB444\n\n", {}},
        Change{"VIDEO PROC AMP AVAILABILITY:\nGain range: -5 5\n\n", {}},
        Change{"VIDEO ADJUST AVAILABILITY:\nRed range: -5 5\n\n", {}},
        Change{"GENLOCK AVAILABILITY:\nTypes: External\n\n", {"refe"}},
        Change{"ANCILLARY DATA AVAILABILITY:\nCC output line range: 9 21\n\n", {"clca"}},
        Change{"PRESET AVAILABILITY:\nPreset range: 1 7\n\n", {"prst"}}));

TEST_F(IncomingBlock, IsMergedBeforeItIsNotified) {
    int gainInside = 0;
    observer->onCall = [&] { gainInside = rig.Gain(); };
    Connect();
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(gainInside, 5);
}

TEST_F(IncomingBlock, IsNotifiedOnTheConnectionThread) {
    Connect();
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    const QRN::Core::ThreadId connectionThread = observer->LastThread();
    EXPECT_NE(connectionThread, QRN::Core::CurrentThreadId());
    rig.DeviceSends("GENLOCK:\nLine offset: 5\n\n");
    EXPECT_EQ(observer->LastThread(), connectionThread);
}

TEST_F(IncomingBlock, IsFollowedEvenAfterGarbage) {
    Connect();
    rig.DeviceSends("NO SUCH BLOCK:\nKey: value\n\nno colon\n\xFF\xFE\n\nVIDEO PROC AMP:\nGain: many\nBlack: 3\n\n");
    rig.DeviceSends(std::string(3000, 'x') + "\n\nVIDEO PROC AMP:\r\nGain: 5\r\n\r\n");
    int black = 0;
    EXPECT_EQ(rig.ProcAmp()->GetBlackLevel(&black), S_OK);
    EXPECT_EQ(black, 3);
    EXPECT_EQ(rig.Gain(), 5);
}

// ---- Requests that a change causes --------------------------------------------------------------------------

struct Asking {
    const char* block;
    Texts requests;
};
void PrintTo(const Asking& asking, std::ostream* out) {
    *out << asking.block;
}

class AskingChange : public IncomingBlock, public testing::WithParamInterface<Asking> {};

TEST_P(AskingChange, AsksForWhatDependsOnItInTheOrderOfThePendingTable) {
    Connect();
    rig.DeviceSends(GetParam().block);
    ASSERT_TRUE(rig.link.AwaitIdle());
    Texts requests;
    for (const std::string& sent : rig.SentSinceConnect()) {
        requests.push_back(HeaderOf(sent));
    }
    EXPECT_EQ(requests, GetParam().requests) << GetParam().block;
    rig.DeviceSends(GetParam().block);
    EXPECT_EQ(rig.SentSinceConnect().size(), requests.size()) << "the same again is no change: " << GetParam().block;
}

INSTANTIATE_TEST_SUITE_P(
    IncomingBlock, AskingChange,
    testing::Values(
        Asking{"VIDEO INPUT:\nVideo source: HDMI\n\n", {"VIDEO INPUT AVAILABILITY"}},
        Asking{"VIDEO INPUT:\nVideo mode: 720p50\n\n",
               {"NOISE REDUCTION AVAILABILITY", "VIDEO ADVANCED AVAILABILITY", "VARIABLE ASPECT RATIO AVAILABILITY"}},
        Asking{"VIDEO INPUT:\nWide SD aspect: true\n\n", {"VARIABLE ASPECT RATIO AVAILABILITY"}},
        Asking{"VIDEO INPUT:\nHDMI 3D Full: true\n\n", {"NOISE REDUCTION AVAILABILITY", "VIDEO ADVANCED AVAILABILITY"}},
        Asking{"VIDEO INPUT:\nVideo source: HDMI\nVideo mode: 720p50\nWide SD aspect: true\nHDMI 3D Full: true\n\n",
               {"VIDEO INPUT AVAILABILITY", "NOISE REDUCTION AVAILABILITY", "VIDEO ADVANCED AVAILABILITY",
                "VARIABLE ASPECT RATIO AVAILABILITY"}},
        Asking{"VIDEO INPUT:\nVideo source: SDI1\nVideo mode: 1080i50\nSignal present: false\n\n", {}},
        Asking{"VIDEO OUTPUT:\nVideo mode: 720p50\n\n",
               {"NOISE REDUCTION AVAILABILITY", "VIDEO ADVANCED AVAILABILITY", "GENLOCK AVAILABILITY",
                "VARIABLE ASPECT RATIO AVAILABILITY"}},
        Asking{"VIDEO OUTPUT:\nAspect ratio: Smart\n\n", {"VARIABLE ASPECT RATIO AVAILABILITY"}},
        Asking{"VIDEO OUTPUT:\nVideo mode: 1080i50\nAspect ratio: Anamorphic\nTransition setting: 20\n\n", {}},
        Asking{"VIDEO ADVANCED:\nScenecut detect: false\n\n", {"VIDEO ADVANCED AVAILABILITY"}},
        Asking{"VIDEO ADVANCED:\nProcessing: Lowest Latency\n\n", {"VIDEO ADVANCED AVAILABILITY"}},
        Asking{"VIDEO ADVANCED:\nRP177: true\n\n", {}},
        Asking{"GENLOCK:\nSignal locked: false\n\n", {"GENLOCK AVAILABILITY"}},
        Asking{"GENLOCK:\nSignal locked: true\nLine offset: 5\n\n", {}}, Asking{"VIDEO PROC AMP:\nGain: 5\n\n", {}}));

// ---- Echoes ---------------------------------------------------------------------------------------------------------

class Echo : public IncomingBlock {
protected:
    /// Nothing more is pending.
    void Settle() { ASSERT_TRUE(rig.link.AwaitIdle()); }
};

TEST_F(Echo, OfASetterReachesTheMirrorAndIsNotNotified) {
    Connect();
    EXPECT_EQ(rig.ProcAmp()->SetGain(5), S_OK);
    Settle();
    EXPECT_EQ(rig.SentSinceConnect(), Texts{"VIDEO PROC AMP:\nGain: 5\n\n"});
    EXPECT_EQ(rig.Gain(), 5);
    EXPECT_EQ(observer->Notifications(), Texts{});
}

TEST_F(Echo, IsWhatUpdatesTheMirrorAndNotTheSetter) {
    Connect(DeviceAnswerWithoutEcho);
    EXPECT_EQ(rig.ProcAmp()->SetGain(5), S_OK);
    Settle();
    EXPECT_EQ(rig.Gain(), 0);
}

TEST_F(Echo, OfAResetClearsTheMirrorAndIsNotNotified) {
    Connect();
    EXPECT_EQ(rig.ProcAmp()->ResetAll(), S_OK);
    Settle();
    EXPECT_EQ(rig.Gain(), -999);
    EXPECT_EQ(observer->Notifications(), Texts{});
}

TEST_F(Echo, IsExpectedOnce) {
    Connect();
    rig.ProcAmp()->SetGain(5);
    Settle();
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 6\n\n");
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"vpap", "vpap"}));
}

TEST_F(Echo, WithAnythingElseInItsBlockIsAChange) {
    Connect(DeviceAnswerWithoutEcho);
    rig.ProcAmp()->SetGain(5);
    Settle();
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\nHue: 1\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{"vpap"});
}

TEST_F(Echo, IsKnownByItsValuesAndNotByHowTheDeviceWritesThem) {
    Connect(DeviceAnswerWithoutEcho);
    rig.ProcAmp()->SetGain(5);
    Settle();
    rig.DeviceSends("video proc amp:\r\nGAIN:   +5\r\n\r\n");
    EXPECT_EQ(rig.Gain(), 5);
    EXPECT_EQ(observer->Notifications(), Texts{});
}

TEST_F(Echo, EndsTheWaitForEarlierOnes) {
    Connect(DeviceAnswerWithoutEcho);
    rig.ProcAmp()->SetGain(1);
    Settle();
    rig.ProcAmp()->SetGain(2);
    Settle();
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 2\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{});
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 1\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{"vpap"});
}

TEST_F(Echo, LeavesLaterOnesExpected) {
    Connect(DeviceAnswerWithoutEcho);
    rig.ProcAmp()->SetGain(1);
    Settle();
    rig.ProcAmp()->SetGain(2);
    Settle();
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 1\n\n");
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 2\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{});
    EXPECT_EQ(rig.Gain(), 2);
}

TEST_F(Echo, OfASharedBlockNotifiesNoneOfItsSets) {
    Connect();
    auto* const color = rig.Feature<IMorquilColorCorrection>(IID_IMorquilColorCorrection);
    auto* const clip = rig.Feature<IMorquilVideoClip>(IID_IMorquilVideoClip);
    EXPECT_EQ(color->SetRed(7), S_OK);
    Settle();
    EXPECT_EQ(clip->SetLumaLow(8), S_OK);
    Settle();
    int red = 0;
    unsigned lumaLow = 0;
    EXPECT_EQ(color->GetRed(&red), S_OK);
    EXPECT_EQ(clip->GetLumaLow(&lumaLow), S_OK);
    EXPECT_EQ(red, 7);
    EXPECT_EQ(lumaLow, 8U);
    EXPECT_EQ(observer->Notifications(), Texts{});
}

TEST_F(Echo, OfAnOutputChangeIsNotified) {
    Connect();
    auto* const output = rig.Feature<IMorquilOutputConfiguration>(IID_IMorquilOutputConfiguration);
    EXPECT_EQ(output->SetVideoMode(morquilAPIVideoMode720p50), S_OK);
    Settle();
    EXPECT_EQ(observer->Notifications(), Texts{"ouco"});
}

TEST_F(Echo, OfAnOutputChangeEndsTheWaitForEarlierOnes) {
    Connect(DeviceAnswerWithoutEcho);
    rig.ProcAmp()->SetGain(5);
    Settle();
    rig.Feature<IMorquilOutputConfiguration>(IID_IMorquilOutputConfiguration)->SetVideoMode(morquilAPIVideoMode720p50);
    Settle();
    rig.DeviceSends("VIDEO OUTPUT:\nVideo mode: 720p50\n\n");
    rig.DeviceSends("VIDEO PROC AMP:\nGain: 5\n\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"ouco", "vpap"}));
}

TEST_F(Echo, OfThePanelLockIsNotified) {
    Connect();
    EXPECT_EQ(rig.device->SetPanelLock(2), S_OK);
    Settle();
    EXPECT_EQ(rig.SentSinceConnect(), Texts{"MORQUIL DEVICE:\nPanel lock: true\n\n"});
    LONG lock = 0;
    EXPECT_EQ(rig.device->GetPanelLock(&lock), S_OK);
    EXPECT_EQ(lock, 1);
    EXPECT_EQ(observer->Notifications(), Texts{"devc"});
}

TEST_F(Echo, OfTwoMergedSettersIsOne) {
    Connect(DeviceAnswerWithoutEcho);
    rig.link.AnswerWith(nullptr);
    rig.device->SetPanelLock(1);
    ASSERT_TRUE(rig.link.AwaitIdle());
    rig.ProcAmp()->SetGain(5);
    rig.ProcAmp()->SetGain(6);
    rig.ProcAmp()->SetHue(7);
    rig.DeviceSends("ACK\n\n");
    ASSERT_EQ(rig.SentSinceConnect().back(), "VIDEO PROC AMP:\nGain: 6\nHue: 7\n\n");
    rig.DeviceSends("ACK\n\nVIDEO PROC AMP:\nGain: 6\nHue: 7\n\n");
    EXPECT_EQ(observer->Notifications(), Texts{});
    EXPECT_EQ(rig.Gain(), 6);
}

}  // namespace
}  // namespace Morquil
