// The description of the features is derived from their types.
#include "description/features_description.h"

#include <tuple>
#include <type_traits>

#include "description/names.h"
#include "device/device.h"
#include "features/all.h"

namespace Morquil::Description {
namespace {

template <class Visit>
void VisitFeatures(Visit visit) {
    [&]<class... Classes>(std::type_identity<std::tuple<Classes...>>) {
        (visit(std::type_identity<Classes>()), ...);
    }(std::type_identity<Features>());
}

/// A feature object outside a device; it counts and sends for `device`.
template <class FeatureClass>
FeatureClass Make(CMorquilDevice& device) {
    return FeatureClass(static_cast<IMorquilDevice&>(device), device);
}

}  // namespace

std::vector<FeatureDescription> DescribeFeatures() {
    CMorquilDevice device;
    std::vector<FeatureDescription> features;
    VisitFeatures([&]<class FeatureClass>(std::type_identity<FeatureClass>) {
        FeatureDescription feature{.interfaceName = TypeName<typename FeatureClass::ComInterface>(),
                                   .propertySet = Make<FeatureClass>(device).PropertySet(),
                                   .block = FeatureClass::SettingsBlock::block.header.name,
                                   .availability = {}};
        if constexpr (FeatureClass::hasAvailability) {
            feature.availability = FeatureClass::AvailabilityBlock::block.header.name;
        }
        features.push_back(feature);
    });
    return features;
}

std::set<std::string_view> BlocksOfTheInitialState() {
    // The device object itself waits for these two, and each feature for its own.
    std::set<std::string_view> blocks{MorquilDeviceChangeSet::block.header.name,
                                      SupportedConversionsChangeSet::block.header.name};
    for (const FeatureDescription& feature : DescribeFeatures()) {
        blocks.insert(feature.block);
        if (!feature.availability.empty()) {
            blocks.insert(feature.availability);
        }
    }
    return blocks;
}

std::string FourCharacters(std::uint32_t code) {
    std::string characters;
    for (int shift = 24; shift >= 0; shift -= 8) {
        characters += static_cast<char>(code >> shift & 0xff);
    }
    return characters;
}

}  // namespace Morquil::Description
