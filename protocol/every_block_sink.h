#pragma once

#include "protocol/block_table.h"
#include "protocol/sink.h"

namespace Morquil {

/// A sink that treats all blocks alike: hands each to `Derived::OnBlock<Description>(set)`. What is no block (pings,
/// acknowledgements, unknown blocks, errors) stays with the derived class. `Base` is the sink itself, or a class that
/// leaves the blocks to others.
template <class Derived, class Base = IMorquilTextProtocolSink>
class EveryBlockSink : public Base {
public:
    // clang-format off
    void OnProtocolPreamble(const ProtocolPreambleChangeSet& set) override                               { Take<ProtocolPreambleChangeSet>(set); }
    void OnMorquilDevice(const MorquilDeviceChangeSet& set) override                                     { Take<MorquilDeviceChangeSet>(set); }
    void OnVideoInput(const VideoInputChangeSet& set) override                                           { Take<VideoInputChangeSet>(set); }
    void OnVideoInputAvailability(const VideoInputAvailabilityChangeSet& set) override                   { Take<VideoInputAvailabilityChangeSet>(set); }
    void OnVideoOutput(const VideoOutputChangeSet& set) override                                         { Take<VideoOutputChangeSet>(set); }
    void OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet& set) override                 { Take<VideoOutputAvailabilityChangeSet>(set); }
    void OnSupportedConversions(const SupportedConversionsChangeSet& set) override                       { Take<SupportedConversionsChangeSet>(set); }
    void OnVideoProcAmp(const VideoProcAmpChangeSet& set) override                                       { Take<VideoProcAmpChangeSet>(set); }
    void OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet& set) override               { Take<VideoProcAmpAvailabilityChangeSet>(set); }
    void OnVideoAdjust(const VideoAdjustChangeSet& set) override                                         { Take<VideoAdjustChangeSet>(set); }
    void OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet& set) override                 { Take<VideoAdjustAvailabilityChangeSet>(set); }
    void OnNoiseReduction(const NoiseReductionChangeSet& set) override                                   { Take<NoiseReductionChangeSet>(set); }
    void OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet& set) override           { Take<NoiseReductionAvailabilityChangeSet>(set); }
    void OnTestPattern(const TestPatternChangeSet& set) override                                         { Take<TestPatternChangeSet>(set); }
    void OnTestPatternAvailability(const TestPatternAvailabilityChangeSet& set) override                 { Take<TestPatternAvailabilityChangeSet>(set); }
    void OnVideoAdvanced(const VideoAdvancedChangeSet& set) override                                     { Take<VideoAdvancedChangeSet>(set); }
    void OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet& set) override             { Take<VideoAdvancedAvailabilityChangeSet>(set); }
    void OnAncillaryData(const AncillaryDataChangeSet& set) override                                     { Take<AncillaryDataChangeSet>(set); }
    void OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet& set) override             { Take<AncillaryDataAvailabilityChangeSet>(set); }
    void OnGenlock(const GenlockChangeSet& set) override                                                 { Take<GenlockChangeSet>(set); }
    void OnGenlockAvailability(const GenlockAvailabilityChangeSet& set) override                         { Take<GenlockAvailabilityChangeSet>(set); }
    void OnVariableAspectRatio(const VariableAspectRatioChangeSet& set) override                         { Take<VariableAspectRatioChangeSet>(set); }
    void OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet& set) override { Take<VariableAspectRatioAvailabilityChangeSet>(set); }
    void OnAlign(const AlignChangeSet& set) override                                                     { Take<AlignChangeSet>(set); }
    void OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet& set) override               { Take<AlignAvailabilityBlock>(set); }
    void OnAudio(const AudioChangeSet& set) override                                                     { Take<AudioChangeSet>(set); }
    void OnAudioAvailability(const AudioAvailabilityChangeSet& set) override                             { Take<AudioAvailabilityChangeSet>(set); }
    void OnMode3D(const Mode3DChangeSet& set) override                                                   { Take<Mode3DChangeSet>(set); }
    void OnMode3DAvailability(const Mode3DAvailabilityChangeSet& set) override                           { Take<Mode3DAvailabilityChangeSet>(set); }
    void OnNetworkConfig(const NetworkConfigChangeSet& set) override                                     { Take<NetworkConfigChangeSet>(set); }
    void OnDeviceFilenames(const DeviceFilenamesChangeSet& set) override                                 { Take<DeviceFilenamesChangeSet>(set); }
    void OnPreset(const PresetChangeSet& set) override                                                   { Take<PresetChangeSet>(set); }
    void OnPresetAvailability(const PresetAvailabilityChangeSet& set) override                           { Take<PresetAvailabilityChangeSet>(set); }
    // clang-format on

protected:
    using Base::Base;

private:
    template <class Description>
    void Take(const ChangeSetOf<Description>& set) {
        static_cast<Derived*>(this)->template OnBlock<Description>(set);
    }
};

}  // namespace Morquil
