#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <tuple>
#include <type_traits>

#include "features/feature_base.h"
#include "transport/message_queue.h"

class CMorquilInputConfiguration;
class CMorquilOutputConfiguration;
class CMorquilVideoProcAmp;
class CMorquilColorCorrection;
class CMorquilVideoClip;
class CMorquilAspectFill;
class CMorquilNoiseReduction;
class CMorquilTestPattern;
class CMorquilVideoAdvanced;
class CMorquilTimecode;
class CMorquilClosedCaption;
class CMorquilVideoIndex;
class CMorquilReference;
class CMorquilVariableAspectRatio;
class CMorquilAudioMapping;
class CMorquil3dMode;
class CMorquilNetworkConfig;
class CMorquilDeviceFilenames;
class CMorquilPreset;
class CMorquilAlign;

namespace Morquil {

/// The features that are handed out to hosts, in the order of their interfaces. Where several share a block, the copy
/// of the first goes into a settings file.
using Features = std::tuple<CMorquilInputConfiguration, CMorquilOutputConfiguration, CMorquilVideoProcAmp,
                            CMorquilColorCorrection, CMorquilVideoClip, CMorquilAspectFill, CMorquilNoiseReduction,
                            CMorquilTestPattern, CMorquilVideoAdvanced, CMorquilTimecode, CMorquilClosedCaption,
                            CMorquilVideoIndex, CMorquilReference, CMorquilVariableAspectRatio, CMorquilAudioMapping,
                            CMorquil3dMode, CMorquilNetworkConfig, CMorquilDeviceFilenames, CMorquilPreset>;

/// Features that mirror the device but are never handed out.
using HiddenFeatures = std::tuple<CMorquilAlign>;

/// One object of each feature of a device.
class FeatureList {
public:
    /// `owner` counts the references to all objects, `queue` accepts their messages; both must outlive the list.
    FeatureList(IUnknown& owner, IMessageQueue& queue);

    using Objects = std::span<const std::unique_ptr<FeatureBase>>;

    /// Every feature that mirrors the device, handed out or not.
    Objects All() const { return objects_; }
    /// The features that are handed out to hosts.
    Objects HandedOut() const { return All().first(handedOutCount_); }

    template <class FeatureClass>
    FeatureClass& Of() const {
        return static_cast<FeatureClass&>(*objects_[PlaceOf<FeatureClass>(std::type_identity<Features>())]);
    }

private:
    template <class FeatureClass, class... Classes>
    static constexpr std::size_t PlaceOf(std::type_identity<std::tuple<Classes...>> /*features*/) {
        std::size_t place = 0;
        static_cast<void>(((std::is_same_v<Classes, FeatureClass> || (++place, false)) || ...));
        return place;
    }

    static constexpr std::size_t handedOutCount_ = std::tuple_size_v<Features>;
    static constexpr std::size_t count_ = handedOutCount_ + std::tuple_size_v<HiddenFeatures>;

    std::array<std::unique_ptr<FeatureBase>, count_> objects_;
};

}  // namespace Morquil
