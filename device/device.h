#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "MorquilAPI.h"
#include "core/event.h"
#include "core/lockable.h"
#include "core/thread_safety.h"
#include "device/observable_property_set.h"
#include "device/observer_list.h"
#include "features/align.h"
#include "features/aspect_fill.h"
#include "features/audio_mapping.h"
#include "features/closed_caption.h"
#include "features/color_correction.h"
#include "features/device_filenames.h"
#include "features/input_configuration.h"
#include "features/mode_3d.h"
#include "features/network_config.h"
#include "features/noise_reduction.h"
#include "features/output_configuration.h"
#include "features/preset.h"
#include "features/reference.h"
#include "features/test_pattern.h"
#include "features/timecode.h"
#include "features/variable_aspect_ratio.h"
#include "features/video_advanced.h"
#include "features/video_clip.h"
#include "features/video_index.h"
#include "features/video_proc_amp.h"
#include "platform/com_object.h"
#include "settings/morquil_config_loader.h"
#include "transport/make_comms.h"
#include "transport/morquil_text_protocol_client.h"

/// One device: the object that the host holds, the client that speaks to the device, the mirror of its state and the
/// owner of the feature objects. Serves one connection attempt; connecting again takes a new object.
///
/// Threads. The host's threads read the mirror and queue messages. The connection thread alone receives blocks, merges
/// them and tells property observers. With an asynchronous connect the connection timer thread waits for the initial
/// state and tells `Connected`. Observers are called with no lock held.
///
/// Lifetime. References count what the host (and a connection attempt on its way) holds. Beside them a hold keeps the
/// memory: all references together are one hold, and so are the connection thread and every routine that calls
/// observers. The last reference stops the connection; whoever gives the last hold back destroys the object, so it
/// outlives the callback in which the host lets it go.
class CMorquilDevice final : public Morquil::ComObject<CMorquilDevice, IMorquilDevice>,
                             public CObservablePropertySet,
                             public Morquil::MorquilTextProtocolClient {
public:
    /// How long a connection waits for the initial state, in microseconds.
    static constexpr std::int32_t initialStateLimit = 120'000'000;

    explicit CMorquilDevice(std::unique_ptr<Morquil::AbstractComms> comms = Morquil::MakeComms(),
                            std::int32_t initialStateWait = initialStateLimit);
    ~CMorquilDevice() override;

    /// Connects to `address`; once per object. With an `observer` it returns at once and the observer is told how the
    /// attempt ends, maybe before this returns; without one it waits for the end.
    /// Returns: not negative on success. `failReason` holds the reason of a failure, and in the synchronous case
    ///          `morquilConnectToFailureNoResponse` after success, too.
    HRESULT Connect(BSTR address, IMorquilConnectionObserver* observer, _MorquilConnectToFailure* failReason);

    /// Ends the connection, or the attempt. Forgets the mirror and tells the connection observers. Does nothing when
    /// there is nothing to end or somebody else is ending it. Threads: any, also inside a callback. Returns: 0.
    HRESULT Disconnect();

    void* FindInterface(REFIID iid);
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP AddConnectionObserver(IMorquilConnectionObserver* observer) override;
    STDMETHODIMP RemoveConnectionObserver(IMorquilConnectionObserver* observer) override;
    STDMETHODIMP AddPropertyObserver(IMorquilPropertyObserver* observer, _MorquilPropertySetId propertySet) override;
    STDMETHODIMP RemovePropertyObserver(IMorquilPropertyObserver* observer, _MorquilPropertySetId propertySet) override;
    STDMETHODIMP GetDeviceName(BSTR* name) override;
    STDMETHODIMP GetSoftwareVersion(UINT* version) override;
    STDMETHODIMP GetFPGAVersion(UINT* version) override;
    STDMETHODIMP GetPanelLock(LONG* lock) override;
    STDMETHODIMP GetRemoteLock(LONG* lock) override;
    STDMETHODIMP GetNetworkUpdateSupported(LONG* supported) override;
    STDMETHODIMP IsConversionSupported(_MorquilAPIVideoMode input, _MorquilAPIVideoMode output,
                                       _MorquilAPIAspectRatio aspectRatio, LONG* supported) override;
    STDMETHODIMP SetPanelLock(LONG lock) override;
    STDMETHODIMP SaveSettingsFile(BSTR path) override;
    STDMETHODIMP LoadSettingsFile(BSTR path) override;

protected:
    void OnConnectionChanged(bool connected) override;
    void OnThreadStarting() override { TakeHold(); }
    void OnThreadEnding() override { GiveHoldBack(); }

    void OnProtocolPreamble(const Morquil::ProtocolPreambleChangeSet& set) override;
    void OnMorquilDevice(const Morquil::MorquilDeviceChangeSet& set) override;
    void OnVideoInput(const Morquil::VideoInputChangeSet& set) override;
    void OnVideoInputAvailability(const Morquil::VideoInputAvailabilityChangeSet& set) override;
    void OnVideoOutput(const Morquil::VideoOutputChangeSet& set) override;
    void OnVideoOutputAvailability(const Morquil::VideoOutputAvailabilityChangeSet& set) override;
    void OnSupportedConversions(const Morquil::SupportedConversionsChangeSet& set) override;
    void OnVideoProcAmp(const Morquil::VideoProcAmpChangeSet& set) override;
    void OnVideoProcAmpAvailability(const Morquil::VideoProcAmpAvailabilityChangeSet& set) override;
    void OnVideoAdjust(const Morquil::VideoAdjustChangeSet& set) override;
    void OnVideoAdjustAvailability(const Morquil::VideoAdjustAvailabilityChangeSet& set) override;
    void OnNoiseReduction(const Morquil::NoiseReductionChangeSet& set) override;
    void OnNoiseReductionAvailability(const Morquil::NoiseReductionAvailabilityChangeSet& set) override;
    void OnTestPattern(const Morquil::TestPatternChangeSet& set) override;
    void OnTestPatternAvailability(const Morquil::TestPatternAvailabilityChangeSet& set) override;
    void OnVideoAdvanced(const Morquil::VideoAdvancedChangeSet& set) override;
    void OnVideoAdvancedAvailability(const Morquil::VideoAdvancedAvailabilityChangeSet& set) override;
    void OnAncillaryData(const Morquil::AncillaryDataChangeSet& set) override;
    void OnAncillaryDataAvailability(const Morquil::AncillaryDataAvailabilityChangeSet& set) override;
    void OnGenlock(const Morquil::GenlockChangeSet& set) override;
    void OnGenlockAvailability(const Morquil::GenlockAvailabilityChangeSet& set) override;
    void OnVariableAspectRatio(const Morquil::VariableAspectRatioChangeSet& set) override;
    void OnVariableAspectRatioAvailability(const Morquil::VariableAspectRatioAvailabilityChangeSet& set) override;
    void OnAlign(const Morquil::AlignChangeSet& set) override;
    void OnAlignAvailability(const Morquil::VariableAspectRatioAvailabilityChangeSet& set) override;
    void OnAudio(const Morquil::AudioChangeSet& set) override;
    void OnAudioAvailability(const Morquil::AudioAvailabilityChangeSet& set) override;
    void OnMode3D(const Morquil::Mode3DChangeSet& set) override;
    void OnMode3DAvailability(const Morquil::Mode3DAvailabilityChangeSet& set) override;
    void OnNetworkConfig(const Morquil::NetworkConfigChangeSet& set) override;
    void OnDeviceFilenames(const Morquil::DeviceFilenamesChangeSet& set) override;
    void OnPreset(const Morquil::PresetChangeSet& set) override;
    void OnPresetAvailability(const Morquil::PresetAvailabilityChangeSet& set) override;

private:
    /// Of the protocol version's flags: the device can be updated over the network.
    static constexpr std::uint32_t networkUpdateFlag = 2;

    enum class ConnectionState : std::uint32_t { Disconnected = 0, Connecting = 1, Connected = 2, Disconnecting = 3 };

    /// A feature object and the interface under which the host asks for it.
    struct FeatureEntry {
        const IID& iid;
        Morquil::FeatureBase& feature;
    };

    class Hold;
    using ConnectionRound = Morquil::ObserverList<IMorquilConnectionObserver>::Round;

    // device.cpp: identity, lifetime and what the device itself answers
    void TakeHold() { ++holds_; }
    void GiveHoldBack();
    void LastReferenceGone();
    CObservablePropertySet* FindPropertySet(_MorquilPropertySetId propertySet);
    template <class Out, class FieldType>
    HRESULT ReadDevice(Out* out, FieldType Morquil::MorquilDeviceChangeSet::*member);
    std::string SettingsText();

    // connection.cpp: the connection and its states
    bool SetAddress(BSTR address);
    HRESULT ConnectAsynchronously(IMorquilConnectionObserver* observer);
    static std::uint32_t ConnectionTimerMain(void* device);
    HRESULT WaitForConnection();
    HRESULT ConcludeConnecting();
    void FailConnecting(_MorquilConnectToFailure reason);
    void SilenceProperties();
    void ClearMirror();
    void CheckInitialState();
    bool IsInitialStateComplete();

    // incoming_blocks.cpp: how a block reaches the mirror
    template <class Set, class... Features>
    void ApplyBlock(const Set& set, Features&... features);
    template <class Set, class... Features>
    void ApplyAvailability(const Set& set, Features&... features);
    template <class Message>
    void Request();
    void RequestAllAvailability();

    std::atomic<std::uint32_t> holds_ = 1;
    std::atomic<bool> lastReferenceGone_ = false;

    CMorquilVideoProcAmp videoProcAmp_{*this, *this};
    CMorquilTestPattern testPattern_{*this, *this};
    CMorquilVideoAdvanced videoAdvanced_{*this, *this};
    CMorquilNoiseReduction noiseReduction_{*this, *this};
    CMorquilInputConfiguration inputConfiguration_{*this, *this};
    CMorquilOutputConfiguration outputConfiguration_{*this, *this};
    CMorquilColorCorrection colorCorrection_{*this, *this};
    CMorquilVideoClip videoClip_{*this, *this};
    CMorquilAspectFill aspectFill_{*this, *this};
    CMorquilTimecode timecode_{*this, *this};
    CMorquilClosedCaption closedCaption_{*this, *this};
    CMorquilVideoIndex videoIndex_{*this, *this};
    CMorquilReference reference_{*this, *this};
    CMorquilVariableAspectRatio variableAspectRatio_{*this, *this};
    CMorquilAudioMapping audioMapping_{*this, *this};
    CMorquil3dMode mode3d_{*this, *this};
    /// Follows the device, but is handed to nobody.
    CMorquilAlign align_{*this, *this};
    CMorquilNetworkConfig networkConfig_{*this, *this};
    CMorquilDeviceFilenames deviceFilenames_{*this, *this};
    CMorquilPreset preset_{*this, *this};
    /// The features that the host is handed, in the order in which they are asked for and waited for.
    const std::array<FeatureEntry, 19> features_;

    Morquil::MorquilConfigLoader settingsLoader_{*this};

    /// Held while the whole mirror is cleared, and while all of it is read for a file, so that no file holds a part of
    /// it. Taken before the lock of any part.
    QRN::Core::Lockable wholeMirrorLock_;
    QRN::Core::Lockable mirrorLock_;
    Morquil::MorquilDeviceChangeSet deviceCache_ GUARDED_BY(mirrorLock_);
    Morquil::SupportedConversionsChangeSet conversionsCache_ GUARDED_BY(mirrorLock_);
    bool deviceReceived_ GUARDED_BY(mirrorLock_) = false;
    bool conversionsReceived_ GUARDED_BY(mirrorLock_) = false;

    /// The connection thread's own.
    Morquil::ProtocolPreambleChangeSet preamble_;
    std::size_t missingFeature_ = 0;  ///< the place in `features_` of one that a connection waited for last
    std::atomic<std::uint32_t> protocolVersionFlags_ = 0;
    std::atomic<std::uint32_t> protocolVersionMinor_ = 0;

    std::atomic<bool> initialStateReceived_ = false;
    std::atomic<_MorquilConnectToFailure> connectFailReason_ = morquilConnectToFailureNoResponse;
    /// Ends the wait for the initial state: it is complete, cannot come any more or is not wanted any more.
    QRN::Core::Event connectEvent_;
    const std::int32_t initialStateWait_;

    QRN::Core::Lockable stateLock_;
    ConnectionState state_ GUARDED_BY(stateLock_) = ConnectionState::Disconnected;
    Morquil::ObserverList<IMorquilConnectionObserver> connectionObservers_;
};

/// Keeps the device's memory to the end of a scope.
class CMorquilDevice::Hold {
public:
    explicit Hold(CMorquilDevice& device) : device_(device) { device_.TakeHold(); }
    ~Hold() { device_.GiveHoldBack(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

private:
    CMorquilDevice& device_;
};
