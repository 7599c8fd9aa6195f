// Observers as lambdas.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

#include "MorquilAPI.h"
#include "morquil/call.hpp"
#include "morquil/interfaces.hpp"

namespace morquil {

/// Runs a handler: at once, on the host's event loop, or on a thread of the host's choice. Called on the library's
/// threads.
using Executor = std::function<void(std::function<void()>)>;

/// Handlers run at once, on the thread that reports the event, usually the connection's own. They may call anything,
/// but should return quickly: they hold up the connection.
inline Executor RunAtOnce() {
    return [](const std::function<void()>& handler) { handler(); };
}

/// What a host wants to know about a connection. An empty handler is not called. A handler that throws ends the
/// program, as a thread's function does.
struct ConnectionHandlers {
    std::function<void()> connected = {};
    std::function<void(ConnectFailure)> disconnected = {};
};

/// A block that the device has reported, whether or not a value has changed.
struct Report {
    PropertySet set;
    ReportKind kind;
    /// `Echo`: the report repeats exactly what this host has sent.
    ReportOrigin origin;
};

namespace detail {

/// Lets handlers start until it is closed.
class Gate {
public:
    explicit Gate(Executor executor) : executor_(std::move(executor)) {}

    void Close() { open_ = false; }

    /// Hands `handler` to the executor; it does not start once the gate is closed.
    template <class Handler>
    static void Pass(const std::shared_ptr<Gate>& gate, Handler handler) {
        if (gate->open_) {
            gate->executor_([gate, handler = std::move(handler)] {
                if (gate->open_) {
                    handler();
                }
            });
        }
    }

private:
    Executor executor_;
    std::atomic<bool> open_{true};
};

/// Marks, until its end, that the calling thread is the library's, which waits for a callback to return.
class CallbackScope {
public:
    CallbackScope() { ++Depth(); }
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;
    ~CallbackScope() { --Depth(); }

    static bool IsInside() { return Depth() != 0; }

private:
    static int& Depth() {
        thread_local int depth = 0;
        return depth;
    }
};

// COM gives interfaces no virtual destructor: it would take a slot.
#if defined(__GNUC__) || defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// The reference counting of an object that the host implements. Starts with one reference.
template <class RawInterface>
class HostObject : public RawInterface {
public:
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        const bool known =
            IsEqualIID(iid, Identifier<IUnknown>::value) || IsEqualIID(iid, Identifier<RawInterface>::value);
        *object = known ? static_cast<RawInterface*>(this) : nullptr;
        if (known) {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

protected:
    HostObject() = default;
    virtual ~HostObject() = default;

private:
    std::atomic<ULONG> references_{1};
};

#if defined(__GNUC__) || defined(__clang__)
#pragma GCC diagnostic pop
#endif

class PropertyObserver final : public HostObject<IMorquilPropertyObserver> {
public:
    PropertyObserver(std::shared_ptr<Gate> gate, std::function<void(PropertySet)> handler)
        : gate_(std::move(gate)), handler_(std::make_shared<std::function<void(PropertySet)>>(std::move(handler))) {}

    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) noexcept override {
        const CallbackScope scope;
        Gate::Pass(gate_, [handler = handler_, id] { (*handler)(static_cast<PropertySet>(id)); });
        return S_OK;
    }

private:
    const std::shared_ptr<Gate> gate_;
    const std::shared_ptr<std::function<void(PropertySet)>> handler_;
};

class ReportObserver final : public HostObject<IMorquilReportObserver> {
public:
    ReportObserver(std::shared_ptr<Gate> gate, std::function<void(const Report&)> handler)
        : gate_(std::move(gate)), handler_(std::make_shared<std::function<void(const Report&)>>(std::move(handler))) {}

    STDMETHODIMP BlockReported(_MorquilPropertySetId set, _MorquilReportKind kind,
                               _MorquilReportOrigin origin) noexcept override {
        const CallbackScope scope;
        const Report report{static_cast<PropertySet>(set), static_cast<ReportKind>(kind),
                            static_cast<ReportOrigin>(origin)};
        Gate::Pass(gate_, [handler = handler_, report] { (*handler)(report); });
        return S_OK;
    }

private:
    const std::shared_ptr<Gate> gate_;
    const std::shared_ptr<std::function<void(const Report&)>> handler_;
};

class ConnectionObserver final : public HostObject<IMorquilConnectionObserver> {
public:
    /// `isConnected` is kept up to date even when no handler is called.
    ConnectionObserver(std::shared_ptr<Gate> gate, ConnectionHandlers handlers,
                       std::shared_ptr<std::atomic<bool>> isConnected = std::make_shared<std::atomic<bool>>(false))
        : gate_(std::move(gate)),
          handlers_(std::make_shared<ConnectionHandlers>(std::move(handlers))),
          isConnected_(std::move(isConnected)) {}

    STDMETHODIMP Connected() noexcept override {
        *isConnected_ = true;
        if (handlers_->connected) {
            Gate::Pass(gate_, [handlers = handlers_] { handlers->connected(); });
        }
        return S_OK;
    }
    STDMETHODIMP Disconnected(_MorquilConnectToFailure reason) noexcept override {
        const CallbackScope scope;
        *isConnected_ = false;
        if (handlers_->disconnected) {
            Gate::Pass(gate_,
                       [handlers = handlers_, reason] { handlers->disconnected(static_cast<ConnectFailure>(reason)); });
        }
        return S_OK;
    }

private:
    const std::shared_ptr<Gate> gate_;
    const std::shared_ptr<ConnectionHandlers> handlers_;
    const std::shared_ptr<std::atomic<bool>> isConnected_;
};

}  // namespace detail

/// Handlers are called as long as this object lives. Once it is destroyed no handler starts; a handler that is running
/// on another thread is not waited for.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    Subscription(std::shared_ptr<detail::Gate> gate, std::function<void()> remove)
        : gate_(std::move(gate)), remove_(std::move(remove)) {}
    Subscription(Subscription&& other) noexcept
        : gate_(std::move(other.gate_)), remove_(std::exchange(other.remove_, {})) {}
    Subscription& operator=(Subscription&& other) noexcept {
        std::swap(gate_, other.gate_);
        std::swap(remove_, other.remove_);
        return *this;
    }
    ~Subscription() { Cancel(); }

    /// Ends the subscription early.
    void Cancel() {
        if (gate_) {
            gate_->Close();
            gate_.reset();
            std::exchange(remove_, {})();
        }
    }

private:
    std::shared_ptr<detail::Gate> gate_;
    std::function<void()> remove_;
};

}  // namespace morquil
