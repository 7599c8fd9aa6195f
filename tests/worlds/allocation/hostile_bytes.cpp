#include "tests/worlds/allocation/hostile_bytes.h"

#include <algorithm>

#include "tests/unit/device/device_texts.h"

namespace Morquil::Testing {
namespace {

constexpr std::size_t byteKinds = 9;

}  // namespace

std::vector<std::string> HostileBytes::Round(std::size_t size) {
    std::string bytes;
    for (std::size_t kind = 0; kind < byteKinds || bytes.size() < size; ++kind) {
        bytes += Kind(kind < byteKinds ? kind : Below(byteKinds));
    }
    std::vector<std::string> pieces = Cut(bytes);
    pieces.push_back("\n\n\n" + Times(50, "ACK\n\n"));
    return pieces;
}

std::string HostileBytes::Times(std::size_t count, const std::string& text) const {
    std::string repeated;
    for (std::size_t time = 0; time < count; ++time) {
        repeated += text;
    }
    return repeated;
}

std::string HostileBytes::Kind(std::size_t kind) {
    switch (kind) {
        case 0:
            return Noise();
        case 1:
            return "NO SUCH BLOCK " + std::to_string(Below(1000)) + ":\n" + Times(Below(50), "No such key: 1\n") + "\n";
        case 2:
            return Times(1 + Below(5000), "x") + (Below(2) == 0 ? "\n\n" : ":");
        case 3:
            return HugeList();
        case 4:
            return Conversions();
        case 5:
            return Storm();
        case 6:
            return Texts();
        case 7:
            return Changes();
        default:
            return SpoiltBlocks();
    }
}

std::string HostileBytes::Noise() {
    std::string bytes(Below(600), '\0');
    std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(Below(256)); });
    return bytes;
}

std::string HostileBytes::HugeList() {
    return "VIDEO INPUT AVAILABILITY:\nVideo sources:" + Times(Below(300), " SDI1 HDMI Nonsense") +
           "\n\nVIDEO OUTPUT AVAILABILITY:\n" + Times(Below(50), "Video demux modes: SingleLink DualLink\n") + "\n";
}

std::string HostileBytes::Conversions() {
    const std::string conversion = "Input: 1080i50\nOutput: 720p50\nAspect ratio: Anamorphic Letterbox\n";
    return Times(1 + Below(3), "SUPPORTED CONVERSIONS:\n" + Times(Below(30), conversion) + "\n");
}

std::string HostileBytes::Storm() {
    return Times(Below(60), "ACK\n\n") + Times(Below(60), "NACK\n\n") + Times(Below(10), "PING\n\n");
}

std::string HostileBytes::Texts() {
    const auto text = [this] { return Times(Below(3) == 0 ? Below(3000) : Below(60), "\xC3\xA9") + "\n"; };
    return "NETWORK CONFIG:\nFriendly name: " + text() + "\nDEVICE FILENAMES:\nStill frame name: " + text() +
           "\nPRESET:\nPresetName" + std::to_string(Below(8)) + ": " + text() +
           "\nMORQUIL DEVICE:\nModel name: " + text() + "\n";
}

std::string HostileBytes::Changes() {
    return Times(1 + Below(10),
                 "VIDEO INPUT:\nVideo source: HDMI\nVideo mode: 720p50\n\nVIDEO OUTPUT:\nVideo mode: 720p60\n\n"
                 "VIDEO INPUT:\nVideo source: SDI1\nVideo mode: 1080i50\n\nVIDEO OUTPUT:\nVideo mode: 1080i50\n\n");
}

std::string HostileBytes::SpoiltBlocks() {
    std::string bytes = CompleteText();
    for (std::size_t spoilt = Below(40); spoilt > 0; --spoilt) {
        bytes[Below(bytes.size())] = static_cast<char>(Below(256));
    }
    return bytes;
}

std::vector<std::string> HostileBytes::Cut(const std::string& bytes) {
    std::vector<std::string> pieces;
    for (std::size_t at = 0; at < bytes.size(); at += pieces.back().size()) {
        pieces.push_back(bytes.substr(at, 1 + Below(3000)));
    }
    return pieces;
}

}  // namespace Morquil::Testing
