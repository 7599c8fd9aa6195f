// Connecting to a device, and the device.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "morquil/call.hpp"
#include "morquil/interfaces.hpp"
#include "morquil/library.hpp"
#include "morquil/observers.hpp"
#include "morquil/settings_file.hpp"

namespace morquil {

/// Why there is no connection, in words.
inline std::string ToText(ConnectFailure reason) {
    switch (reason) {
        case ConnectFailure::NoFailure:
            return "no failure";
        case ConnectFailure::WarningIncompatibleFirmware:
        case ConnectFailure::IncompatibleFirmware:
            return "the device's firmware speaks another version of the protocol";
        case ConnectFailure::IncompatibleUpdateSupported:
            return "the device's firmware speaks another version of the protocol, and can be updated over the network";
        case ConnectFailure::RemoteLock:
            return "the device is locked against remote control";
        case ConnectFailure::NoResponse:
            break;
    }
    return "no answer from a device";
}

/// A device that could not be connected.
class ConnectError : public Error {
public:
    ConnectError(const char* call, HRESULT result, ConnectFailure reason)
        : Error(call, result, ToText(reason)), reason_(reason) {}

    ConnectFailure Reason() const noexcept { return reason_; }

private:
    ConnectFailure reason_;
};

/// One connection to one device: its own calls, its features (`device.VideoProcAmp()`), its changes. Copies share the
/// connection. It ends when `Disconnect` is called, or when the last copy and everything that was made from one is
/// gone. A connection can be used only once: see `Session` for one that reconnects.
class Device : public DeviceFeatures {
public:
    /// For `Connect` and `ConnectAsync`. `isConnected` is set while the connection is up.
    Device(Pointer<IMorquilDiscovery> discovery, Pointer<IMorquilDevice> device,
           std::shared_ptr<const std::atomic<bool>> isConnected)
        : DeviceFeatures(std::move(device)), discovery_(std::move(discovery)), isConnected_(std::move(isConnected)) {}

    /// Calls `handler` when the device has reported a change in a property set. The device's confirmation of this
    /// host's own change is not reported, except for the output configuration and the panel lock.
    Subscription OnChange(PropertySet set, std::function<void(PropertySet)> handler,
                          Executor executor = RunAtOnce()) const {
        auto gate = std::make_shared<detail::Gate>(std::move(executor));
        const auto observer =
            Pointer<IMorquilPropertyObserver>::Adopt(new detail::PropertyObserver(gate, std::move(handler)));
        const auto id = static_cast<_MorquilPropertySetId>(set);
        detail::Check("Device::AddPropertyObserver", Raw()->AddPropertyObserver(observer.Get(), id),
                      detail::CallKind::Set);
        return Subscription(std::move(gate), [device = *this, observer, id] {
            device.Raw()->RemovePropertyObserver(observer.Get(), id);
        });
    }

    /// Calls the handlers when the connection is established and when it has ended.
    Subscription OnConnection(ConnectionHandlers handlers, Executor executor = RunAtOnce()) const {
        auto gate = std::make_shared<detail::Gate>(std::move(executor));
        const auto observer =
            Pointer<IMorquilConnectionObserver>::Adopt(new detail::ConnectionObserver(gate, std::move(handlers)));
        detail::Check("Device::AddConnectionObserver", Raw()->AddConnectionObserver(observer.Get()),
                      detail::CallKind::Set);
        return SubscriptionOf(std::move(gate), observer);
    }

    /// Ends the connection.
    /// Threads: any, also inside a handler.
    void Disconnect() const { discovery_->Disconnect(Raw()); }

    /// Saves the device's settings in a file. The file is replaced as a whole, and only if the device is connected and
    /// its complete state is known from the beginning of the call to its end.
    /// Throws: NotKnown if the state is not, or no longer, known; Error if the file could not be written. In both cases
    /// an existing file is unchanged.
    void SaveSettingsFile(std::string_view path) const {
        CheckStateIsComplete();
        detail::SafeFile file(path);
        const HRESULT result = Raw()->SaveSettingsFile(detail::TextIn(file.Name()));
        detail::Check("Device::SaveSettingsFile", result, detail::CallKind::Set);
        // A connection that ends clears the state before it reports anything else: what is known now was saved.
        CheckStateIsComplete();
        if (result == S_OK || !file.Keep()) {
            throw Error("Device::SaveSettingsFile", E_FAIL, "\"" + std::string(path) + "\" cannot be written");
        }
    }

    /// Queues the settings of a file. Missing settings and an unreadable file are not reported.
    void LoadSettingsFile(std::string_view path) const {
        detail::Check("Device::LoadSettingsFile", Raw()->LoadSettingsFile(detail::TextIn(path)), detail::CallKind::Set);
    }

private:
    friend struct Connecting ConnectAsync(std::string_view, ConnectionHandlers, Executor);

    Subscription SubscriptionOf(std::shared_ptr<detail::Gate> gate,
                                Pointer<IMorquilConnectionObserver> observer) const {
        return Subscription(std::move(gate), [device = *this, observer = std::move(observer)] {
            device.Raw()->RemoveConnectionObserver(observer.Get());
        });
    }

    /// While a device is connected, at least one of the values that every device reports is known.
    void CheckStateIsComplete() const {
        detail::Out<BSTR> name;
        detail::Out<UINT> version;
        detail::Out<LONG> lock;
        const bool isKnown = Raw()->GetDeviceName(detail::Receive(name)) == S_OK ||
                             Raw()->GetSoftwareVersion(detail::Receive(version)) == S_OK ||
                             Raw()->GetPanelLock(detail::Receive(lock)) == S_OK;
        if (!*isConnected_ || !isKnown) {
            throw NotKnown("Device::SaveSettingsFile", E_FAIL,
                           "the device is not connected, or has not reported its complete state");
        }
    }

    Pointer<IMorquilDiscovery> discovery_;
    std::shared_ptr<const std::atomic<bool>> isConnected_;
};

/// Connects and waits until the device's complete state has arrived, at most two minutes. `address` is a host name or a
/// numeric address.
/// Throws: `ConnectError` with the reason.
inline Device Connect(std::string_view address) {
    Pointer<IMorquilDiscovery> discovery = detail::GetDiscovery();
    IMorquilDevice* device = nullptr;
    auto reason = static_cast<_MorquilConnectToFailure>(ConnectFailure::NoResponse);
    const HRESULT result = discovery->Connect(detail::TextIn(address), &device, &reason);
    if (result == E_FAIL) {
        throw ConnectError("Discovery::Connect", result, static_cast<ConnectFailure>(reason));
    }
    detail::Check("Discovery::Connect", result, detail::CallKind::Set);
    return Device(std::move(discovery), Pointer<IMorquilDevice>::Adopt(device),
                  std::make_shared<const std::atomic<bool>>(true));
}

/// A device that is being connected, and the subscription of the handlers.
struct Connecting {
    Device device;
    Subscription events;
};

/// Connects in the background. The handlers may be called before this function returns. To save the device's settings
/// later, keep `events` until the device is connected: without it `SaveSettingsFile` cannot know that it is.
inline Connecting ConnectAsync(std::string_view address, ConnectionHandlers handlers, Executor executor = RunAtOnce()) {
    Pointer<IMorquilDiscovery> discovery = detail::GetDiscovery();
    auto gate = std::make_shared<detail::Gate>(std::move(executor));
    const auto isConnected = std::make_shared<std::atomic<bool>>(false);
    const auto observer = Pointer<IMorquilConnectionObserver>::Adopt(
        new detail::ConnectionObserver(gate, std::move(handlers), isConnected));
    IMorquilDevice* raw = nullptr;
    detail::Check("Discovery::ConnectAsync", discovery->ConnectAsync(detail::TextIn(address), &raw, observer.Get()),
                  detail::CallKind::Set);
    Device device(std::move(discovery), Pointer<IMorquilDevice>::Adopt(raw), isConnected);
    Subscription events = device.SubscriptionOf(std::move(gate), observer);
    return {std::move(device), std::move(events)};
}

}  // namespace morquil
