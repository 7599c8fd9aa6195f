#pragma once

#include <cstddef>

#include "protocol/block_table.h"

namespace Morquil {

/// Receives what the parser reads: the events, and one operation per block in the order of the block table. A block is
/// delivered in the parser's own change set, which is valid until the next header of that block; a sink copies what it
/// keeps. Which operation delivers which block is in sink_operations.h.
class IMorquilTextProtocolSink {
public:
    virtual ~IMorquilTextProtocolSink() = default;

    virtual void OnPing() = 0;
    virtual void OnAcknowledge(bool positive) = 0;
    virtual void OnUnknownBlock() = 0;
    /// `text` is valid during the call only.
    virtual void OnProtocolError(const char* text) = 0;

    // clang-format off
    virtual void OnProtocolPreamble(const ProtocolPreambleChangeSet& set) { Pass<ProtocolPreambleChangeSet>(&set); }
    virtual void OnMorquilDevice(const MorquilDeviceChangeSet& set) { Pass<MorquilDeviceChangeSet>(&set); }
    virtual void OnVideoInput(const VideoInputChangeSet& set) { Pass<VideoInputChangeSet>(&set); }
    virtual void OnVideoInputAvailability(const VideoInputAvailabilityChangeSet& set) { Pass<VideoInputAvailabilityChangeSet>(&set); }
    virtual void OnVideoOutput(const VideoOutputChangeSet& set) { Pass<VideoOutputChangeSet>(&set); }
    virtual void OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet& set) { Pass<VideoOutputAvailabilityChangeSet>(&set); }
    virtual void OnSupportedConversions(const SupportedConversionsChangeSet& set) { Pass<SupportedConversionsChangeSet>(&set); }
    virtual void OnVideoProcAmp(const VideoProcAmpChangeSet& set) { Pass<VideoProcAmpChangeSet>(&set); }
    virtual void OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet& set) { Pass<VideoProcAmpAvailabilityChangeSet>(&set); }
    virtual void OnVideoAdjust(const VideoAdjustChangeSet& set) { Pass<VideoAdjustChangeSet>(&set); }
    virtual void OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet& set) { Pass<VideoAdjustAvailabilityChangeSet>(&set); }
    virtual void OnNoiseReduction(const NoiseReductionChangeSet& set) { Pass<NoiseReductionChangeSet>(&set); }
    virtual void OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet& set) { Pass<NoiseReductionAvailabilityChangeSet>(&set); }
    virtual void OnTestPattern(const TestPatternChangeSet& set) { Pass<TestPatternChangeSet>(&set); }
    virtual void OnTestPatternAvailability(const TestPatternAvailabilityChangeSet& set) { Pass<TestPatternAvailabilityChangeSet>(&set); }
    virtual void OnVideoAdvanced(const VideoAdvancedChangeSet& set) { Pass<VideoAdvancedChangeSet>(&set); }
    virtual void OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet& set) { Pass<VideoAdvancedAvailabilityChangeSet>(&set); }
    virtual void OnAncillaryData(const AncillaryDataChangeSet& set) { Pass<AncillaryDataChangeSet>(&set); }
    virtual void OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet& set) { Pass<AncillaryDataAvailabilityChangeSet>(&set); }
    virtual void OnGenlock(const GenlockChangeSet& set) { Pass<GenlockChangeSet>(&set); }
    virtual void OnGenlockAvailability(const GenlockAvailabilityChangeSet& set) { Pass<GenlockAvailabilityChangeSet>(&set); }
    virtual void OnVariableAspectRatio(const VariableAspectRatioChangeSet& set) { Pass<VariableAspectRatioChangeSet>(&set); }
    virtual void OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet& set) { Pass<VariableAspectRatioAvailabilityChangeSet>(&set); }
    virtual void OnAlign(const AlignChangeSet& set) { Pass<AlignChangeSet>(&set); }
    virtual void OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet& set) { Pass<AlignAvailabilityBlock>(&set); }
    virtual void OnAudio(const AudioChangeSet& set) { Pass<AudioChangeSet>(&set); }
    virtual void OnAudioAvailability(const AudioAvailabilityChangeSet& set) { Pass<AudioAvailabilityChangeSet>(&set); }
    virtual void OnMode3D(const Mode3DChangeSet& set) { Pass<Mode3DChangeSet>(&set); }
    virtual void OnMode3DAvailability(const Mode3DAvailabilityChangeSet& set) { Pass<Mode3DAvailabilityChangeSet>(&set); }
    virtual void OnNetworkConfig(const NetworkConfigChangeSet& set) { Pass<NetworkConfigChangeSet>(&set); }
    virtual void OnDeviceFilenames(const DeviceFilenamesChangeSet& set) { Pass<DeviceFilenamesChangeSet>(&set); }
    virtual void OnPreset(const PresetChangeSet& set) { Pass<PresetChangeSet>(&set); }
    virtual void OnPresetAvailability(const PresetAvailabilityChangeSet& set) { Pass<PresetAvailabilityChangeSet>(&set); }
    // clang-format on

protected:
    IMorquilTextProtocolSink() = default;
    IMorquilTextProtocolSink(const IMorquilTextProtocolSink&) = default;
    IMorquilTextProtocolSink& operator=(const IMorquilTextProtocolSink&) = default;

    /// Receives every block whose operation is not overridden: the change set of the block at this place of the table.
    virtual void OnOtherBlock(std::size_t /*place*/, const void* /*changeSet*/) {}

private:
    template <class Description>
    void Pass(const void* changeSet) {
        OnOtherBlock(placeOf<Description>, changeSet);
    }
};

}  // namespace Morquil
