// The device itself, its network settings, files and presets.
#include "command/properties/property_rows.h"
#include "command/properties/property_table.h"

namespace Morquil::Command {
namespace {

using morquil::PropertySet;

// The device stores no more names, whatever the range of its presets.
constexpr int presetNames = 6;
// Longer texts would be truncated.
constexpr std::size_t nameBytes = 49;

void AddDevice(std::vector<Property>& all) {
    using F = morquil::DeviceCalls;
    FeatureRows rows(all, "device", PropertySet::DeviceControl);
    // clang-format off
    rows.Reading<&F::GetDeviceName>("name", "Model");
    rows.Reading<&F::GetSoftwareVersion>("software-version", "Version of the software").As(Kind::Bits);
    rows.Reading<&F::GetFPGAVersion>("fpga-version", "Version of the FPGA").As(Kind::Bits);
    rows.Setting<&F::GetPanelLock, &F::SetPanelLock>("panel-lock", "Whether the front panel is locked");
    rows.Reading<&F::GetRemoteLock>("remote-lock", "Whether remote control is locked");
    rows.Reading<&F::GetNetworkUpdateSupported>("network-update", "Whether the device can be updated over the network");
    // clang-format on
}

void AddNetwork(std::vector<Property>& all) {
    using F = morquil::features::NetworkConfig;
    FeatureRows rows(all, "network", PropertySet::NetworkConfig);
    // clang-format off
    rows.Setting<&F::GetFriendlyName, &F::SetFriendlyName>("name", "What people call the device").AtMost(nameBytes);
    rows.Reading<&F::GetDHCPEnabled>("dhcp", "Whether the address comes from a server");
    rows.Reading<&F::GetIPAddress>("address", "Address").As(Kind::Address);
    rows.Reading<&F::GetGateway>("gateway", "Address of the gateway").As(Kind::Address);
    rows.Reading<&F::GetSubnet>("subnet", "Mask of the subnet").As(Kind::Address);
    // clang-format on
}

void AddFiles(std::vector<Property>& all) {
    using F = morquil::features::DeviceFilenames;
    FeatureRows rows(all, "files", PropertySet::DeviceFilenames);
    rows.Setting<&F::GetStillFrameName, &F::SetStillFrameName>("still-frame-name", "Name of the still frame")
        .AtMost(nameBytes);
}

// The API accepts some numbers above the range that devices report.
template <std::int64_t above>
Offer PresetNumbers(const morquil::Device& device) {
    const morquil::Range<int> range = device.Preset().GetPresetRange();
    return Limits{std::int64_t{range.min}, std::int64_t{range.max} + above};
}

void AddPresets(std::vector<Property>& all) {
    using F = morquil::features::Preset;
    FeatureRows rows(all, "preset", PropertySet::Preset);
    // clang-format off
    rows.Settings<&F::GetPresetName, &F::SetPresetName>(presetNames, "name", "Name of a preset", nameBytes);
    rows.Command<&F::SavePreset, &PresetNumbers<1>>("save", "Keeps the settings as a preset").AskedWith(CallName<&F::GetPresetRange>());
    rows.Command<&F::RecallPreset, &PresetNumbers<2>>("recall", "Brings the settings of a preset back").AskedWith(CallName<&F::GetPresetRange>());
    // clang-format on
}

}  // namespace

void AddDeviceRows(std::vector<Property>& all) {
    AddDevice(all);
    AddNetwork(all);
    AddFiles(all);
    AddPresets(all);
}

}  // namespace Morquil::Command
