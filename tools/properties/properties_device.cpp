// The device itself, its network settings, files and presets.
#include <tuple>

#include "properties/property_rows.h"
#include "properties/property_table.h"
#include "protocol/blocks/preset.h"

namespace Morquil::Properties {
namespace {

// Longer texts would be truncated.
constexpr std::size_t nameBytes = receivedTextLimit;
// The device stores no more names, whatever the range of its presets.
constexpr std::size_t presetNames = std::tuple_size_v<decltype(PresetChangeSet::presetName)>;

void AddDevice(std::vector<Property>& all) {
    using F = morquil::DeviceCalls;
    FeatureRows<F> rows(all, "device");
    // clang-format off
    rows.Reading<&F::GetDeviceName>("name", "Model name");
    rows.Reading<&F::GetSoftwareVersion>("software-version", "Firmware version").As(Kind::Bits);
    rows.Reading<&F::GetFPGAVersion>("fpga-version", "FPGA version").As(Kind::Bits);
    rows.Setting<&F::GetPanelLock, &F::SetPanelLock>("panel-lock", "Whether the front panel is locked");
    rows.Reading<&F::GetRemoteLock>("remote-lock", "Whether the device is locked against remote control");
    rows.Reading<&F::GetNetworkUpdateSupported>("network-update", "Whether the device can be updated over the network");
    // clang-format on
}

void AddNetwork(std::vector<Property>& all) {
    using F = morquil::features::NetworkConfig;
    FeatureRows<F> rows(all, "network");
    // clang-format off
    rows.Setting<&F::GetFriendlyName, &F::SetFriendlyName>("name", "Name of the device on the network").AtMost(nameBytes);
    rows.Reading<&F::GetDHCPEnabled>("dhcp", "Whether the IP address comes from DHCP");
    rows.Reading<&F::GetIPAddress>("address", "IP address").As(Kind::Address);
    rows.Reading<&F::GetGateway>("gateway", "IP address of the gateway").As(Kind::Address);
    rows.Reading<&F::GetSubnet>("subnet", "Subnet mask").As(Kind::Address);
    // clang-format on
}

void AddFiles(std::vector<Property>& all) {
    using F = morquil::features::DeviceFilenames;
    FeatureRows<F> rows(all, "files");
    rows.Setting<&F::GetStillFrameName, &F::SetStillFrameName>("still-frame-name", "Name of the still frame")
        .AtMost(nameBytes);
}

/// The API accepts some numbers above the range that devices report.
template <std::int64_t above>
struct PresetNumbers {
    static constexpr std::string_view call = MethodFacts<&morquil::features::Preset::GetPresetRange>::name;
    static constexpr std::array<std::string_view, 0> follows{};
    static Offer Of(const morquil::Device& device) {
        const auto range = Try<&morquil::features::Preset::GetPresetRange>(device);
        return range ? Limits{std::int64_t{range->min}, std::int64_t{range->max} + above} : Offer();
    }
};

bool HasPreset(const morquil::Device& device, int number) {
    const auto range = Try<&morquil::features::Preset::GetPresetRange>(device);
    return !range || (range->min <= number && number <= range->max);
}

void AddPresets(std::vector<Property>& all) {
    using F = morquil::features::Preset;
    FeatureRows<F> rows(all, "preset");
    // clang-format off
    for (Property& name : rows.Settings<&F::GetPresetName, &F::SetPresetName>(presetNames, "name", "Name of a preset")) {
        name.AtMost(nameBytes).exists = &HasPreset;
    }
    rows.Command<&F::SavePreset, PresetNumbers<PresetChangeSet::namelessPresets>{}>("save", "Saves the settings as a preset");
    rows.Command<&F::RecallPreset, PresetNumbers<PresetChangeSet::recallablePresets>{}>("recall", "Recalls the settings of a preset").ChangingModes();
    // clang-format on
}

}  // namespace

void AddDeviceRows(std::vector<Property>& all) {
    AddDevice(all);
    AddNetwork(all);
    AddFiles(all);
    AddPresets(all);
}

}  // namespace Morquil::Properties
