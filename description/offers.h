#pragma once

#include <string_view>
#include <vector>

namespace Morquil::Description {

/// Where a device tells what a setting can be.
struct OfferDescription {
    std::string_view block;
    std::string_view key;
    std::string_view offerBlock;
    std::string_view offerKey;
};

/// As the simulated device keeps its settings to what it offers.
std::vector<OfferDescription> DescribeOffers();

}  // namespace Morquil::Description
