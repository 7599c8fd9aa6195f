#include "tests/kit/complete_device/complete_device.h"

namespace Morquil::Testing {

const char* const preamble = "PROTOCOL PREAMBLE:\nVersion: 2.22\n\n";

const char* const deviceBlock =
    "MORQUIL DEVICE:\nModel name: Scripted\nSoftware Version: 0x10\nFPGA Version: 0x20\nPanel lock: false\n"
    "Remote lock: false\n\n";

// Most blocks count as known once they have arrived, whatever they contain.
const char* const settingsBlocks =
    "VIDEO INPUT:\nAuto detection enabled: true\nAuto detection prefer PsF: false\nVideo source: SDI1\n"
    "Video mode: 1080i50\nAudio source: Embedded\nSignal present: true\nTimecode present: None\n"
    "Closed captioning present: None\nWide SD aspect: false\nHDMI 3D Full: false\nOptical module present: false\n"
    "Video pixel format: YCbCr422\nPCIe mode: None\n\n"
    "VIDEO OUTPUT:\nVideo mode: 1080i50\nAspect ratio: Anamorphic\nVideo demux mode: SingleLink\n"
    "Output sdi mode: LevelA\nQuad sdi output: QuadLink\nVideo pixel format: YCbCr422\nAnalog output: Component\n"
    "Output option: Input\nTransition setting: 10\nStill frame present: false\nStill load complete: false\n"
    "Still store complete: false\nStill preview complete: false\nHDMI output: YCbCr422\n\n"
    "VIDEO PROC AMP:\nGain: 0\nBlack: 0\nSaturation: 0\nHue: 0\nRY: 0\nBY: 0\nSharp: 0\n\n"
    "VIDEO ADJUST:\nRed: 0\nLuma low: 4\n\n"
    "NOISE REDUCTION:\nEnabled: false\n\n"
    "TEST PATTERN:\n\n"
    "VIDEO ADVANCED:\nScenecut detect: false\nProcessing: Highest Quality\n\n"
    "ANCILLARY DATA:\nTimecode mode: Off\n\n"
    "GENLOCK:\nSignal locked: true\n\n"
    "VARIABLE ASPECT RATIO:\n\n"
    "ALIGN:\n\n"
    "AUDIO:\n\n"
    "MODE3D:\n\n"
    "NETWORK CONFIG:\nFriendly name: \n\n"
    "DEVICE FILENAMES:\n\n"
    "PRESET:\n\n";

DeviceScript CompleteDevice() {
    DeviceScript script{.greeting = std::string(preamble) + deviceBlock + settingsBlocks};
    for (const char* const block : {"VIDEO ADJUST", "NOISE REDUCTION", "TEST PATTERN", "VIDEO ADVANCED",
                                    "ANCILLARY DATA", "GENLOCK", "VARIABLE ASPECT RATIO", "AUDIO", "MODE3D"}) {
        const std::string header = std::string(block) + " AVAILABILITY";
        script.answers[header] = header + ":\n\n";
    }
    script.answers["SUPPORTED CONVERSIONS"] = "SUPPORTED CONVERSIONS:\n\n";
    script.answers["VIDEO INPUT AVAILABILITY"] =
        "VIDEO INPUT AVAILABILITY:\nVideo sources: SDI1 HDMI\nAudio sources: Embedded\n\n";
    script.answers["VIDEO OUTPUT AVAILABILITY"] =
        "VIDEO OUTPUT AVAILABILITY:\nVideo demux modes: SingleLink\nVideo pixel formats: YCbCr422\n"
        "Output sdi modes: LevelA\nQuad sdi outputs: QuadLink\nAvailable output option: Input\n"
        "HDMI outputs: YCbCr422\nTransition setting range: 0 100\n\n";
    script.answers["VIDEO PROC AMP AVAILABILITY"] =
        "VIDEO PROC AMP AVAILABILITY:\nGain range: -60 60\nBlack range: -1 1\nSaturation range: -1 1\n"
        "Hue range: -1 1\nRY range: -1 1\nBY range: -1 1\nSharp range: -1 1\n\n";
    script.answers["PRESET AVAILABILITY"] = "PRESET AVAILABILITY:\nPreset range: 1 6\n\n";
    return script;
}

}  // namespace Morquil::Testing
