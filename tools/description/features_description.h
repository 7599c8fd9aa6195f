#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MorquilAPI.h"

namespace Morquil::Description {

/// What a feature interface is about.
struct FeatureDescription {
    std::string_view interfaceName;
    _MorquilPropertySetId propertySet;
    std::string_view block;         // its header
    std::string_view availability;  // its header; empty where there is none
};

/// The interfaces that a device hands out, in the order of their definition.
std::vector<FeatureDescription> DescribeFeatures();

/// The blocks, by their headers, without which a device is not connected.
std::set<std::string_view> BlocksOfTheInitialState();

/// Four characters of an identifier: "vpap".
std::string FourCharacters(std::uint32_t code);

}  // namespace Morquil::Description
