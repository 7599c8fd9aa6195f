// Which devices and properties somebody may see and change.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Gateway {

/// Whether `pattern` matches `name`: a name, the part of names before a point ("proc-amp" for "proc-amp.gain"), or a
/// text in which * stands for any letters and ? for one. Takes time proportional to the product of the lengths at most.
bool MatchesPattern(std::string_view pattern, std::string_view name);

/// Patterns of devices and of properties: both must match.
struct Scope {
    std::string devices = "*";
    std::string properties = "*";

    bool operator==(const Scope&) const = default;
};

/// Whether one of the scopes covers the property of the device. Without scopes nothing is covered.
bool Covers(const std::vector<Scope>& scopes, std::string_view device, std::string_view property);
/// Whether one of the scopes covers at least some properties of the device.
bool CoversDevice(const std::vector<Scope>& scopes, std::string_view device);

}  // namespace Morquil::Gateway
