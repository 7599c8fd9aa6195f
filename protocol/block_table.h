#pragma once

#include <cstddef>
#include <tuple>

#include "protocol/block.h"
#include "protocol/blocks/all.h"
#include "protocol/sink.h"

namespace Morquil {

/// One block of the protocol: its table, and where the parser delivers it.
template <class BlockDescription, void (IMorquilTextProtocolSink::*operation)(const ChangeSetOf<BlockDescription>&)>
struct BlockEntry {
    using Description = BlockDescription;
    using ChangeSet = ChangeSetOf<BlockDescription>;
    static constexpr auto deliver = operation;
};

// clang-format off
/// All blocks; a block's number is its place here, counted from 1.
using BlockTable = std::tuple<
    BlockEntry<ProtocolPreambleChangeSet,                &IMorquilTextProtocolSink::OnProtocolPreamble>,
    BlockEntry<MorquilDeviceChangeSet,                   &IMorquilTextProtocolSink::OnMorquilDevice>,
    BlockEntry<VideoInputChangeSet,                      &IMorquilTextProtocolSink::OnVideoInput>,
    BlockEntry<VideoInputAvailabilityChangeSet,          &IMorquilTextProtocolSink::OnVideoInputAvailability>,
    BlockEntry<VideoOutputChangeSet,                     &IMorquilTextProtocolSink::OnVideoOutput>,
    BlockEntry<VideoOutputAvailabilityChangeSet,         &IMorquilTextProtocolSink::OnVideoOutputAvailability>,
    BlockEntry<SupportedConversionsChangeSet,            &IMorquilTextProtocolSink::OnSupportedConversions>,
    BlockEntry<VideoProcAmpChangeSet,                    &IMorquilTextProtocolSink::OnVideoProcAmp>,
    BlockEntry<VideoProcAmpAvailabilityChangeSet,        &IMorquilTextProtocolSink::OnVideoProcAmpAvailability>,
    BlockEntry<VideoAdjustChangeSet,                     &IMorquilTextProtocolSink::OnVideoAdjust>,
    BlockEntry<VideoAdjustAvailabilityChangeSet,         &IMorquilTextProtocolSink::OnVideoAdjustAvailability>,
    BlockEntry<NoiseReductionChangeSet,                  &IMorquilTextProtocolSink::OnNoiseReduction>,
    BlockEntry<NoiseReductionAvailabilityChangeSet,      &IMorquilTextProtocolSink::OnNoiseReductionAvailability>,
    BlockEntry<TestPatternChangeSet,                     &IMorquilTextProtocolSink::OnTestPattern>,
    BlockEntry<TestPatternAvailabilityChangeSet,         &IMorquilTextProtocolSink::OnTestPatternAvailability>,
    BlockEntry<VideoAdvancedChangeSet,                   &IMorquilTextProtocolSink::OnVideoAdvanced>,
    BlockEntry<VideoAdvancedAvailabilityChangeSet,       &IMorquilTextProtocolSink::OnVideoAdvancedAvailability>,
    BlockEntry<AncillaryDataChangeSet,                   &IMorquilTextProtocolSink::OnAncillaryData>,
    BlockEntry<AncillaryDataAvailabilityChangeSet,       &IMorquilTextProtocolSink::OnAncillaryDataAvailability>,
    BlockEntry<GenlockChangeSet,                         &IMorquilTextProtocolSink::OnGenlock>,
    BlockEntry<GenlockAvailabilityChangeSet,             &IMorquilTextProtocolSink::OnGenlockAvailability>,
    BlockEntry<VariableAspectRatioChangeSet,             &IMorquilTextProtocolSink::OnVariableAspectRatio>,
    BlockEntry<VariableAspectRatioAvailabilityChangeSet, &IMorquilTextProtocolSink::OnVariableAspectRatioAvailability>,
    BlockEntry<AlignChangeSet,                           &IMorquilTextProtocolSink::OnAlign>,
    BlockEntry<AlignAvailabilityBlock,                   &IMorquilTextProtocolSink::OnAlignAvailability>,
    BlockEntry<AudioChangeSet,                           &IMorquilTextProtocolSink::OnAudio>,
    BlockEntry<AudioAvailabilityChangeSet,               &IMorquilTextProtocolSink::OnAudioAvailability>,
    BlockEntry<Mode3DChangeSet,                          &IMorquilTextProtocolSink::OnMode3D>,
    BlockEntry<Mode3DAvailabilityChangeSet,              &IMorquilTextProtocolSink::OnMode3DAvailability>,
    BlockEntry<NetworkConfigChangeSet,                   &IMorquilTextProtocolSink::OnNetworkConfig>,
    BlockEntry<DeviceFilenamesChangeSet,                 &IMorquilTextProtocolSink::OnDeviceFilenames>,
    BlockEntry<PresetChangeSet,                          &IMorquilTextProtocolSink::OnPreset>,
    BlockEntry<PresetAvailabilityChangeSet,              &IMorquilTextProtocolSink::OnPresetAvailability>>;
// clang-format on

inline constexpr std::size_t blockCount = std::tuple_size_v<BlockTable>;

}  // namespace Morquil
