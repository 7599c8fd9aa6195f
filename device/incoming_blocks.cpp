// How a received block reaches the mirror. All of this runs on the connection thread.
#include <memory>
#include <utility>

#include "core/lock.h"
#include "device/device.h"

using namespace Morquil;
using QRN::Core::Lock;

namespace {

/// The one version of the protocol that this library speaks.
constexpr std::uint32_t supportedVersionMinor = 22;

/// Whether a block carries a value other than the one that the getter answers. Unknown differs from known.
template <class Face, class Out, class FieldType>
bool Differs(Face& face, HRESULT (STDMETHODCALLTYPE Face::*getter)(Out*), const FieldType& incoming) {
    Out current{};
    return incoming.IsPresent() && ((face.*getter)(&current) != S_OK || current != static_cast<Out>(incoming.Get()));
}

}  // namespace

/// An ordinary block: the features take it over, and tell of it unless it is only the echo of a setter.
template <class Set, class... Features>
void CMorquilDevice::ApplyBlock(const Set& set, Features&... features) {
    const std::string text = AwaitsEcho() ? BlockText<Set>(set) : std::string();
    const bool notify = !IsSentText(text);
    // An observer may disconnect: the features after it then keep their cleared mirrors.
    ((IsListening() ? features.ApplyChangeSet(set, notify) : void()), ...);
    CheckInitialState();
    ForgetSentThrough(text);
}

template <class Set, class... Features>
void CMorquilDevice::ApplyAvailability(const Set& set, Features&... features) {
    ((IsListening() ? features.ApplyAvailabilityChangeSet(set) : void()), ...);
    CheckInitialState();
}

/// Asks the device for a block. Its answer is no echo, so nothing is remembered.
template <class Message>
void CMorquilDevice::Request() {
    auto message = std::make_unique<Message>();
    message->recordSentText = false;
    Queue(std::move(message));
}

void CMorquilDevice::RequestAllAvailability() {
    Request<VideoInputAvailabilityMessage>();
    Request<VideoOutputAvailabilityMessage>();
    Request<SupportedConversionsMessage>();
    Request<VideoProcAmpAvailabilityMessage>();
    Request<VideoAdjustAvailabilityMessage>();
    Request<NoiseReductionAvailabilityMessage>();
    Request<TestPatternAvailabilityMessage>();
    Request<VideoAdvancedAvailabilityMessage>();
    Request<AncillaryDataAvailabilityMessage>();
    Request<GenlockAvailabilityMessage>();
    Request<VariableAspectRatioAvailabilityMessage>();
    Request<AudioAvailabilityMessage>();
    Request<Mode3DAvailabilityMessage>();
    Request<PresetAvailabilityMessage>();
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
            RequestAllAvailability();
        }
        if (set.remoteLock.IsPresent() && set.remoteLock.Get()) {
            FailConnecting(morquilConnectToFailureRemoteLock);
        }
        NotifyObservers();
    }
    CheckInitialState();
}

void CMorquilDevice::OnVideoInput(const VideoInputChangeSet& set) {
    using Input = CMorquilInputConfiguration;
    Input& input = inputConfiguration_;
    const bool sourceDiffers = Differs(input, &Input::GetVideoSource, set.videoSource);
    const bool modeDiffers = Differs(input, &Input::GetVideoMode, set.videoMode);
    const bool aspectDiffers = Differs(input, &Input::GetWideSDAspectEnabled, set.wideSDAspect);
    const bool hdmi3DDiffers = Differs(input, &Input::GetHdmi3DFull, set.hdmi3DFull);
    if (sourceDiffers) {
        Request<VideoInputAvailabilityMessage>();
    }
    if (modeDiffers || aspectDiffers) {
        Request<VariableAspectRatioAvailabilityMessage>();
    }
    if (modeDiffers || hdmi3DDiffers) {
        Request<NoiseReductionAvailabilityMessage>();
        Request<VideoAdvancedAvailabilityMessage>();
    }
    ApplyBlock(set, input);
}

/// Output changes are told even when they are the echo of a setter: hosts learn from them that the output has changed.
void CMorquilDevice::OnVideoOutput(const VideoOutputChangeSet& set) {
    using Output = CMorquilOutputConfiguration;
    Output& output = outputConfiguration_;
    const bool modeDiffers = Differs(output, &Output::GetVideoMode, set.videoMode);
    const bool aspectDiffers = Differs(output, &Output::GetAspectRatio, set.aspectRatio);
    if (modeDiffers || aspectDiffers) {
        Request<VariableAspectRatioAvailabilityMessage>();
    }
    if (modeDiffers) {
        Request<NoiseReductionAvailabilityMessage>();
        Request<VideoAdvancedAvailabilityMessage>();
        Request<GenlockAvailabilityMessage>();
    }
    output.ApplyChangeSet(set, true);
    CheckInitialState();
    if (AwaitsEcho()) {
        ForgetSentThrough(BlockText<VideoOutputChangeSet>(set));
    }
}

void CMorquilDevice::OnVideoAdvanced(const VideoAdvancedChangeSet& set) {
    using Advanced = CMorquilVideoAdvanced;
    if (Differs(videoAdvanced_, &Advanced::GetProcMode, set.processing) ||
        Differs(videoAdvanced_, &Advanced::GetScenecutDetect, set.scenecutDetect)) {
        Request<VideoAdvancedAvailabilityMessage>();
    }
    ApplyBlock(set, videoAdvanced_);
}

void CMorquilDevice::OnGenlock(const GenlockChangeSet& set) {
    if (Differs(reference_, &CMorquilReference::GetSignalLocked, set.signalLocked)) {
        Request<GenlockAvailabilityMessage>();
    }
    ApplyBlock(set, reference_);
}

void CMorquilDevice::OnSupportedConversions(const SupportedConversionsChangeSet& set) {
    {
        Lock lock(mirrorLock_);
        Merge(conversionsCache_, set);
        conversionsReceived_ = true;
    }
    CheckInitialState();
}

// clang-format off
void CMorquilDevice::OnVideoProcAmp(const VideoProcAmpChangeSet& set) { ApplyBlock(set, videoProcAmp_); }
void CMorquilDevice::OnVideoAdjust(const VideoAdjustChangeSet& set) { ApplyBlock(set, colorCorrection_, videoClip_, aspectFill_); }
void CMorquilDevice::OnNoiseReduction(const NoiseReductionChangeSet& set) { ApplyBlock(set, noiseReduction_); }
void CMorquilDevice::OnTestPattern(const TestPatternChangeSet& set) { ApplyBlock(set, testPattern_); }
void CMorquilDevice::OnAncillaryData(const AncillaryDataChangeSet& set) { ApplyBlock(set, timecode_, closedCaption_, videoIndex_); }
void CMorquilDevice::OnVariableAspectRatio(const VariableAspectRatioChangeSet& set) { ApplyBlock(set, variableAspectRatio_); }
void CMorquilDevice::OnAlign(const AlignChangeSet& set) { ApplyBlock(set, align_); }
void CMorquilDevice::OnAudio(const AudioChangeSet& set) { ApplyBlock(set, audioMapping_); }
void CMorquilDevice::OnMode3D(const Mode3DChangeSet& set) { ApplyBlock(set, mode3d_); }
void CMorquilDevice::OnNetworkConfig(const NetworkConfigChangeSet& set) { ApplyBlock(set, networkConfig_); }
void CMorquilDevice::OnDeviceFilenames(const DeviceFilenamesChangeSet& set) { ApplyBlock(set, deviceFilenames_); }
void CMorquilDevice::OnPreset(const PresetChangeSet& set) { ApplyBlock(set, preset_); }

void CMorquilDevice::OnVideoInputAvailability(const VideoInputAvailabilityChangeSet& set) { ApplyAvailability(set, inputConfiguration_); }
void CMorquilDevice::OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet& set) { ApplyAvailability(set, outputConfiguration_); }
void CMorquilDevice::OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet& set) { ApplyAvailability(set, videoProcAmp_); }
void CMorquilDevice::OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet& set) { ApplyAvailability(set, colorCorrection_, videoClip_, aspectFill_); }
void CMorquilDevice::OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet& set) { ApplyAvailability(set, noiseReduction_); }
void CMorquilDevice::OnTestPatternAvailability(const TestPatternAvailabilityChangeSet& set) { ApplyAvailability(set, testPattern_); }
void CMorquilDevice::OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet& set) { ApplyAvailability(set, videoAdvanced_); }
void CMorquilDevice::OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet& set) { ApplyAvailability(set, timecode_, closedCaption_, videoIndex_); }
void CMorquilDevice::OnGenlockAvailability(const GenlockAvailabilityChangeSet& set) { ApplyAvailability(set, reference_); }
void CMorquilDevice::OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet& set) { ApplyAvailability(set, variableAspectRatio_); }
void CMorquilDevice::OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet& set) { ApplyAvailability(set, align_); }
void CMorquilDevice::OnAudioAvailability(const AudioAvailabilityChangeSet& set) { ApplyAvailability(set, audioMapping_); }
void CMorquilDevice::OnMode3DAvailability(const Mode3DAvailabilityChangeSet& set) { ApplyAvailability(set, mode3d_); }
void CMorquilDevice::OnPresetAvailability(const PresetAvailabilityChangeSet& set) { ApplyAvailability(set, preset_); }
// clang-format on
