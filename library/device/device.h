#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "MorquilAPI.h"
#include "core/event.h"
#include "core/lockable.h"
#include "core/thread_safety.h"
#include "device/delivery.h"
#include "features/feature_list.h"
#include "observers/observable_property_set.h"
#include "observers/observer_list.h"
#include "platform/com_object.h"
#include "protocol/any_block.h"
#include "protocol/blocks/morquil_device.h"
#include "protocol/blocks/protocol_preamble.h"
#include "protocol/blocks/supported_conversions.h"
#include "settings/morquil_config_loader.h"
#include "transport/make_comms.h"
#include "transport/morquil_text_protocol_client.h"

/// One device: the object that the host holds, the client that talks to the device, the mirror of its state, and the
/// owner of the feature objects. Serves one connection attempt; to connect again, make a new object.
///
/// Threads. The host's threads read the mirror and queue messages. Only the connection thread receives blocks, merges
/// them and notifies property observers. During an asynchronous connect the connection timer thread waits for the
/// initial state and then calls `Connected`. No lock is held while an observer is called.
///
/// Lifetime. The reference count covers the host and a pending connection attempt. A separate count of holds keeps the
/// memory: all references together count as one hold, and the connection thread and every routine that calls observers
/// take one each. Releasing the last reference stops the connection; giving back the last hold destroys the object. The
/// object therefore outlives the callback in which the host releases it.
class CMorquilDevice final : public Morquil::ComObject<CMorquilDevice, IMorquilDevice>,
                             public CObservablePropertySet,
                             public Morquil::MorquilTextProtocolClient {
public:
    /// How long a connection waits for the initial state, in microseconds.
    static constexpr std::int32_t initialStateLimit = 120'000'000;

    explicit CMorquilDevice(std::unique_ptr<Morquil::AbstractComms> comms = Morquil::MakeComms(),
                            std::int32_t initialStateWait = initialStateLimit);
    ~CMorquilDevice() override;

    /// Connects to `address`; call it once per object. With an `observer` it returns at once and the observer is
    /// notified of the outcome, possibly before this returns. Without one it waits for the outcome.
    /// Returns: not negative on success. `failReason` holds the reason for a failure; a synchronous success also leaves
    ///          `morquilConnectToFailureNoResponse` in it.
    HRESULT Connect(BSTR address, IMorquilConnectionObserver* observer, _MorquilConnectToFailure* failReason);

    /// Ends the connection or the attempt, clears the mirror and notifies the connection observers. Does nothing when
    /// there is nothing to end or another call is already ending it.
    /// Threads: any, also inside a callback.
    /// Returns: 0.
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
    void OnThreadStarting() override;
    void OnThreadEnding() override { GiveHoldBack(); }

    void OnOtherBlock(std::size_t place, const void* changeSet) override;
    // Blocks that need more than storing their values in the features.
    void OnProtocolPreamble(const Morquil::ProtocolPreambleChangeSet& set) override;
    void OnMorquilDevice(const Morquil::MorquilDeviceChangeSet& set) override;
    void OnVideoInput(const Morquil::VideoInputChangeSet& set) override;
    void OnVideoOutput(const Morquil::VideoOutputChangeSet& set) override;
    void OnSupportedConversions(const Morquil::SupportedConversionsChangeSet& set) override;
    void OnVideoAdvanced(const Morquil::VideoAdvancedChangeSet& set) override;
    void OnGenlock(const Morquil::GenlockChangeSet& set) override;

private:
    /// The flag of the protocol version that says that the device can be updated over the network.
    static constexpr std::uint32_t networkUpdateFlag = 2;

    enum class ConnectionState : std::uint32_t { Disconnected = 0, Connecting = 1, Connected = 2, Disconnecting = 3 };

    friend class CMorquilDelivery;

    class Hold;
    using ConnectionRound = Morquil::ObserverList<IMorquilConnectionObserver>::Round;

    // device.cpp: identity, lifetime and the device's own methods
    void TakeHold() { ++holds_; }
    void GiveHoldBack();
    void LastReferenceGone();
    CObservablePropertySet* FindPropertySet(_MorquilPropertySetId propertySet);
    template <class Out, class FieldType>
    HRESULT ReadDevice(Out* out, FieldType Morquil::MorquilDeviceChangeSet::*member);
    std::string SettingsText();
    std::string SettingsTextOf(std::size_t place);

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
    template <class Set>
    void ApplySettings(const Set& set) {
        ApplySettings(Morquil::AnyBlock{Morquil::placeOf<Set>, &set});
    }
    void ApplySettings(Morquil::AnyBlock block);
    void ApplyAvailability(Morquil::AnyBlock block);
    std::string ComparableText(Morquil::AnyBlock block);
    void ReportSettings(std::size_t place, const std::string& text, _MorquilReportOrigin origin);
    void SettleReceipts(std::size_t place, const std::string& text);
    void Report(_MorquilPropertySetId propertySet, _MorquilReportKind kind, _MorquilReportOrigin origin);
    template <class Set>
    void Request() {
        Request(Morquil::placeOf<Set>);
    }
    void Request(std::size_t place);
    void RequestAllOffers();

    std::atomic<std::uint32_t> holds_ = 1;
    std::atomic<bool> lastReferenceGone_ = false;

    Morquil::FeatureList features_{*this, *this};

    Morquil::MorquilConfigLoader settingsLoader_{*this};
    CMorquilDelivery delivery_{*this};

    /// Held while the whole mirror is cleared or read for a settings file, so that no file holds only part of it. Taken
    /// before the lock of any single part.
    QRN::Core::Lockable wholeMirrorLock_;
    QRN::Core::Lockable mirrorLock_;
    Morquil::MorquilDeviceChangeSet deviceCache_ GUARDED_BY(mirrorLock_);
    Morquil::SupportedConversionsChangeSet conversionsCache_ GUARDED_BY(mirrorLock_);
    bool deviceReceived_ GUARDED_BY(mirrorLock_) = false;
    bool conversionsReceived_ GUARDED_BY(mirrorLock_) = false;

    /// Used only by the connection thread.
    Morquil::ProtocolPreambleChangeSet preamble_;
    std::size_t missingFeature_ = 0;  ///< index in the features handed out of one that was incomplete at the last check
    std::atomic<std::uint32_t> protocolVersionFlags_ = 0;
    std::atomic<std::uint32_t> protocolVersionMinor_ = 0;

    std::atomic<bool> initialStateReceived_ = false;
    std::atomic<_MorquilConnectToFailure> connectFailReason_ = morquilConnectToFailureNoResponse;
    /// Ends the wait for the initial state: the state is complete, can no longer arrive or is no longer wanted.
    QRN::Core::Event connectEvent_;
    const std::int32_t initialStateWait_;

    QRN::Core::Lockable stateLock_;
    ConnectionState state_ GUARDED_BY(stateLock_) = ConnectionState::Disconnected;
    Morquil::ObserverList<IMorquilConnectionObserver> connectionObservers_;
};

/// Keeps the device's memory until the end of a scope.
class CMorquilDevice::Hold {
public:
    explicit Hold(CMorquilDevice& device) : device_(device) { device_.TakeHold(); }
    ~Hold() { device_.GiveHoldBack(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

private:
    CMorquilDevice& device_;
};
