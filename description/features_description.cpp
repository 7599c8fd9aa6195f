// What is known of the features follows from their types, and what they need from asking them.
#include "description/features_description.h"

#include <array>
#include <cstddef>
#include <stdexcept>
#include <tuple>
#include <type_traits>

#include "description/key_walk.h"
#include "description/names.h"
#include "device/device.h"
#include "simulator/factory_device.h"

namespace Morquil::Description {
namespace {

/// The classes of the features, in the order of their interfaces.
using FeatureClasses =
    std::tuple<CMorquilInputConfiguration, CMorquilOutputConfiguration, CMorquilVideoProcAmp, CMorquilColorCorrection,
               CMorquilVideoClip, CMorquilAspectFill, CMorquilNoiseReduction, CMorquilTestPattern,
               CMorquilVideoAdvanced, CMorquilTimecode, CMorquilClosedCaption, CMorquilVideoIndex, CMorquilReference,
               CMorquilVariableAspectRatio, CMorquilAudioMapping, CMorquil3dMode, CMorquilNetworkConfig,
               CMorquilDeviceFilenames, CMorquilPreset>;

template <class Visit>
void VisitFeatures(Visit visit) {
    [&]<class... Classes>(std::type_identity<std::tuple<Classes...>>) {
        (visit(std::type_identity<Classes>()), ...);
    }(std::type_identity<FeatureClasses>());
}

template <class FaceType, class SetType, class AvailabilityType>
struct FeatureTypes {
    using Face = FaceType;
    using Set = SetType;
    using Availability = AvailabilityType;
    static constexpr bool hasAvailability = !std::is_same_v<Availability, NoAvailability>;
};
template <class Face, class Set, class Availability>
FeatureTypes<Face, Set, Availability> TypesOf(const Feature<Face, Set, Availability>*);
template <class FeatureClass>
using Types = decltype(TypesOf(static_cast<const FeatureClass*>(nullptr)));

template <class FieldType>
void Forget(FieldType& field) {
    field.Clear();
}
template <class FieldType, std::size_t count>
void Forget(std::array<FieldType, count>& fields) {
    for (FieldType& field : fields) {
        field.Clear();
    }
}

/// Asks a feature for each key of a block whether it is complete without it. `isComplete` is given the block.
/// Throws: std::logic_error when it is not complete in the first place.
template <class Set, class IsComplete>
void AddNeededKeys(std::set<std::string>& needed, const Set& complete, IsComplete isComplete) {
    if (!isComplete(complete)) {
        throw std::logic_error(std::string("the simulated device lacks something of ") + Set::block.header.name);
    }
    VisitKeysOf<Set>([&](const KeyPlace& place, const auto& /*kind*/, auto member, const auto& /*row*/) {
        if constexpr (!std::is_null_pointer_v<decltype(member)>) {
            Set less = complete;
            Forget(less.*member);
            if (!isComplete(less)) {
                needed.insert(std::string(Set::block.header.name) + "/" + std::string(place.key));
            }
        }
    });
}

/// A feature object outside a device; it counts and sends for `device`.
template <class FeatureClass>
FeatureClass Make(CMorquilDevice& device) {
    return FeatureClass(static_cast<IMorquilDevice&>(device), device);
}

template <class FeatureClass>
bool IsComplete(CMorquilDevice& device, const typename Types<FeatureClass>::Set& settings,
                const typename Types<FeatureClass>::Availability& availability) {
    FeatureClass feature = Make<FeatureClass>(device);
    feature.ApplyChangeSet(settings, false);
    if constexpr (Types<FeatureClass>::hasAvailability) {
        feature.ApplyAvailabilityChangeSet(availability);
    }
    return feature.IsCacheComplete();
}

template <class FeatureClass>
void AddNeededKeysOf(std::set<std::string>& needed, const Simulator::DeviceBlocks& factory, CMorquilDevice& device) {
    using Set = typename Types<FeatureClass>::Set;
    using Availability = typename Types<FeatureClass>::Availability;
    const Set& settings = factory.Of<Set>();
    if constexpr (Types<FeatureClass>::hasAvailability) {
        const Availability& availability = factory.Of<Availability>();
        AddNeededKeys(needed, settings,
                      [&](const Set& less) { return IsComplete<FeatureClass>(device, less, availability); });
        AddNeededKeys(needed, availability,
                      [&](const Availability& less) { return IsComplete<FeatureClass>(device, settings, less); });
    } else {
        AddNeededKeys(needed, settings, [&](const Set& less) { return IsComplete<FeatureClass>(device, less, {}); });
    }
}

}  // namespace

std::vector<FeatureDescription> DescribeFeatures() {
    CMorquilDevice device;
    std::vector<FeatureDescription> features;
    VisitFeatures([&]<class FeatureClass>(std::type_identity<FeatureClass>) {
        using All = Types<FeatureClass>;
        FeatureDescription feature{.interfaceName = TypeName<typename All::Face>(),
                                   .propertySet = Make<FeatureClass>(device).PropertySet(),
                                   .block = All::Set::block.header.name,
                                   .availability = {}};
        if constexpr (All::hasAvailability) {
            feature.availability = All::Availability::block.header.name;
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

std::set<std::string> KeysOfTheInitialState() {
    const Simulator::DeviceBlocks factory = Simulator::FactoryDevice({});
    CMorquilDevice device;
    std::set<std::string> needed;
    VisitFeatures([&]<class FeatureClass>(std::type_identity<FeatureClass>) {
        AddNeededKeysOf<FeatureClass>(needed, factory, device);
    });
    return needed;
}

std::string FourCharacters(std::uint32_t code) {
    std::string characters;
    for (int shift = 24; shift >= 0; shift -= 8) {
        characters += static_cast<char>(code >> shift & 0xff);
    }
    return characters;
}

}  // namespace Morquil::Description
