// How a received block reaches the mirror. All of this runs on the connection thread.
#include <memory>
#include <utility>

#include "core/lock.h"
#include "device/device.h"
#include "features/input_configuration.h"
#include "features/output_configuration.h"
#include "features/reference.h"
#include "features/video_advanced.h"
#include "protocol/block_table.h"
#include "protocol/blocks/genlock.h"
#include "protocol/blocks/video_advanced.h"
#include "protocol/blocks/video_input.h"
#include "protocol/blocks/video_output.h"
#include "protocol/table/message.h"

using namespace Morquil;
using QRN::Core::Lock;

namespace {

/// The only version of the protocol that this library speaks.
constexpr std::uint32_t supportedVersionMinor = 22;

/// Whether a block carries a value other than the getter's. An unknown value differs from every known one.
template <class FeatureClass, class Out, class FieldType>
bool Differs(FeatureClass& feature, HRESULT (STDMETHODCALLTYPE FeatureClass::*getter)(Out*),
             const FieldType& incoming) {
    Out current{};
    return incoming.IsPresent() && ((feature.*getter)(&current) != S_OK || current != static_cast<Out>(incoming.Get()));
}

}  // namespace

/// Requests a block from the device. The answer is not an echo, so the sent text is not recorded.
void CMorquilDevice::Request(std::size_t place) {
    std::unique_ptr<TextProtocolMessageBase> message = MakeRequest(place);
    message->recordSentText = false;
    Queue(place, std::move(message));
}

void CMorquilDevice::RequestAllOffers() {
    for (std::size_t place = 0; place < blockCount; ++place) {
        if (factsByPlace[place].role == BlockRole::Offers && factsByPlace[place].isSent) {
            Request(place);
        }
    }
}

void CMorquilDevice::OnOtherBlock(std::size_t place, const void* changeSet) {
    if (factsByPlace[place].role == BlockRole::Settings) {
        ApplySettings(AnyBlock{place, changeSet});
    } else {
        ApplyAvailability(AnyBlock{place, changeSet});
    }
}

/// Merges the block into the features that keep it and notifies their observers, unless it is only the echo of a
/// setter.
void CMorquilDevice::ApplySettings(AnyBlock block) {
    const std::string text = ComparableText(block);
    const bool notify = !IsSentText(text);
    for (const auto& feature : features_.All()) {
        // An observer may disconnect; the remaining features then keep their cleared mirrors.
        if (feature->KeepsSettings(block.place) && IsListening()) {
            feature->ApplySettings(block, notify);
        }
    }
    CheckInitialState();
    DropSentThrough(text);
    ReportSettings(block.place, text, notify ? morquilReportElsewhere : morquilReportEcho);
}

void CMorquilDevice::ApplyAvailability(AnyBlock block) {
    for (const auto& feature : features_.All()) {
        if (feature->KeepsAvailability(block.place) && IsListening()) {
            feature->ApplyAvailability(block);
        }
    }
    CheckInitialState();
    for (const auto& feature : features_.All()) {
        if (feature->KeepsAvailability(block.place)) {
            Report(feature->PropertySet(), morquilReportAvailability, morquilReportElsewhere);
        }
    }
}

/// The text of a received block, if anything is waiting to be compared with it.
std::string CMorquilDevice::ComparableText(AnyBlock block) {
    return AwaitsEcho() || MessageReceipts().IsActive() ? BlockText(block) : std::string();
}

/// The block has been merged and property observers have been notified: notifies those who follow reports.
void CMorquilDevice::ReportSettings(std::size_t place, const std::string& text, _MorquilReportOrigin origin) {
    for (const auto& feature : features_.All()) {
        if (feature->KeepsSettings(place)) {
            Report(feature->PropertySet(), morquilReportSettings, origin);
        }
    }
    SettleReceipts(place, text);
}

void CMorquilDevice::SettleReceipts(std::size_t place, const std::string& text) {
    if (IsListening()) {
        MessageReceipts().OnReport(factsByPlace[place].slot - 1, text);
        MessageReceipts().NotifyDue();
    }
}

/// An observer may have disconnected meanwhile.
void CMorquilDevice::Report(_MorquilPropertySetId propertySet, _MorquilReportKind kind, _MorquilReportOrigin origin) {
    if (delivery_.HasReportObservers() && IsListening()) {
        delivery_.Report(propertySet, kind, origin);
    }
}

void CMorquilDevice::OnProtocolPreamble(const ProtocolPreambleChangeSet& set) {
    if (!Merge(preamble_, set)) {
        return;
    }
    const ProtocolVersion version = preamble_.version.Get();
    protocolVersionFlags_ = version.flags;
    protocolVersionMinor_ = version.minor;
    if (version.minor != supportedVersionMinor) {
        FailConnecting((version.flags & networkUpdateFlag) != 0 ? morquilConnectToFailureIncompatibleUpdateSupported
                                                                : morquilConnectToFailureIncompatibleFirmware);
    }
}

void CMorquilDevice::OnMorquilDevice(const MorquilDeviceChangeSet& set) {
    bool isFirst = false;
    bool changed = false;
    {
        Lock lock(mirrorLock_);
        isFirst = IsEmpty(deviceCache_);
        changed = Merge(deviceCache_, set);
        deviceReceived_ = true;
    }
    if (changed) {
        if (isFirst) {
            RequestAllOffers();
        }
        if (set.remoteLock.IsPresent() && set.remoteLock.Get()) {
            FailConnecting(morquilConnectToFailureRemoteLock);
        }
        NotifyObservers();
    }
    CheckInitialState();
    Report(PropertySet(), morquilReportSettings, morquilReportElsewhere);
    constexpr std::size_t place = placeOf<MorquilDeviceChangeSet>;
    SettleReceipts(place, ComparableText({place, &set}));
}

void CMorquilDevice::OnVideoInput(const VideoInputChangeSet& set) {
    using Input = CMorquilInputConfiguration;
    auto& input = features_.Of<Input>();
    const bool sourceDiffers = Differs(input, &Input::GetVideoSource, set.videoSource);
    const bool modeDiffers = Differs(input, &Input::GetVideoMode, set.videoMode);
    const bool aspectDiffers = Differs(input, &Input::GetWideSDAspectEnabled, set.wideSDAspect);
    const bool hdmi3DDiffers = Differs(input, &Input::GetHdmi3DFull, set.hdmi3DFull);
    if (sourceDiffers) {
        Request<VideoInputAvailabilityChangeSet>();
    }
    if (modeDiffers || aspectDiffers) {
        Request<VariableAspectRatioAvailabilityChangeSet>();
    }
    if (modeDiffers || hdmi3DDiffers) {
        Request<NoiseReductionAvailabilityChangeSet>();
        Request<VideoAdvancedAvailabilityChangeSet>();
    }
    ApplySettings(set);
}

/// Observers are notified of output changes even when they echo a setter: hosts learn from them that the output has
/// changed.
void CMorquilDevice::OnVideoOutput(const VideoOutputChangeSet& set) {
    using Output = CMorquilOutputConfiguration;
    auto& output = features_.Of<Output>();
    const bool modeDiffers = Differs(output, &Output::GetVideoMode, set.videoMode);
    const bool aspectDiffers = Differs(output, &Output::GetAspectRatio, set.aspectRatio);
    if (modeDiffers || aspectDiffers) {
        Request<VariableAspectRatioAvailabilityChangeSet>();
    }
    if (modeDiffers) {
        Request<NoiseReductionAvailabilityChangeSet>();
        Request<VideoAdvancedAvailabilityChangeSet>();
        Request<GenlockAvailabilityChangeSet>();
    }
    constexpr std::size_t place = placeOf<VideoOutputChangeSet>;
    const std::string text = ComparableText({place, &set});
    const bool isEcho = IsSentText(text);
    output.ApplyChangeSet(set, true);
    CheckInitialState();
    DropSentThrough(text);
    ReportSettings(place, text, isEcho ? morquilReportEcho : morquilReportElsewhere);
}

void CMorquilDevice::OnVideoAdvanced(const VideoAdvancedChangeSet& set) {
    using Advanced = CMorquilVideoAdvanced;
    auto& advanced = features_.Of<Advanced>();
    if (Differs(advanced, &Advanced::GetProcMode, set.processing) ||
        Differs(advanced, &Advanced::GetScenecutDetect, set.scenecutDetect)) {
        Request<VideoAdvancedAvailabilityChangeSet>();
    }
    ApplySettings(set);
}

void CMorquilDevice::OnGenlock(const GenlockChangeSet& set) {
    if (Differs(features_.Of<CMorquilReference>(), &CMorquilReference::GetSignalLocked, set.signalLocked)) {
        Request<GenlockAvailabilityChangeSet>();
    }
    ApplySettings(set);
}

void CMorquilDevice::OnSupportedConversions(const SupportedConversionsChangeSet& set) {
    {
        Lock lock(mirrorLock_);
        Merge(conversionsCache_, set);
        conversionsReceived_ = true;
    }
    CheckInitialState();
    Report(PropertySet(), morquilReportAvailability, morquilReportElsewhere);
}
