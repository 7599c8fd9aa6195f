// What a device finds out for itself, and nobody sets from afar.
#pragma once

#include <tuple>

#include "protocol/blocks/all.h"

namespace Morquil::Simulator {

class DeviceBlocks;

/// The members of a block that only the device fills. Hosts send them all the same, because a settings file holds whole
/// blocks: they are passed over, not refused. Remote lock is one of them, or a host could lock itself out.
template <class Set>
inline constexpr auto observedMembers = std::tuple<>();

template <>
inline constexpr auto observedMembers<MorquilDeviceChangeSet> =
    std::tuple{&MorquilDeviceChangeSet::modelName, &MorquilDeviceChangeSet::softwareVersion,
               &MorquilDeviceChangeSet::fpgaVersion, &MorquilDeviceChangeSet::remoteLock};
template <>
inline constexpr auto observedMembers<VideoInputChangeSet> =
    std::tuple{&VideoInputChangeSet::signalPresent, &VideoInputChangeSet::timecodePresent,
               &VideoInputChangeSet::closedCaptioningPresent, &VideoInputChangeSet::opticalModulePresent};
template <>
inline constexpr auto observedMembers<VideoOutputChangeSet> =
    std::tuple{&VideoOutputChangeSet::stillFramePresent, &VideoOutputChangeSet::stillLoadComplete,
               &VideoOutputChangeSet::stillStoreComplete, &VideoOutputChangeSet::stillPreviewComplete};
template <>
inline constexpr auto observedMembers<GenlockChangeSet> = std::tuple{&GenlockChangeSet::signalLocked};
template <>
inline constexpr auto observedMembers<NetworkConfigChangeSet> =
    std::tuple{&NetworkConfigChangeSet::dhcpEnabled, &NetworkConfigChangeSet::ipAddress,
               &NetworkConfigChangeSet::gateway, &NetworkConfigChangeSet::subnet};
template <>
inline constexpr auto observedMembers<AncillaryDataChangeSet> = std::tuple{&AncillaryDataChangeSet::lastInputHeight};

inline constexpr auto lastSizes = std::tuple{&GeometryFields::lastInputWidth, &GeometryFields::lastInputHeight,
                                             &GeometryFields::lastOutputWidth, &GeometryFields::lastOutputHeight};
template <>
inline constexpr auto observedMembers<VariableAspectRatioChangeSet> = lastSizes;
template <>
inline constexpr auto observedMembers<AlignChangeSet> = lastSizes;

template <class Set>
void ForgetObservations(Set& set) {
    std::apply([&](auto... member) { ((set.*member).Clear(), ...); }, observedMembers<Set>);
}

/// Writes down what follows from the video modes: the sizes of the pictures that come in and go out.
void ObservePictureSizes(DeviceBlocks& device);

}  // namespace Morquil::Simulator
