#include "tests/worlds/simulation/visit.h"

#include <array>
#include <cstdlib>
#include <utility>

#include "tests/kit/owned_bstr.h"

namespace Morquil::Testing::Worlds {

namespace {

using Testing::OwnedBstr;
using Testing::Utf16;

/// Longer than anything that a visit waits for, but shorter than the silence after which the host speaks up.
constexpr Time visitTime = 10;

constexpr std::array allPropertySets{morquilInputConfigurationPropertySetId, morquilOutputConfigurationPropertySetId,
                                     morquilVideoProcAmpPropertySetId,       morquilTestPatternPropertySetId,
                                     morquilVideoAdvancedPropertySetId,      morquilNoiseReductionPropertySetId,
                                     morquilColorCorrectionPropertySetId,    morquilVideoClipPropertySetId,
                                     morquilAspectFillPropertySetId,         morquilTimecodePropertySetId,
                                     morquilClosedCaptionPropertySetId,      morquilVideoIndexPropertySetId,
                                     morquilReferencePropertySetId,          morquilVariableAspectRatioPropertySetId,
                                     morquilAudioMappingPropertySetId,       morquil3dModePropertySetId,
                                     morquilNetworkConfigPropertySetId,      morquilDeviceFilenamesPropertySetId,
                                     morquilDeviceControlPropertySetId,      morquilPresetPropertySetId};

}  // namespace

const std::size_t Listener::propertySets = allPropertySets.size();

Listener::Listener(CMorquilDevice& device) {
    connection_.calls = properties_.calls = &calls_;
    device.AddConnectionObserver(&connection_);
    for (const _MorquilPropertySetId set : allPropertySets) {
        device.AddPropertyObserver(&properties_, set);
    }
}

Visit::Visit(std::uint64_t seed, Wire wire, const NetworkManners& manners)
    : dice_(seed), wire_(std::move(wire)), manners_(manners) {
    Scheduler& scheduler = Scheduler::Instance();
    scheduler.Begin(dice_, [] { std::abort(); });
    _MorquilConnectToFailure reason{};
    device_->Connect(OwnedBstr(Utf16{OLESTR("device.test")}).Get(), nullptr, &reason);
    scheduler.LetOthersRun(scheduler.Now() + visitTime);
}

Visit::~Visit() {
    device_->Release();
    Scheduler::Instance().End();
}

}  // namespace Morquil::Testing::Worlds
