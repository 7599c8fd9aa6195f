// A sink that records the parser's calls as texts that tests can compare.
#pragma once

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "protocol/block_table.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/table/message.h"

namespace Morquil {

class RecordingSink final : public IMorquilTextProtocolSink {
public:
    using Events = std::vector<std::string>;

    /// Everything in the order of its arrival: "ping", "ack", "nack", "unknown block", "error: " and the text, or the
    /// name of a block's operation, a colon and the block as the library writes it.
    const Events& AllEvents() const { return events_; }

    /// The error texts alone.
    Events Errors() const {
        Events errors;
        for (const std::string& event : events_) {
            if (event.starts_with(errorMark)) {
                errors.push_back(event.substr(errorMark.size()));
            }
        }
        return errors;
    }

    /// A copy of the last block of this kind; empty before the first.
    template <class Description>
    const ChangeSetOf<Description>& Last() const {
        return std::get<Kept<Description>>(kept_).set;
    }

    void Clear() { *this = RecordingSink(); }

    // clang-format off
    void OnPing() override                          { events_.emplace_back("ping"); }
    void OnAcknowledge(bool positive) override      { events_.emplace_back(positive ? "ack" : "nack"); }
    void OnUnknownBlock() override                  { events_.emplace_back("unknown block"); }
    void OnProtocolError(const char* text) override { events_.push_back(std::string(errorMark) + text); }

    void OnProtocolPreamble(const ProtocolPreambleChangeSet& set) override                               { Keep<ProtocolPreambleChangeSet>("OnProtocolPreamble", set); }
    void OnMorquilDevice(const MorquilDeviceChangeSet& set) override                                     { Keep<MorquilDeviceChangeSet>("OnMorquilDevice", set); }
    void OnVideoInput(const VideoInputChangeSet& set) override                                           { Keep<VideoInputChangeSet>("OnVideoInput", set); }
    void OnVideoInputAvailability(const VideoInputAvailabilityChangeSet& set) override                   { Keep<VideoInputAvailabilityChangeSet>("OnVideoInputAvailability", set); }
    void OnVideoOutput(const VideoOutputChangeSet& set) override                                         { Keep<VideoOutputChangeSet>("OnVideoOutput", set); }
    void OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet& set) override                 { Keep<VideoOutputAvailabilityChangeSet>("OnVideoOutputAvailability", set); }
    void OnSupportedConversions(const SupportedConversionsChangeSet& set) override                       { Keep<SupportedConversionsChangeSet>("OnSupportedConversions", set); }
    void OnVideoProcAmp(const VideoProcAmpChangeSet& set) override                                       { Keep<VideoProcAmpChangeSet>("OnVideoProcAmp", set); }
    void OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet& set) override               { Keep<VideoProcAmpAvailabilityChangeSet>("OnVideoProcAmpAvailability", set); }
    void OnVideoAdjust(const VideoAdjustChangeSet& set) override                                         { Keep<VideoAdjustChangeSet>("OnVideoAdjust", set); }
    void OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet& set) override                 { Keep<VideoAdjustAvailabilityChangeSet>("OnVideoAdjustAvailability", set); }
    void OnNoiseReduction(const NoiseReductionChangeSet& set) override                                   { Keep<NoiseReductionChangeSet>("OnNoiseReduction", set); }
    void OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet& set) override           { Keep<NoiseReductionAvailabilityChangeSet>("OnNoiseReductionAvailability", set); }
    void OnTestPattern(const TestPatternChangeSet& set) override                                         { Keep<TestPatternChangeSet>("OnTestPattern", set); }
    void OnTestPatternAvailability(const TestPatternAvailabilityChangeSet& set) override                 { Keep<TestPatternAvailabilityChangeSet>("OnTestPatternAvailability", set); }
    void OnVideoAdvanced(const VideoAdvancedChangeSet& set) override                                     { Keep<VideoAdvancedChangeSet>("OnVideoAdvanced", set); }
    void OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet& set) override             { Keep<VideoAdvancedAvailabilityChangeSet>("OnVideoAdvancedAvailability", set); }
    void OnAncillaryData(const AncillaryDataChangeSet& set) override                                     { Keep<AncillaryDataChangeSet>("OnAncillaryData", set); }
    void OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet& set) override             { Keep<AncillaryDataAvailabilityChangeSet>("OnAncillaryDataAvailability", set); }
    void OnGenlock(const GenlockChangeSet& set) override                                                 { Keep<GenlockChangeSet>("OnGenlock", set); }
    void OnGenlockAvailability(const GenlockAvailabilityChangeSet& set) override                         { Keep<GenlockAvailabilityChangeSet>("OnGenlockAvailability", set); }
    void OnVariableAspectRatio(const VariableAspectRatioChangeSet& set) override                         { Keep<VariableAspectRatioChangeSet>("OnVariableAspectRatio", set); }
    void OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet& set) override { Keep<VariableAspectRatioAvailabilityChangeSet>("OnVariableAspectRatioAvailability", set); }
    void OnAlign(const AlignChangeSet& set) override                                                     { Keep<AlignChangeSet>("OnAlign", set); }
    void OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet& set) override               { Keep<AlignAvailabilityBlock>("OnAlignAvailability", set); }
    void OnAudio(const AudioChangeSet& set) override                                                     { Keep<AudioChangeSet>("OnAudio", set); }
    void OnAudioAvailability(const AudioAvailabilityChangeSet& set) override                             { Keep<AudioAvailabilityChangeSet>("OnAudioAvailability", set); }
    void OnMode3D(const Mode3DChangeSet& set) override                                                   { Keep<Mode3DChangeSet>("OnMode3D", set); }
    void OnMode3DAvailability(const Mode3DAvailabilityChangeSet& set) override                           { Keep<Mode3DAvailabilityChangeSet>("OnMode3DAvailability", set); }
    void OnNetworkConfig(const NetworkConfigChangeSet& set) override                                     { Keep<NetworkConfigChangeSet>("OnNetworkConfig", set); }
    void OnDeviceFilenames(const DeviceFilenamesChangeSet& set) override                                 { Keep<DeviceFilenamesChangeSet>("OnDeviceFilenames", set); }
    void OnPreset(const PresetChangeSet& set) override                                                   { Keep<PresetChangeSet>("OnPreset", set); }
    void OnPresetAvailability(const PresetAvailabilityChangeSet& set) override                           { Keep<PresetAvailabilityChangeSet>("OnPresetAvailability", set); }
    // clang-format on

private:
    static constexpr std::string_view errorMark = "error: ";

    /// Named after the operation: two blocks fill the same type of change set.
    template <class Description>
    struct Kept {
        ChangeSetOf<Description> set;
    };
    template <class Table>
    struct KeptOf;
    template <class... Entries>
    struct KeptOf<std::tuple<Entries...>> {
        using Type = std::tuple<Kept<typename Entries::Description>...>;
    };

    template <class Description>
    void Keep(const char* operation, const ChangeSetOf<Description>& set) {
        events_.push_back(operation + (": " + BlockText<Description>(set)));
        std::get<Kept<Description>>(kept_).set = set;
    }

    Events events_;
    KeptOf<BlockTable>::Type kept_;
};

/// A parser with a sink that records.
struct RecordedParser {
    RecordedParser() { parser.SetSink(&sink); }

    void Feed(std::string_view bytes) { parser.Feed(bytes.data(), bytes.size()); }

    MorquilTextProtocolParser parser;
    RecordingSink sink;
};

/// The events of a new parser for these bytes.
inline RecordingSink::Events EventsOf(std::string_view bytes) {
    RecordedParser recorded;
    recorded.Feed(bytes);
    return recorded.sink.AllEvents();
}

}  // namespace Morquil
