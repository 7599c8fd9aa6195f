#include "command/changes/watched_device.h"

#include <map>

namespace Morquil::Command {

void WatchedDevice::Begin(const morquil::Device& device) {
    subscriptions_.clear();
    std::map<morquil::PropertySet, Selection> sets;
    for (const Property* const property : selection_) {
        sets[property->set].push_back(property);
    }
    for (const auto& [set, properties] : sets) {
        const auto look = [feed = feed_, device, watched = properties](morquil::PropertySet) {
            for (const Property* const property : watched) {
                feed->Look(*property, device);
            }
        };
        subscriptions_.push_back(device.OnChange(set, look));
        look(set);
    }
}

}  // namespace Morquil::Command
