// The devices as configured and as edited since.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/config/device_entry.h"

namespace Morquil::Gateway {

/// The configuration is the operator's own file, so edits made while the gateway runs are kept apart from it: entries
/// that are new or replace configured ones, and the names of configured ones that have been removed. They are kept in a
/// file of their own and not in the database, so that the fleet does not depend on whether that can be read.
class FleetBook {
public:
    /// Takes the configured devices; edits stay.
    void Configure(std::vector<DeviceEntry> configured) { configured_ = std::move(configured); }

    /// In the order of the configuration, then of their addition.
    std::vector<DeviceEntry> Entries() const;
    bool Has(std::string_view name) const;

    /// Adds an entry, or replaces the one of its name.
    void Put(const DeviceEntry& entry);
    void Remove(std::string_view name);

    /// The edits as the content of their file.
    std::string Save() const;
    /// Returns: why the content cannot be read; the edits are then as they were. Empty if it can.
    std::string Load(std::string_view content);

private:
    std::vector<DeviceEntry> configured_;
    std::vector<DeviceEntry> edited_;
    std::set<std::string, std::less<>> removed_;
};

/// Replaces a file as a whole, and returns when it is on the disk.
/// Returns: why it could not be written; empty if it was.
std::string ReplaceFile(const std::string& path, std::string_view content);

}  // namespace Morquil::Gateway
