#include "gateway/fleet/fleet.h"

#include <algorithm>

namespace Morquil::Gateway {

Fleet::Fleet(boost::asio::io_context& context, FleetListener& listener)
    : context_(context), listener_(listener), tick_(context) {
    TickLater();
}

void Fleet::Become(const std::vector<DeviceEntry>& entries) {
    const auto isWanted = [&](const auto& device) {
        return std::any_of(entries.begin(), entries.end(),
                           [&](const DeviceEntry& entry) { return entry.name == device.first; });
    };
    std::size_t edits = std::erase_if(devices_, [&](const auto& device) { return !isWanted(device); });
    for (const DeviceEntry& entry : entries) {
        FleetDevice* const known = Find(entry.name);
        if (known == nullptr) {
            devices_[entry.name] = std::make_unique<FleetDevice>(context_, worker_, entry, listener_);
            ++edits;
        } else if (known->Entry() != entry) {
            known->Change(entry);
            ++edits;
        }
    }
    if (edits != 0) {
        ++revision_;
        listener_.OnEdited();
    }
}

FleetDevice* Fleet::Find(std::string_view name) const {
    const auto found = devices_.find(name);
    return found == devices_.end() ? nullptr : found->second.get();
}

std::vector<std::string_view> Fleet::Names() const {
    std::vector<std::string_view> names;
    for (const auto& [name, device] : devices_) {
        names.push_back(name);
    }
    return names;
}

void Fleet::Rename(std::string_view name, const std::string& newName) {
    auto node = devices_.extract(devices_.find(name));
    node.key() = newName;
    DeviceEntry entry = node.mapped()->Entry();
    entry.name = newName;
    node.mapped()->Change(std::move(entry));
    devices_.insert(std::move(node));
    ++revision_;
    listener_.OnEdited();
}

void Fleet::Stop() {
    tick_.Cancel();
    devices_.clear();
    worker_.Join();
}

void Fleet::TickLater() {
    tick_.In(std::chrono::seconds(1), [this] {
        for (const auto& [name, device] : devices_) {
            device->Tick();
        }
        TickLater();
    });
}

}  // namespace Morquil::Gateway
