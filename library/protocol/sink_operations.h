#pragma once

#include <cstddef>
#include <tuple>

#include "protocol/block_table.h"
#include "protocol/sink.h"

namespace Morquil {

// clang-format off
/// The operations that deliver the blocks, in the order of the block table.
inline constexpr std::tuple sinkOperations{
    &IMorquilTextProtocolSink::OnProtocolPreamble,
    &IMorquilTextProtocolSink::OnMorquilDevice,
    &IMorquilTextProtocolSink::OnVideoInput,
    &IMorquilTextProtocolSink::OnVideoInputAvailability,
    &IMorquilTextProtocolSink::OnVideoOutput,
    &IMorquilTextProtocolSink::OnVideoOutputAvailability,
    &IMorquilTextProtocolSink::OnSupportedConversions,
    &IMorquilTextProtocolSink::OnVideoProcAmp,
    &IMorquilTextProtocolSink::OnVideoProcAmpAvailability,
    &IMorquilTextProtocolSink::OnVideoAdjust,
    &IMorquilTextProtocolSink::OnVideoAdjustAvailability,
    &IMorquilTextProtocolSink::OnNoiseReduction,
    &IMorquilTextProtocolSink::OnNoiseReductionAvailability,
    &IMorquilTextProtocolSink::OnTestPattern,
    &IMorquilTextProtocolSink::OnTestPatternAvailability,
    &IMorquilTextProtocolSink::OnVideoAdvanced,
    &IMorquilTextProtocolSink::OnVideoAdvancedAvailability,
    &IMorquilTextProtocolSink::OnAncillaryData,
    &IMorquilTextProtocolSink::OnAncillaryDataAvailability,
    &IMorquilTextProtocolSink::OnGenlock,
    &IMorquilTextProtocolSink::OnGenlockAvailability,
    &IMorquilTextProtocolSink::OnVariableAspectRatio,
    &IMorquilTextProtocolSink::OnVariableAspectRatioAvailability,
    &IMorquilTextProtocolSink::OnAlign,
    &IMorquilTextProtocolSink::OnAlignAvailability,
    &IMorquilTextProtocolSink::OnAudio,
    &IMorquilTextProtocolSink::OnAudioAvailability,
    &IMorquilTextProtocolSink::OnMode3D,
    &IMorquilTextProtocolSink::OnMode3DAvailability,
    &IMorquilTextProtocolSink::OnNetworkConfig,
    &IMorquilTextProtocolSink::OnDeviceFilenames,
    &IMorquilTextProtocolSink::OnPreset,
    &IMorquilTextProtocolSink::OnPresetAvailability};
// clang-format on
static_assert(std::tuple_size_v<decltype(sinkOperations)> == blockCount);

/// The operation that delivers the block at a place of the table.
template <std::size_t place>
inline constexpr auto sinkOperation = std::get<place>(sinkOperations);

}  // namespace Morquil
