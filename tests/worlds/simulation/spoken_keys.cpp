#include "tests/worlds/simulation/spoken_keys.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "platform/text.h"
#include "protocol/words/vocabularies.h"
#include "tests/kit/owned_bstr.h"

namespace Morquil::Testing::Worlds {

namespace {

using Testing::OwnedBstr;
using Values = std::vector<std::string>;

template <class Interface, class... Parameters>
using Method = HRESULT (STDMETHODCALLTYPE Interface::*)(Parameters...);

template <class Interface>
Interface& As(IUnknown& feature) {
    return static_cast<Interface&>(feature);
}

/// The place of a key.
struct Place {
    const char* header;
    const char* key;
    const IID& iid;
};

/// `toWire` turns the getter's answer into text, `fromWire` an index in `values` into the setter's value.
template <class Interface, class Out, class In, class ToWire, class FromWire>
SpokenKey Key(const Place& place, Values values, Method<Interface, Out*> getter, Method<Interface, In> setter,
              ToWire toWire, FromWire fromWire) {
    SpokenKey key{.header = place.header, .key = place.key, .iid = &place.iid, .values = std::move(values)};
    key.read = [=](IUnknown& feature) {
        Out value{};
        return (As<Interface>(feature).*getter)(&value) == S_OK ? std::optional<std::string>(toWire(value))
                                                                : std::nullopt;
    };
    if (setter != nullptr) {
        key.set = [=](IUnknown& feature, std::size_t value) {
            return (As<Interface>(feature).*setter)(fromWire(value));
        };
    }
    return key;
}

template <class Interface, class Out>
constexpr Method<Interface, Out> noSetter = nullptr;

template <class Interface, class Number>
SpokenKey NumberKey(const Place& place, int first, Method<Interface, Number*> getter,
                    Method<Interface, Number> setter) {
    Values values;
    for (int number = first; number < first + 5; ++number) {
        values.push_back(std::to_string(number));
    }
    return Key(
        place, std::move(values), getter, setter, [](Number value) { return std::to_string(value); },
        [first](std::size_t value) { return static_cast<Number>(first + static_cast<int>(value)); });
}

template <class Interface>
SpokenKey FlagKey(const Place& place, Method<Interface, LONG*> getter, Method<Interface, LONG> setter = nullptr) {
    return Key(
        place, {"false", "true"}, getter, setter, [](LONG value) { return value != 0 ? "true" : "false"; },
        [](std::size_t value) { return static_cast<LONG>(value); });
}

template <class Vocabulary>
std::string WordAt(std::size_t index) {
    return std::string(Vocabulary::words[index]);
}

/// The first three words.
template <class Vocabulary>
Values FirstWords() {
    constexpr std::size_t count = std::min<std::size_t>(Vocabulary::words.Size(), 3);
    Values values;
    for (std::size_t word = 0; word < count; ++word) {
        values.push_back(WordAt<Vocabulary>(word));
    }
    return values;
}

template <class Vocabulary, class Interface, class Word>
SpokenKey WordKey(const Place& place, Method<Interface, Word*> getter, Method<Interface, Word> setter) {
    return Key(
        place, FirstWords<Vocabulary>(), getter, setter,
        [](Word value) { return WordAt<Vocabulary>(static_cast<std::size_t>(value)); },
        [](std::size_t value) { return static_cast<Word>(value); });
}

template <class Interface>
SpokenKey TextKey(const Place& place, Method<Interface, BSTR*> getter, Method<Interface, BSTR> setter = nullptr) {
    const Values values{"Rack 1", "Rack 2", "R\xC3\xA4um", "a: b"};
    SpokenKey key = Key(
        place, values, getter, Method<Interface, BSTR>{},
        [](BSTR value) { return Utf8FromBstr(OwnedBstr(value).Get()); }, [](std::size_t) { return BSTR{}; });
    if (setter != nullptr) {
        key.set = [=](IUnknown& feature, std::size_t value) {
            return (As<Interface>(feature).*setter)(OwnedBstr(BstrFromUtf8(values[value])).Get());
        };
    }
    return key;
}

/// The trailing zeros that a device writes, too.
template <class Interface>
SpokenKey DecimalKey(const Place& place, Method<Interface, double*> getter, Method<Interface, double> setter) {
    return Key(
        place, {"0.500000", "1.500000", "-2.250000"}, getter, setter,
        [](double value) { return WithoutEndingZeros(std::to_string(value)); },
        [](std::size_t value) { return value == 0   ? 0.5
                                       : value == 1 ? 1.5
                                                    : -2.25; });
}

template <class Interface, class Limit>
SpokenKey RangeKey(const Place& place, Values values, Method<Interface, Limit*, Limit*> getter) {
    SpokenKey key{.header = place.header, .key = place.key, .iid = &place.iid, .values = std::move(values)};
    key.read = [=](IUnknown& feature) -> std::optional<std::string> {
        Limit minimum{};
        Limit maximum{};
        if ((As<Interface>(feature).*getter)(&minimum, &maximum) != S_OK) {
            return std::nullopt;
        }
        return WithoutEndingZeros(std::to_string(minimum)) + ' ' + WithoutEndingZeros(std::to_string(maximum));
    };
    return key;
}

/// One range of many.
template <class Interface, class Which, class Limit>
SpokenKey RangeOfKey(const Place& place, Lines selector, Which which, Method<Interface, Which, Limit*, Limit*> getter) {
    SpokenKey key{.header = place.header, .key = place.key, .iid = &place.iid, .values = {"1 2", "0 30"}};
    key.selector = std::move(selector);
    key.read = [=](IUnknown& feature) -> std::optional<std::string> {
        Limit minimum{};
        Limit maximum{};
        if ((As<Interface>(feature).*getter)(which, &minimum, &maximum) != S_OK) {
            return std::nullopt;
        }
        return std::to_string(minimum) + ' ' + std::to_string(maximum);
    };
    return key;
}

/// An unknown list reads like an empty one, which is never sent.
template <class Vocabulary, class Interface, class Word>
SpokenKey ListKey(const Place& place, Method<Interface, Word, LONG*> query) {
    const auto word = [](std::size_t index) { return WordAt<Vocabulary>(index); };
    SpokenKey key{.header = place.header,
                  .key = place.key,
                  .iid = &place.iid,
                  .values = {word(0), word(1), word(0) + ' ' + word(1)}};
    key.read = [=](IUnknown& feature) {
        std::optional<std::string> list;
        for (std::size_t index = 0; index < Vocabulary::words.Size(); ++index) {
            LONG isAvailable = 0;
            (As<Interface>(feature).*query)(static_cast<Word>(index), &isAvailable);
            if (isAvailable != 0) {
                list = list ? *list + ' ' + word(index) : word(index);
            }
        }
        return list;
    };
    return key;
}

SpokenKey VersionKey(const Place& place, Values values, Method<IMorquilDevice, UINT*> getter) {
    return Key(
        place, std::move(values), getter, noSetter<IMorquilDevice, UINT>,
        [](UINT value) {
            char text[16];
            std::snprintf(text, sizeof text, "0x%x", value);
            return std::string(text);
        },
        [](std::size_t) { return UINT{}; });
}

/// An element of an array, by its index.
SpokenKey AudioOutKey(unsigned int channel) {
    using Mapping = IMorquilAudioMapping;
    SpokenKey key{.header = "AUDIO",
                  .key = "AudioOut" + std::to_string(channel),
                  .iid = &IID_IMorquilAudioMapping,
                  .values = FirstWords<AudioSelections>()};
    key.read = [=](IUnknown& feature) -> std::optional<std::string> {
        _MorquilAPIAudioSelect selection{};
        if (As<Mapping>(feature).GetAudioMap(channel, &selection) != S_OK) {
            return std::nullopt;
        }
        return WordAt<AudioSelections>(static_cast<std::size_t>(selection));
    };
    key.set = [=](IUnknown& feature, std::size_t value) {
        return As<Mapping>(feature).SetAudioMap(channel, static_cast<_MorquilAPIAudioSelect>(value));
    };
    return key;
}

SpokenKey PresetNameKey(int preset) {
    SpokenKey key{.header = "PRESET",
                  .key = "PresetName" + std::to_string(preset),
                  .iid = &IID_IMorquilPreset,
                  .values = {"News studio", "Sports van"}};
    key.read = [=](IUnknown& feature) -> std::optional<std::string> {
        BSTR name = nullptr;
        const bool isKnown = As<IMorquilPreset>(feature).GetPresetName(preset, &name) == S_OK;
        const OwnedBstr owned(name);
        return isKnown ? std::optional(Utf8FromBstr(name)) : std::nullopt;
    };
    return key;
}

}  // namespace

Lines SpokenKey::LinesOf(std::size_t value) const {
    Lines lines = selector;
    lines.emplace_back(key, values[value]);
    return lines;
}

std::string SpokenKey::Name() const {
    return selector.empty() ? key : NameAfter(selector.front().second, key);
}

std::string NameAfter(const std::string& selected, const std::string& key) {
    return key + " of " + selected;
}

bool IsSelector(const std::string& header, const std::string& key) {
    return (header == "GENLOCK AVAILABILITY" && key == "Video mode") ||
           (header == "ANCILLARY DATA AVAILABILITY" && key.ends_with("frame height"));
}

std::string WithoutEndingZeros(const std::string& value) {
    if (value.find('.') == std::string::npos || value.find_first_not_of("-.0123456789") != std::string::npos) {
        return value;
    }
    const std::size_t last = value.find_last_not_of('0');
    return value.substr(0, value[last] == '.' ? last + 2 : last + 1);
}

// clang-format off
const std::vector<SpokenKey>& SpokenKeys() {
    using Device = IMorquilDevice;
    using Input = IMorquilInputConfiguration;
    using Output = IMorquilOutputConfiguration;
    using ProcAmp = IMorquilVideoProcAmp;
    using Reduction = IMorquilNoiseReduction;
    using Pattern = IMorquilTestPattern;
    using Advanced = IMorquilVideoAdvanced;
    using Reference = IMorquilReference;
    using Aspect = IMorquilVariableAspectRatio;
    static const std::vector<SpokenKey> keys{
        TextKey({"MORQUIL DEVICE", "Model name", IID_IMorquilDevice}, &Device::GetDeviceName),
        VersionKey({"MORQUIL DEVICE", "Software Version", IID_IMorquilDevice}, {"0x102", "0x103"}, &Device::GetSoftwareVersion),
        VersionKey({"MORQUIL DEVICE", "FPGA Version", IID_IMorquilDevice}, {"0xa0b", "0x1"}, &Device::GetFPGAVersion),
        FlagKey({"MORQUIL DEVICE", "Panel lock", IID_IMorquilDevice}, &Device::GetPanelLock, &Device::SetPanelLock),

        FlagKey({"VIDEO INPUT", "Auto detection enabled", IID_IMorquilInputConfiguration}, &Input::GetAutoDetectionEnabled, &Input::SetAutoDetectionEnabled),
        WordKey<VideoSources>({"VIDEO INPUT", "Video source", IID_IMorquilInputConfiguration}, &Input::GetVideoSource, &Input::SetVideoSource),
        WordKey<VideoModes>({"VIDEO INPUT", "Video mode", IID_IMorquilInputConfiguration}, &Input::GetVideoMode, &Input::SetVideoMode),
        WordKey<AudioSources>({"VIDEO INPUT", "Audio source", IID_IMorquilInputConfiguration}, &Input::GetAudioSource, &Input::SetAudioSource),
        FlagKey({"VIDEO INPUT", "Signal present", IID_IMorquilInputConfiguration}, &Input::GetSignalPresent),
        WordKey<TimecodePresence>({"VIDEO INPUT", "Timecode present", IID_IMorquilInputConfiguration}, &Input::GetTimecodePresent, noSetter<Input, _MorquilAPITimecodePresent>),
        FlagKey({"VIDEO INPUT", "Wide SD aspect", IID_IMorquilInputConfiguration}, &Input::GetWideSDAspectEnabled, &Input::SetWideSDAspectEnabled),
        FlagKey({"VIDEO INPUT", "HDMI 3D Full", IID_IMorquilInputConfiguration}, &Input::GetHdmi3DFull, &Input::SetHdmi3DFull),
        ListKey<VideoSources>({"VIDEO INPUT AVAILABILITY", "Video sources", IID_IMorquilInputConfiguration}, &Input::IsVideoSourceAvailable),
        ListKey<AudioSources>({"VIDEO INPUT AVAILABILITY", "Audio sources", IID_IMorquilInputConfiguration}, &Input::IsAudioSourceAvailable),

        WordKey<VideoModes>({"VIDEO OUTPUT", "Video mode", IID_IMorquilOutputConfiguration}, &Output::GetVideoMode, &Output::SetVideoMode),
        WordKey<AspectRatios>({"VIDEO OUTPUT", "Aspect ratio", IID_IMorquilOutputConfiguration}, &Output::GetAspectRatio, &Output::SetAspectRatio),
        WordKey<PixelFormats>({"VIDEO OUTPUT", "Video pixel format", IID_IMorquilOutputConfiguration}, &Output::GetPixelFormat, &Output::SetPixelFormat),
        // -1 would mean none.
        NumberKey({"VIDEO OUTPUT", "Transition setting", IID_IMorquilOutputConfiguration}, 0, &Output::GetTransitionSetting, &Output::SetTransitionSetting),
        FlagKey({"VIDEO OUTPUT", "Still frame present", IID_IMorquilOutputConfiguration}, &Output::GetStillFramePresent),
        ListKey<DemuxModes>({"VIDEO OUTPUT AVAILABILITY", "Video demux modes", IID_IMorquilOutputConfiguration}, &Output::IsDemuxModeAvailable),
        RangeKey({"VIDEO OUTPUT AVAILABILITY", "Transition setting range", IID_IMorquilOutputConfiguration}, {"0 100", "-3 9"}, &Output::GetTransitionSettingRange),

        NumberKey({"VIDEO PROC AMP", "Gain", IID_IMorquilVideoProcAmp}, -2, &ProcAmp::GetGain, &ProcAmp::SetGain),
        NumberKey({"VIDEO PROC AMP", "Black", IID_IMorquilVideoProcAmp}, -2, &ProcAmp::GetBlackLevel, &ProcAmp::SetBlackLevel),
        NumberKey({"VIDEO PROC AMP", "Hue", IID_IMorquilVideoProcAmp}, -2, &ProcAmp::GetHue, &ProcAmp::SetHue),
        RangeKey({"VIDEO PROC AMP AVAILABILITY", "Gain range", IID_IMorquilVideoProcAmp}, {"-60 60", "-1 1"}, &ProcAmp::GetGainRange),

        NumberKey({"VIDEO ADJUST", "Red", IID_IMorquilColorCorrection}, -2, &IMorquilColorCorrection::GetRed, &IMorquilColorCorrection::SetRed),
        NumberKey({"VIDEO ADJUST", "Luma low", IID_IMorquilVideoClip}, 4, &IMorquilVideoClip::GetLumaLow, &IMorquilVideoClip::SetLumaLow),
        NumberKey({"VIDEO ADJUST", "Aspect fill luma", IID_IMorquilAspectFill}, 64, &IMorquilAspectFill::GetLuma, &IMorquilAspectFill::SetLuma),
        RangeKey({"VIDEO ADJUST AVAILABILITY", "Luma low range", IID_IMorquilVideoClip}, {"4 500", "4 4294967295"}, &IMorquilVideoClip::GetLumaLowRange),

        FlagKey({"NOISE REDUCTION", "Enabled", IID_IMorquilNoiseReduction}, &Reduction::GetEnabled, &Reduction::SetEnabled),
        NumberKey({"NOISE REDUCTION", "Bias", IID_IMorquilNoiseReduction}, -2, &Reduction::GetBias, &Reduction::SetBias),
        RangeKey({"NOISE REDUCTION AVAILABILITY", "Bias range", IID_IMorquilNoiseReduction}, {"-10 10", "0 1"}, &Reduction::GetBiasRange),

        WordKey<TestPatterns>({"TEST PATTERN", "Output", IID_IMorquilTestPattern}, &Pattern::GetOutput, &Pattern::SetOutput),
        FlagKey({"TEST PATTERN", "Motion", IID_IMorquilTestPattern}, &Pattern::GetMotion, &Pattern::SetMotion),
        NumberKey({"TEST PATTERN", "Horizontal Rate", IID_IMorquilTestPattern}, -2, &Pattern::GetHorizMotion, &Pattern::SetHorizMotion),
        ListKey<TestTones>({"TEST PATTERN AVAILABILITY", "Available test tones", IID_IMorquilTestPattern}, &Pattern::IsTestToneAvailable),

        FlagKey({"VIDEO ADVANCED", "Scenecut detect", IID_IMorquilVideoAdvanced}, &Advanced::GetScenecutDetect, &Advanced::SetScenecutDetect),
        WordKey<SourceTypes>({"VIDEO ADVANCED", "Source type", IID_IMorquilVideoAdvanced}, &Advanced::GetSourceType, &Advanced::SetSourceType),
        WordKey<ProcessingModes>({"VIDEO ADVANCED", "Processing", IID_IMorquilVideoAdvanced}, &Advanced::GetProcMode, &Advanced::SetProcMode),
        ListKey<SourceTypes>({"VIDEO ADVANCED AVAILABILITY", "Available source types", IID_IMorquilVideoAdvanced}, &Advanced::IsSourceTypeAvailable),

        NumberKey({"ANCILLARY DATA", "Timecode output line", IID_IMorquilTimecode}, 9, &IMorquilTimecode::GetOutputLine, &IMorquilTimecode::SetOutputLine),
        NumberKey({"ANCILLARY DATA", "AFD output line", IID_IMorquilVideoIndex}, 10, &IMorquilVideoIndex::GetAFDOutputLine, &IMorquilVideoIndex::SetAFDOutputLine),
        NumberKey({"ANCILLARY DATA", "CC output line", IID_IMorquilClosedCaption}, 9, &IMorquilClosedCaption::GetOutputLine, &IMorquilClosedCaption::SetOutputLine),
        RangeOfKey({"ANCILLARY DATA AVAILABILITY", "Timecode line range", IID_IMorquilTimecode}, {{"Timecode frame height", "576"}}, 576U, &IMorquilTimecode::GetLineRange),
        RangeOfKey({"ANCILLARY DATA AVAILABILITY", "AFD output line range", IID_IMorquilVideoIndex}, {{"AFD output frame height", "1080"}}, 1080U, &IMorquilVideoIndex::GetAFDOutputLineRange),
        RangeKey({"ANCILLARY DATA AVAILABILITY", "CC output line range", IID_IMorquilClosedCaption}, {"9 20", "8 21"}, &IMorquilClosedCaption::GetOutputLineRange),

        WordKey<ReferenceTypes>({"GENLOCK", "Type", IID_IMorquilReference}, &Reference::GetType, &Reference::SetType),
        NumberKey({"GENLOCK", "Line offset", IID_IMorquilReference}, -2, &Reference::GetLineOffset, &Reference::SetLineOffset),
        FlagKey({"GENLOCK", "Signal locked", IID_IMorquilReference}, &Reference::GetSignalLocked),
        RangeOfKey({"GENLOCK AVAILABILITY", "Line offset range", IID_IMorquilReference}, {{"Video mode", "1080i50"}}, morquilAPIVideoMode1080i50, &Reference::GetLineOffsetRange),
        RangeOfKey({"GENLOCK AVAILABILITY", "Line offset range", IID_IMorquilReference}, {{"Video mode", "2K DCI 24p"}}, morquilAPIVideoMode2K1080p24, &Reference::GetLineOffsetRange),

        DecimalKey({"VARIABLE ASPECT RATIO", "Variable Aspect Ratio size X left", IID_IMorquilVariableAspectRatio}, &Aspect::GetSizeX, &Aspect::SetSizeX),
        FlagKey({"VARIABLE ASPECT RATIO", "Variable Aspect Ratio zoom/crop", IID_IMorquilVariableAspectRatio}, &Aspect::GetZoomCrop, &Aspect::SetZoomCrop),
        RangeKey({"VARIABLE ASPECT RATIO AVAILABILITY", "Variable Aspect Ratio size X range", IID_IMorquilVariableAspectRatio}, {"0.1 8.0", "-1.5 2.25"}, &Aspect::GetSizeXRange),

        AudioOutKey(0),
        AudioOutKey(15),
        NumberKey({"AUDIO", "Analog input ref level", IID_IMorquilAudioMapping}, 16, &IMorquilAudioMapping::GetAnalogInRefLevel, &IMorquilAudioMapping::SetAnalogInRefLevel),
        RangeKey({"AUDIO AVAILABILITY", "Audio level range", IID_IMorquilAudioMapping}, {"-60 12", "-1 0"}, &IMorquilAudioMapping::GetAudioGainRange),

        NumberKey({"MODE3D", "2D3D depth", IID_IMorquil3dMode}, -2, &IMorquil3dMode::GetDepth, &IMorquil3dMode::SetDepth),
        RangeKey({"MODE3D AVAILABILITY", "2D3D depth range", IID_IMorquil3dMode}, {"-50 50", "0 0"}, &IMorquil3dMode::GetDepthRange),

        TextKey({"NETWORK CONFIG", "Friendly name", IID_IMorquilNetworkConfig}, &IMorquilNetworkConfig::GetFriendlyName, &IMorquilNetworkConfig::SetFriendlyName),
        TextKey({"DEVICE FILENAMES", "Still frame name", IID_IMorquilDeviceFilenames}, &IMorquilDeviceFilenames::GetStillFrameName, &IMorquilDeviceFilenames::SetStillFrameName),
        PresetNameKey(0),
        PresetNameKey(5)};
    return keys;
}
// clang-format on

}  // namespace Morquil::Testing::Worlds
