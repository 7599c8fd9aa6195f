// The blocks that need more than storing their values in the features.
#include "device/incoming_blocks.h"

#include <memory>
#include <utility>

#include "core/lock.h"

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
template <class Set>
void CMorquilDevice::Request() {
    auto message = std::make_unique<TextProtocolMessage<Set>>();
    message->recordSentText = false;
    Queue(std::move(message));
}

void CMorquilDevice::RequestAllOffers() {
    ForEachBlock<BlockRole::Offers>([this]<class Description>() {
        if constexpr (factsOf<Description>.isSent) {
            Request<Description>();
        }
    });
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
    SettleReceipts<MorquilDeviceChangeSet>(ComparableText<MorquilDeviceChangeSet>(set));
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
    const std::string text = ComparableText<VideoOutputChangeSet>(set);
    const bool isEcho = IsSentText(text);
    output.ApplyChangeSet(set, true);
    CheckInitialState();
    DropSentThrough(text);
    ReportSettings<VideoOutputChangeSet>(text, isEcho ? morquilReportEcho : morquilReportElsewhere);
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
