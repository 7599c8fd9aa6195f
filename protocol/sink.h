#pragma once

namespace Morquil {

struct ProtocolPreambleChangeSet;
struct MorquilDeviceChangeSet;
struct VideoInputChangeSet;
struct VideoInputAvailabilityChangeSet;
struct VideoOutputChangeSet;
struct VideoOutputAvailabilityChangeSet;
struct SupportedConversionsChangeSet;
struct VideoProcAmpChangeSet;
struct VideoProcAmpAvailabilityChangeSet;
struct VideoAdjustChangeSet;
struct VideoAdjustAvailabilityChangeSet;
struct NoiseReductionChangeSet;
struct NoiseReductionAvailabilityChangeSet;
struct TestPatternChangeSet;
struct TestPatternAvailabilityChangeSet;
struct VideoAdvancedChangeSet;
struct VideoAdvancedAvailabilityChangeSet;
struct AncillaryDataChangeSet;
struct AncillaryDataAvailabilityChangeSet;
struct GenlockChangeSet;
struct GenlockAvailabilityChangeSet;
struct VariableAspectRatioChangeSet;
struct VariableAspectRatioAvailabilityChangeSet;
struct AlignChangeSet;
struct AudioChangeSet;
struct AudioAvailabilityChangeSet;
struct Mode3DChangeSet;
struct Mode3DAvailabilityChangeSet;
struct NetworkConfigChangeSet;
struct DeviceFilenamesChangeSet;
struct PresetChangeSet;
struct PresetAvailabilityChangeSet;

/// Receives what the parser reads. Each block arrives with the parser's own change set, which lives on until the next
/// header of that block: a sink copies what it keeps.
class IMorquilTextProtocolSink {
public:
    virtual ~IMorquilTextProtocolSink() = default;

    virtual void OnPing() = 0;
    virtual void OnAcknowledge(bool positive) = 0;
    virtual void OnUnknownBlock() = 0;
    /// `text` is valid during the call only.
    virtual void OnProtocolError(const char* text) = 0;

    virtual void OnProtocolPreamble(const ProtocolPreambleChangeSet& set) = 0;
    virtual void OnMorquilDevice(const MorquilDeviceChangeSet& set) = 0;
    virtual void OnVideoInput(const VideoInputChangeSet& set) = 0;
    virtual void OnVideoInputAvailability(const VideoInputAvailabilityChangeSet& set) = 0;
    virtual void OnVideoOutput(const VideoOutputChangeSet& set) = 0;
    virtual void OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet& set) = 0;
    virtual void OnSupportedConversions(const SupportedConversionsChangeSet& set) = 0;
    virtual void OnVideoProcAmp(const VideoProcAmpChangeSet& set) = 0;
    virtual void OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet& set) = 0;
    virtual void OnVideoAdjust(const VideoAdjustChangeSet& set) = 0;
    virtual void OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet& set) = 0;
    virtual void OnNoiseReduction(const NoiseReductionChangeSet& set) = 0;
    virtual void OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet& set) = 0;
    virtual void OnTestPattern(const TestPatternChangeSet& set) = 0;
    virtual void OnTestPatternAvailability(const TestPatternAvailabilityChangeSet& set) = 0;
    virtual void OnVideoAdvanced(const VideoAdvancedChangeSet& set) = 0;
    virtual void OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet& set) = 0;
    virtual void OnAncillaryData(const AncillaryDataChangeSet& set) = 0;
    virtual void OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet& set) = 0;
    virtual void OnGenlock(const GenlockChangeSet& set) = 0;
    virtual void OnGenlockAvailability(const GenlockAvailabilityChangeSet& set) = 0;
    virtual void OnVariableAspectRatio(const VariableAspectRatioChangeSet& set) = 0;
    virtual void OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet& set) = 0;
    virtual void OnAlign(const AlignChangeSet& set) = 0;
    virtual void OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet& set) = 0;
    virtual void OnAudio(const AudioChangeSet& set) = 0;
    virtual void OnAudioAvailability(const AudioAvailabilityChangeSet& set) = 0;
    virtual void OnMode3D(const Mode3DChangeSet& set) = 0;
    virtual void OnMode3DAvailability(const Mode3DAvailabilityChangeSet& set) = 0;
    virtual void OnNetworkConfig(const NetworkConfigChangeSet& set) = 0;
    virtual void OnDeviceFilenames(const DeviceFilenamesChangeSet& set) = 0;
    virtual void OnPreset(const PresetChangeSet& set) = 0;
    virtual void OnPresetAvailability(const PresetAvailabilityChangeSet& set) = 0;

protected:
    IMorquilTextProtocolSink() = default;
    IMorquilTextProtocolSink(const IMorquilTextProtocolSink&) = default;
    IMorquilTextProtocolSink& operator=(const IMorquilTextProtocolSink&) = default;
};

}  // namespace Morquil
