#include "tests/worlds/simulation/expected_mirror.h"

#include <algorithm>
#include <array>

#include "tests/worlds/simulation/device_messages.h"
#include "tests/worlds/simulation/spoken_keys.h"

namespace Morquil::Testing::Worlds {

namespace {

/// The property set that is notified of a change of a key: of all the block's keys, or of those with this prefix.
struct Owner {
    std::string_view header;
    std::array<std::string_view, 3> beginnings;
    _MorquilPropertySetId propertySet;
};

bool Owns(const Owner& owner, std::string_view key) {
    bool owns = owner.beginnings.front().empty();
    for (const std::string_view beginning : owner.beginnings) {
        owns |= !beginning.empty() && key.starts_with(beginning);
    }
    return owns;
}

// clang-format off
constexpr std::array owners{
    Owner{"MORQUIL DEVICE",                      {},                        morquilDeviceControlPropertySetId},
    Owner{"VIDEO INPUT",                         {},                        morquilInputConfigurationPropertySetId},
    Owner{"VIDEO INPUT AVAILABILITY",            {},                        morquilInputConfigurationPropertySetId},
    Owner{"VIDEO OUTPUT",                        {},                        morquilOutputConfigurationPropertySetId},
    Owner{"VIDEO PROC AMP",                      {},                        morquilVideoProcAmpPropertySetId},
    Owner{"VIDEO ADJUST",                        {"Red", "Green", "Blue"},  morquilColorCorrectionPropertySetId},
    Owner{"VIDEO ADJUST",                        {"Luma", "Chroma"},        morquilVideoClipPropertySetId},
    Owner{"VIDEO ADJUST",                        {"Aspect fill"},           morquilAspectFillPropertySetId},
    Owner{"NOISE REDUCTION",                     {},                        morquilNoiseReductionPropertySetId},
    Owner{"NOISE REDUCTION AVAILABILITY",        {},                        morquilNoiseReductionPropertySetId},
    Owner{"TEST PATTERN",                        {},                        morquilTestPatternPropertySetId},
    Owner{"TEST PATTERN AVAILABILITY",           {},                        morquilTestPatternPropertySetId},
    Owner{"VIDEO ADVANCED",                      {},                        morquilVideoAdvancedPropertySetId},
    Owner{"VIDEO ADVANCED AVAILABILITY",         {},                        morquilVideoAdvancedPropertySetId},
    Owner{"ANCILLARY DATA",                      {"Timecode"},              morquilTimecodePropertySetId},
    Owner{"ANCILLARY DATA",                      {"CC"},                    morquilClosedCaptionPropertySetId},
    Owner{"ANCILLARY DATA",                      {"AFD", "Index"},          morquilVideoIndexPropertySetId},
    Owner{"ANCILLARY DATA AVAILABILITY",         {"Timecode"},              morquilTimecodePropertySetId},
    Owner{"ANCILLARY DATA AVAILABILITY",         {"CC"},                    morquilClosedCaptionPropertySetId},
    Owner{"ANCILLARY DATA AVAILABILITY",         {"AFD", "Index"},          morquilVideoIndexPropertySetId},
    Owner{"GENLOCK",                             {},                        morquilReferencePropertySetId},
    Owner{"GENLOCK AVAILABILITY",                {},                        morquilReferencePropertySetId},
    Owner{"VARIABLE ASPECT RATIO",               {},                        morquilVariableAspectRatioPropertySetId},
    Owner{"VARIABLE ASPECT RATIO AVAILABILITY",  {},                        morquilVariableAspectRatioPropertySetId},
    Owner{"AUDIO",                               {},                        morquilAudioMappingPropertySetId},
    Owner{"AUDIO AVAILABILITY",                  {},                        morquilAudioMappingPropertySetId},
    Owner{"MODE3D",                              {},                        morquil3dModePropertySetId},
    Owner{"MODE3D AVAILABILITY",                 {},                        morquil3dModePropertySetId},
    Owner{"NETWORK CONFIG",                      {},                        morquilNetworkConfigPropertySetId},
    Owner{"DEVICE FILENAMES",                    {},                        morquilDeviceFilenamesPropertySetId},
    Owner{"PRESET",                              {},                        morquilPresetPropertySetId},
    Owner{"PRESET AVAILABILITY",                 {},                        morquilPresetPropertySetId}};

/// Which block is requested when a key differs from its known value.
struct Question {
    std::string_view header;
    std::string_view key;
    std::string_view request;
};
constexpr std::array questions{
    Question{"VIDEO INPUT",    "Video source",     "VIDEO INPUT AVAILABILITY"},
    Question{"VIDEO INPUT",    "Video mode",       "VARIABLE ASPECT RATIO AVAILABILITY"},
    Question{"VIDEO INPUT",    "Wide SD aspect",   "VARIABLE ASPECT RATIO AVAILABILITY"},
    Question{"VIDEO INPUT",    "Video mode",       "NOISE REDUCTION AVAILABILITY"},
    Question{"VIDEO INPUT",    "HDMI 3D Full",     "NOISE REDUCTION AVAILABILITY"},
    Question{"VIDEO INPUT",    "Video mode",       "VIDEO ADVANCED AVAILABILITY"},
    Question{"VIDEO INPUT",    "HDMI 3D Full",     "VIDEO ADVANCED AVAILABILITY"},
    Question{"VIDEO OUTPUT",   "Video mode",       "VARIABLE ASPECT RATIO AVAILABILITY"},
    Question{"VIDEO OUTPUT",   "Aspect ratio",     "VARIABLE ASPECT RATIO AVAILABILITY"},
    Question{"VIDEO OUTPUT",   "Video mode",       "NOISE REDUCTION AVAILABILITY"},
    Question{"VIDEO OUTPUT",   "Video mode",       "VIDEO ADVANCED AVAILABILITY"},
    Question{"VIDEO OUTPUT",   "Video mode",       "GENLOCK AVAILABILITY"},
    Question{"VIDEO ADVANCED", "Processing",       "VIDEO ADVANCED AVAILABILITY"},
    Question{"VIDEO ADVANCED", "Scenecut detect",  "VIDEO ADVANCED AVAILABILITY"},
    Question{"GENLOCK",        "Signal locked",    "GENLOCK AVAILABILITY"}};

/// For these blocks the connection waits not only for arrival but for all keys.
constexpr std::array<std::string_view, 6> wholeBlocks{
    "VIDEO INPUT", "VIDEO OUTPUT", "VIDEO OUTPUT AVAILABILITY",
    "VIDEO PROC AMP", "VIDEO PROC AMP AVAILABILITY", "PRESET AVAILABILITY"};
// clang-format on

bool Holds(const std::map<std::string, std::string>& block, const Lines& lines) {
    for (const auto& line : lines) {
        if (!block.contains(line.first)) {
            return false;
        }
    }
    return true;
}

bool IsShared(std::string_view header) {
    return header.starts_with("VIDEO ADJUST") || header.starts_with("ANCILLARY DATA");
}

bool IsWhole(std::string_view header) {
    for (const std::string_view whole : wholeBlocks) {
        if (whole == header) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool HasEchoes(std::string_view header) {
    return header != "MORQUIL DEVICE" && header != "SUPPORTED CONVERSIONS" && !header.ends_with("AVAILABILITY");
}

ExpectedMirror::Keys ExpectedMirror::Merge(const std::string& header, const Lines& lines) {
    Keys changed;
    auto& block = blocks_[header];
    std::string selected;
    for (const auto& [key, text] : lines) {
        if (IsSelector(header, key)) {
            selected = text;
            continue;
        }
        const std::string name = selected.empty() ? key : NameAfter(selected, key);
        const std::string value = WithoutEndingZeros(text);
        const auto [place, isNew] = block.try_emplace(name, value);
        if (isNew || place->second != value) {
            place->second = value;
            changed.insert(name);
        }
    }
    return changed;
}

std::vector<_MorquilPropertySetId> ExpectedMirror::Notified(const std::string& header, const Keys& changed) {
    std::vector<_MorquilPropertySetId> notified;
    for (const Owner& owner : owners) {
        const auto isOwn = [&](const std::string& key) { return Owns(owner, key); };
        if (owner.header == header && std::any_of(changed.begin(), changed.end(), isOwn)) {
            notified.push_back(owner.propertySet);
        }
    }
    return notified;
}

std::vector<std::string> ExpectedMirror::Requests(const std::string& header, const Keys& changed) {
    std::vector<std::string> requests;
    for (const Question& question : questions) {
        if (question.header == header && changed.contains(std::string(question.key))) {
            requests.emplace_back(question.request);
        }
    }
    return requests;
}

void ExpectedMirror::TakePreamble(const Lines& lines) {
    if (Merge("PROTOCOL PREAMBLE", lines).empty() || lines.front().second.ends_with(".22")) {
        return;
    }
    reason_ = lines.front().second.starts_with("2.") ? morquilConnectToFailureIncompatibleUpdateSupported
                                                     : morquilConnectToFailureIncompatibleFirmware;
}

ExpectedMirror::Effect ExpectedMirror::Take(const std::string& header, const Lines& lines) {
    if (header == "PROTOCOL PREAMBLE") {
        TakePreamble(lines);
        return {};
    }
    if (IsShared(header)) {
        before_.emplace(header, blocks_[header]);
    }
    const bool isFirstDevice = header == "MORQUIL DEVICE" && blocks_[header].empty();
    const Keys changed = Merge(header, lines);
    Effect effect{Notified(header, changed), Requests(header, changed)};
    if (isFirstDevice && !changed.empty()) {
        for (const DeviceMessage& answer : AvailabilityMessages()) {
            effect.requests.push_back(answer.header);
        }
    }
    for (const auto& [key, value] : lines) {
        if (header == "MORQUIL DEVICE" && key == "Remote lock" && value == "true" && !changed.empty()) {
            reason_ = morquilConnectToFailureRemoteLock;
        }
    }
    return effect;
}

std::optional<std::string> ExpectedMirror::ValueIn(const Values& values, const std::string& key) {
    const auto value = values.find(key);
    return value != values.end() ? std::optional(value->second) : std::nullopt;
}

std::optional<std::string> ExpectedMirror::Value(const std::string& header, const std::string& key) const {
    const auto block = blocks_.find(header);
    return block != blocks_.end() ? ValueIn(block->second, key) : std::nullopt;
}

bool ExpectedMirror::MayStillBe(const std::string& header, const std::string& key,
                                const std::optional<std::string>& value) const {
    return before_ && before_->first == header && ValueIn(before_->second, key) == value;
}

bool ExpectedMirror::IsComplete() const {
    for (const auto* const messages : {&GreetingMessages(), &AvailabilityMessages()}) {
        for (const DeviceMessage& message : *messages) {
            const auto block = blocks_.find(message.header);
            const bool isNeeded = message.header != "PROTOCOL PREAMBLE";
            if (isNeeded &&
                (block == blocks_.end() || (IsWhole(message.header) && !Holds(block->second, message.lines)))) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace Morquil::Testing::Worlds
