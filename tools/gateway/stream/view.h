// Which devices and properties a client sees.
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

#include "gateway/fleet/mirror.h"
#include "gateway/people/scope.h"

namespace Morquil::Gateway {

/// What was asked for, and of that what is permitted.
struct View {
    std::vector<Scope> asked = {Scope{}};
    std::vector<Scope> permitted = {Scope{}};

    bool Shows(std::string_view device) const { return CoversDevice(asked, device) && CoversDevice(permitted, device); }
    bool Shows(std::string_view device, Position position) const {
        const std::string_view property = PropertyAt(position).name;
        return Covers(asked, device, property) && Covers(permitted, device, property);
    }
    bool IsEverything() const {
        const auto holdsAll = [](const std::vector<Scope>& scopes) {
            return std::find(scopes.begin(), scopes.end(), Scope{}) != scopes.end();
        };
        return holdsAll(asked) && holdsAll(permitted);
    }
};

}  // namespace Morquil::Gateway
