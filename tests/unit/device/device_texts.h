// A small device's whole state as protocol text, a few keys of each block.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Morquil::Testing {

inline constexpr std::string_view preambleText = "PROTOCOL PREAMBLE:\nVersion: 2.22\n\n";

inline constexpr std::string_view deviceText =
    "MORQUIL DEVICE:\nModel name: Rack converter\nSoftware Version: 0x102\nFPGA Version: 0xa0b\nPanel lock: false\n"
    "Remote lock: false\n\n";

/// Every settings block that a connection waits for, except the device's own.
inline constexpr std::string_view settingsText = R"(VIDEO INPUT:
Auto detection enabled: true
Auto detection prefer PsF: false
Video source: SDI1
Video mode: 1080i50
Audio source: Embedded
Signal present: true
Timecode present: Detected
Closed captioning present: None
Wide SD aspect: false
HDMI 3D Full: false
Optical module present: true
Video pixel format: YCbCr422
PCIe mode: None

VIDEO OUTPUT:
Video mode: 1080i50
Aspect ratio: Anamorphic
Video demux mode: SingleLink
Output sdi mode: LevelA
Quad sdi output: QuadLink
Video pixel format: YCbCr422
Analog output: Component
Output option: Input
Transition setting: 10
Still frame present: false
Still load complete: false
Still store complete: false
Still preview complete: false
HDMI output: YCbCr422

VIDEO PROC AMP:
Gain: 0
Black: 0
Saturation: 0
Hue: 0
RY: 0
BY: 0
Sharp: 0

VIDEO ADJUST:
Red: 0
Luma low: 4
Aspect fill luma: 64

NOISE REDUCTION:
Enabled: false

TEST PATTERN:
Motion: false

VIDEO ADVANCED:
Scenecut detect: true
Processing: Highest Quality

ANCILLARY DATA:
Timecode output line: 9
CC output line: 9
AFD output line: 11

GENLOCK:
Line offset: 0
Signal locked: true

VARIABLE ASPECT RATIO:
Variable Aspect Ratio size X left: 1.0

AUDIO:
Analog input ref level: 18

MODE3D:
2D3D depth: 0

NETWORK CONFIG:
Friendly name: Rack 1

DEVICE FILENAMES:
Still frame name: still-1

PRESET:
PresetName0: News studio

)";

/// The fourteen blocks that the host requests, in that order.
inline const std::vector<std::pair<std::string, std::string>>& AvailabilityLines() {
    static const std::vector<std::pair<std::string, std::string>> lines{
        {"SUPPORTED CONVERSIONS", "Input: 1080i50\nOutput: 720p50\nAspect ratio: Anamorphic\n"},
        {"VIDEO INPUT AVAILABILITY", "Video sources: SDI1 HDMI\nAudio sources: Embedded AES\n"},
        {"VIDEO OUTPUT AVAILABILITY",
         "Video demux modes: SingleLink\nVideo pixel formats: YCbCr422\nOutput sdi modes: LevelA\n"
         "Quad sdi outputs: QuadLink\nVideo sources: Component\nAvailable output option: Input Black\n"
         "HDMI outputs: YCbCr422\nTransition setting range: 0 100\n"},
        {"VIDEO PROC AMP AVAILABILITY",
         "Gain range: -60 60\nBlack range: -100 100\nSaturation range: -100 100\nHue range: -180 180\n"
         "RY range: -50 50\nBY range: -50 50\nSharp range: -20 20\n"},
        {"VIDEO ADJUST AVAILABILITY", "Red range: -50 50\nLuma low range: 4 500\nAspect fill luma range: 64 940\n"},
        {"NOISE REDUCTION AVAILABILITY", "Bias range: -10 10\n"},
        {"TEST PATTERN AVAILABILITY", "Motion: true\n"},
        {"VIDEO ADVANCED AVAILABILITY", "FRC aperture range: 0 3\n"},
        {"ANCILLARY DATA AVAILABILITY", "CC output line range: 9 20\n"},
        {"GENLOCK AVAILABILITY", "Types: Input Internal\n"},
        {"VARIABLE ASPECT RATIO AVAILABILITY", "Variable Aspect Ratio size X range: 0.1 8.0\n"},
        {"AUDIO AVAILABILITY", "Audio level range: -60 12\n"},
        {"MODE3D AVAILABILITY", "2D3D depth range: -50 50\n"},
        {"PRESET AVAILABILITY", "Preset range: 1 6\n"}};
    return lines;
}

inline std::string BlockOf(std::string_view header, std::string_view lines = "") {
    return std::string(header) + ":\n" + std::string(lines) + "\n";
}

/// The header of the block `text`, without its colon.
inline std::string HeaderOf(std::string_view text) {
    return std::string(text.substr(0, text.find(':')));
}

/// A device's answer to the block `sent`: it acknowledges it, returns what was requested and echoes what was set.
inline std::string DeviceAnswer(const std::string& sent) {
    if (sent == "PING\n\n") {
        return "ACK\n\n";
    }
    for (const auto& [header, lines] : AvailabilityLines()) {
        if (header == HeaderOf(sent)) {
            return "ACK\n\n" + BlockOf(header, lines);
        }
    }
    return "ACK\n\n" + sent;
}

/// The same without the echo.
inline std::string DeviceAnswerWithoutEcho(const std::string& sent) {
    const std::string answer = DeviceAnswer(sent);
    return answer == "ACK\n\n" + sent ? "ACK\n\n" : answer;
}

/// Everything that a device sends when a host connects.
inline std::string GreetingText() {
    return std::string(preambleText) + std::string(deviceText) + std::string(settingsText);
}

/// The greeting and every availability: a complete state without any answers to requests.
inline std::string CompleteText() {
    std::string text = GreetingText();
    for (const auto& [header, lines] : AvailabilityLines()) {
        text += BlockOf(header, lines);
    }
    return text;
}

}  // namespace Morquil::Testing
