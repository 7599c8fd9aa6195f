// The file that a host saves, byte for byte.
#include <gtest/gtest.h>

#include <optional>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/host/host.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {
namespace {

const char* const savedAtFirst =
    "VIDEO INPUT:\nAuto detection enabled: true\nAuto detection prefer PsF: false\nVideo source: SDI1\n"
    "Video mode: 1080i50\nAudio source: Embedded\nSignal present: true\nTimecode present: None\n"
    "Closed captioning present: None\nWide SD aspect: false\nHDMI 3D Full: false\nOptical module present: false\n"
    "Video pixel format: YCbCr422\nPCIe mode: None\n\n\n"
    "VIDEO OUTPUT:\nVideo mode: 1080i50\nAspect ratio: Anamorphic\nVideo demux mode: SingleLink\n"
    "Output sdi mode: LevelA\nQuad sdi output: QuadLink\nVideo pixel format: YCbCr422\nAnalog output: Component\n"
    "Output option: Input\nTransition setting: 10\nStill frame present: false\nStill load complete: false\n"
    "Still store complete: false\nStill preview complete: false\nHDMI output: YCbCr422\n\n\n"
    "VIDEO PROC AMP:\nGain: 0\nBlack: 0\nSaturation: 0\nHue: 0\nRY: 0\nBY: 0\nSharp: 0\n\n\n"
    "VIDEO ADJUST:\nRed: 0\nLuma low: 4\n\n\n"
    "NOISE REDUCTION:\nEnabled: false\n\n\n"
    "TEST PATTERN:\n\n\n"
    "GENLOCK:\nSignal locked: true\n\n\n"
    "ANCILLARY DATA:\nTimecode mode: Off\n\n\n"
    "VIDEO ADVANCED:\nScenecut detect: false\nProcessing: Highest Quality\n\n\n"
    "MODE3D:\n\n\n"
    "VARIABLE ASPECT RATIO:\n\n\n"
    "ALIGN:\n\n\n"
    "AUDIO:\n\n\n"
    "MORQUIL DEVICE:\nPanel lock: false\nRemote lock: false\n\n\n";

const char* const reports =
    "VIDEO PROC AMP:\nReset: true\nGain: 5\n\n"
    "VIDEO ADJUST:\nLuma high: 4294967295\nResetValues: 3\n\n"
    "NETWORK CONFIG:\nFriendly name: Studio\n\nPRESET:\nPresetName0: News\n\nDEVICE FILENAMES:\nStill frame name: s\n\n"
    "TEST PATTERN:\nTest tone: Tone3KHz\nOutput: Grid\n\n"
    "ANCILLARY DATA:\nTimecode generate value: 01:02:03:04\nTimecode output line: 9\n\n"
    "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size X left: 1e300\nVariable Aspect Ratio size Y right: -0.5\n\n"
    "ALIGN:\nAlign trim X left: 5\n\n"
    "MODE3D:\n3D input: 3DTopBottom\n3D output: 3DFullFrame\n3D mode: 3DModeAlign\n\n"
    "AUDIO:\nAudioOut15: TTMute\nAudioOut2: AudioIn3\nAudioInLevel0: -1\nAudioInPhase0: 1\nMetadata lfe select: "
    "true\n\n"
    "MORQUIL DEVICE:\nPanel lock: true\n\n";

/// A whole file in which only these blocks differ.
std::string SavedLater() {
    std::string text = savedAtFirst;
    const auto replace = [&](const std::string& from, const std::string& to) {
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
    };
    // A reset clears what was known, including what arrived with it.
    replace("VIDEO PROC AMP:\nGain: 0\nBlack: 0\nSaturation: 0\nHue: 0\nRY: 0\nBY: 0\nSharp: 0\n",
            "VIDEO PROC AMP:\nReset: true\n");
    replace("Luma low: 4\n", "Luma low: 4\nLuma high: -1\nResetValues: 3\n");
    replace("TEST PATTERN:\n", "TEST PATTERN:\nOutput: Grid\nTest tone: Tone3KHz\n");
    replace("Timecode mode: Off\n",
            "Timecode mode: Off\nTimecode output line: 9\nTimecode generate value: 01:02:03;04\n");
    replace("MODE3D:\n", "MODE3D:\n3D mode: 3DModeAlign\n3D output: 3DFullFrame\n3D input: 3DTopBottom\n");
    replace("VARIABLE ASPECT RATIO:\n", "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size Y right: -0.500000\n");
    replace("ALIGN:\n", "ALIGN:\nAlign trim X left: 5\n");
    replace("AUDIO:\n",
            "AUDIO:\nAudioOut2: AudioIn3\nAudioOut15: TTMute\nAudioInLevel0: -1\nAudioInPhase0: true\n"
            "Metadata lfe select: true\n");
    replace("Panel lock: false\n", "Panel lock: true\n");
    return text;
}

TEST(SavedSettings, HoldFourteenBlocksOfWhatTheDeviceHasSaid) {
    const TemporaryFolder folder;
    const std::string path = folder.PathOf("settings.txt");
    ScriptedDevice device(CompleteDevice());
    ConnectOutcome outcome = Connect(device.Address());
    ASSERT_EQ(outcome.result, ok) << outcome.reason;
    std::optional<WatchedDevice> watched(std::in_place, device, outcome.device);

    EXPECT_EQ(outcome.device.Call(Slot::saveSettingsFile, HostText(path).Get()), okFalse);
    EXPECT_EQ(ContentOf(path), savedAtFirst);

    watched->Report(reports);
    EXPECT_EQ(outcome.device.Call(Slot::saveSettingsFile, HostText(path).Get()), okFalse);
    EXPECT_EQ(ContentOf(path), SavedLater());

    watched.reset();
    Disconnect(outcome.device);
    EXPECT_EQ(outcome.device.Call(Slot::saveSettingsFile, HostText(path).Get()), okFalse);
    EXPECT_EQ(ContentOf(path),
              "VIDEO INPUT:\n\n\nVIDEO OUTPUT:\n\n\nVIDEO PROC AMP:\n\n\nVIDEO ADJUST:\n\n\nNOISE REDUCTION:\n\n\n"
              "TEST PATTERN:\n\n\nGENLOCK:\n\n\nANCILLARY DATA:\n\n\nVIDEO ADVANCED:\n\n\nMODE3D:\n\n\n"
              "VARIABLE ASPECT RATIO:\n\n\nALIGN:\n\n\nAUDIO:\n\n\nMORQUIL DEVICE:\n\n\n");
}

}  // namespace
}  // namespace Morquil::Testing
