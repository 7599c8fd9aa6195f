// Connecting to a device, and the device.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "morquil/call.hpp"
#include "morquil/interfaces.hpp"
#include "morquil/library.hpp"
#include "morquil/observers.hpp"
#include "morquil/receipts.hpp"
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

class Property;
struct PropertyChange;

/// One connection to one device: its own calls, its features (`device.VideoProcAmp()`), its changes. Copies share the
/// connection. It ends when `Disconnect` is called, or when the last copy and everything that was made from one is
/// gone. A connection can be used only once: see `Session` for one that reconnects.
class Device : public DeviceFeatures {
public:
    /// For `Connect` and `ConnectAsync`. `isConnected` is set while the connection is up.
    Device(Pointer<IMorquilDiscovery> discovery, Pointer<IMorquilDevice> device,
           std::shared_ptr<const std::atomic<bool>> isConnected)
        : DeviceFeatures(std::move(device)), discovery_(std::move(discovery)), isConnected_(std::move(isConnected)) {}

    /// The property `name`, such as "output.video-mode"; letters may differ in case.
    /// Throws: NoSuchProperty.
    template <class Text>
    Property operator[](const Text& name) const;

    /// The properties that `pattern` means: a name, the part of names before a point ("proc-amp"), or a name with * and
    /// ? in it; none if nothing matches.
    template <class Text = std::string_view>
    std::vector<Property> Properties(const Text& pattern = "*") const;

    /// Calls `handler` for every property that `pattern` means and that has another value than before, with its old and
    /// its new value. Changes of this host are included, once the device has confirmed them.
    /// Throws: NoSuchProperty if `pattern` means no property.
    template <class Text>
    Subscription OnPropertyChange(const Text& pattern, std::function<void(const PropertyChange&)> handler,
                                  Executor executor = RunAtOnce()) const;

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

    /// Calls `handler` for every block that the device has reported, this host's own changes included, whether or not a
    /// value has changed. A block that several property sets share is reported once for each.
    Subscription OnReport(std::function<void(const Report&)> handler, Executor executor = RunAtOnce()) const {
        auto gate = std::make_shared<detail::Gate>(std::move(executor));
        const auto observer =
            Pointer<IMorquilReportObserver>::Adopt(new detail::ReportObserver(gate, std::move(handler)));
        const auto delivery = detail::AskForDelivery<IMorquilDelivery>(Raw(), "Device::OnReport");
        detail::Check("Device::OnReport", delivery->AddReportObserver(observer.Get()), detail::CallKind::Set);
        return Subscription(std::move(gate), [delivery, observer] { delivery->RemoveReportObserver(observer.Get()); });
    }

    /// Runs `function`, which sets values, and waits until the device has confirmed or refused what the calling thread
    /// has set in it. When this returns, getters answer what the device reports now; after `Adjusted` that is what it
    /// made of the change. The library notices within 9 seconds that a device has vanished, so with the default limit
    /// that is `Lost`, not `TimedOut`. What comes after the limit changes the mirror, and nothing else.
    ///
    /// Without a connection the outcome is `Lost`, and `function` is not called. What `function` throws is thrown here;
    /// what it has set before is still sent. An `InvalidArgument` is thrown by the setter whose value is not one.
    /// Threads: any but the connection's own: use `ApplyAsync` in handlers that run at once, except `connected`.
    /// Throws: WouldDeadlock in such a handler; Error if the library is too old for this, or its thread cannot be
    /// woken.
    template <class Function>
    Outcome Apply(Function&& function, std::chrono::milliseconds limit = std::chrono::seconds(10)) const {
        detail::ExpectNoCallback("Device::Apply");
        const auto promise = std::make_shared<detail::OutcomePromise>();
        std::future<Outcome> future = promise->Future();
        const auto observer = Pointer<detail::ReceiptObserver>::Adopt(
            new detail::ReceiptObserver([promise](const Outcome& outcome) { promise->Keep(outcome); }));
        detail::Receipt receipt(Raw(), observer.Get(), "Device::Apply");
        if (!receipt.IsOpen()) {
            return Outcome();
        }
        std::forward<Function>(function)();
        receipt.Mark("Device::Apply");
        return detail::AwaitOutcome(future, limit, receipt, *observer.Get());
    }

    /// Like `Apply`, without waiting: runs `function` on the calling thread, returns, and calls `handler` once with the
    /// outcome, possibly before this returns. There is no limit: a device that never confirms its changes is waited for
    /// until the connection ends. Cancelling the subscription ends the wait; the changes are not affected.
    /// Threads: any, also inside a handler.
    template <class Function>
    Subscription ApplyAsync(Function&& function, std::function<void(const Outcome&)> handler,
                            Executor executor = RunAtOnce()) const {
        auto gate = std::make_shared<detail::Gate>(std::move(executor));
        const auto shared = std::make_shared<std::function<void(const Outcome&)>>(std::move(handler));
        const auto ended = [gate, shared](const Outcome& outcome) {
            detail::Gate::Pass(gate, [shared, outcome] { (*shared)(outcome); });
        };
        const auto observer = Pointer<detail::ReceiptObserver>::Adopt(new detail::ReceiptObserver(ended));
        const auto receipt = std::make_shared<detail::Receipt>(Raw(), observer.Get(), "Device::ApplyAsync");
        Subscription subscription(std::move(gate), [receipt] { receipt->Cancel(); });
        if (!receipt->IsOpen()) {
            ended(Outcome());
            return subscription;
        }
        std::forward<Function>(function)();
        receipt->Mark("Device::ApplyAsync");
        return subscription;
    }

    /// The same with a future, which is always fulfilled: when the last copy of the device is gone, as `Lost`.
    template <class Function>
    std::future<Outcome> ApplyAsync(Function&& function) const {
        const auto promise = std::make_shared<detail::OutcomePromise>();
        std::future<Outcome> future = promise->Future();
        const auto observer = Pointer<detail::ReceiptObserver>::Adopt(
            new detail::ReceiptObserver([promise](const Outcome& outcome) { promise->Keep(outcome); }));
        detail::Receipt receipt(Raw(), observer.Get(), "Device::ApplyAsync");
        if (receipt.IsOpen()) {
            std::forward<Function>(function)();
            receipt.Mark("Device::ApplyAsync");
            receipt.LetGo();
        }
        return future;
    }

    /// For how long the device has sent nothing. One that answers is never silent for much longer than 9 seconds,
    /// because the library then asks whether it is still there; one that is silent for 18 seconds does not answer.
    /// Throws: NotKnown if it is not connected.
    std::chrono::milliseconds Silence() const {
        UINT milliseconds = 0;
        const auto delivery = detail::AskForDelivery<IMorquilDelivery>(Raw(), "Device::Silence");
        const HRESULT result = delivery->GetSilence(&milliseconds);
        if (result == E_FAIL) {
            throw NotKnown("Device::Silence", result, "the device is not connected");
        }
        detail::Check("Device::Silence", result, detail::CallKind::Get);
        return std::chrono::milliseconds(milliseconds);
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
