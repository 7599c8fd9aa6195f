#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MorquilAPI.h"

namespace Morquil::Description {

/// What a feature interface covers.
struct FeatureDescription {
    std::string_view interfaceName;
    _MorquilPropertySetId propertySet;
    std::string_view block;         // its header
    std::string_view availability;  // its header; empty if there is none
};

/// The interfaces that a device hands out, in the order of their definition.
std::vector<FeatureDescription> DescribeFeatures();

/// The headers of the blocks that must be received before a device counts as connected.
std::set<std::string_view> BlocksOfTheInitialState();

/// An identifier as four characters: "vpap".
std::string FourCharacters(std::uint32_t code);

}  // namespace Morquil::Description
