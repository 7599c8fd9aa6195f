// How a device object connects and disconnects.
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "core/lock.h"
#include "core/thread.h"
#include "device/device.h"
#include "platform/text.h"
#include "transport/console.h"

using namespace Morquil;
using QRN::Core::CurrentThreadId;
using QRN::Core::Lock;

namespace {

constexpr std::uint32_t devicePort = 9800;

}  // namespace

HRESULT CMorquilDevice::Connect(BSTR address, IMorquilConnectionObserver* observer,
                                _MorquilConnectToFailure* failReason) {
    if (failReason == nullptr) {
        return E_INVALIDARG;
    }
    {
        Lock lock(stateLock_);
        state_ = ConnectionState::Connecting;
    }
    if (!SetAddress(address)) {
        *failReason = connectFailReason_;
        return E_FAIL;
    }
    if (observer != nullptr) {
        *failReason = morquilConnectToFailureNoFailure;
        return ConnectAsynchronously(observer);
    }
    AddRef();
    const HRESULT result = WaitForConnection();
    *failReason = connectFailReason_;
    Release();
    return result;
}

bool CMorquilDevice::SetAddress(BSTR address) {
    try {
        std::string host = Utf8FromBstr(address);
        // A resolver reads up to the first zero byte, so no more than that is printed.
        Print("Connecting to " + host.substr(0, host.find('\0')) + '\n');
        return SetServer(std::move(host), devicePort);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

HRESULT CMorquilDevice::ConnectAsynchronously(IMorquilConnectionObserver* observer) {
    // A host that cannot be notified of the outcome would wait for it forever.
    if (FAILED(AddConnectionObserver(observer))) {
        return E_FAIL;
    }
    AddRef();  // the attempt's own reference, taken before its thread can release it
    QRN::Core::ThreadHandle timerThread;
    if (QRN::Core::StartThread(timerThread, &ConnectionTimerMain, this) != 0) {
        Print("Error creating connection timer thread!\n");
        Stop();
        ClearMirror();
        Release();
        return E_FAIL;
    }
    // No one waits for this thread; its reference keeps the object alive.
    QRN::Core::JoinThread(timerThread, nullptr, CurrentThreadId());
    return S_FALSE;
}

std::uint32_t CMorquilDevice::ConnectionTimerMain(void* device) {
    auto* const self = static_cast<CMorquilDevice*>(device);
    self->WaitForConnection();
    self->Release();
    return 0;
}

/// The caller holds a reference for the whole wait.
HRESULT CMorquilDevice::WaitForConnection() {
    if (!Start()) {
        Disconnect();
        return E_FAIL;
    }
    bool timedOut = false;
    connectEvent_.Wait(initialStateWait_, timedOut);
    return ConcludeConnecting();
}

/// Moves from Connecting to Connected, or ends the attempt. An attempt that another call has ended meanwhile is not a
/// failure, unless the device is unusable.
HRESULT CMorquilDevice::ConcludeConnecting() {
    std::optional<ConnectionRound> connectedRound;
    {
        Lock lock(stateLock_);
        const bool isUsable = connectFailReason_ == morquilConnectToFailureNoResponse;
        if (state_ != ConnectionState::Connecting) {
            return isUsable ? S_OK : E_FAIL;
        }
        if (isUsable && initialStateReceived_) {
            state_ = ConnectionState::Connected;
            // Begun under the lock, so that an immediate loss is reported after it.
            connectedRound.emplace(connectionObservers_);
        }
    }
    if (!connectedRound) {
        Disconnect();
        return E_FAIL;
    }
    Print("connected\n");
    connectedRound->CallEach([](IMorquilConnectionObserver& observer) { observer.Connected(); });
    return S_OK;
}

HRESULT CMorquilDevice::Disconnect() {
    const Hold hold(*this);
    bool wasConnecting = false;
    {
        Lock lock(stateLock_);
        if (state_ == ConnectionState::Disconnected || state_ == ConnectionState::Disconnecting) {
            return S_OK;
        }
        wasConnecting = state_ == ConnectionState::Connecting;
        state_ = ConnectionState::Disconnecting;
    }
    if (wasConnecting) {
        connectEvent_.Set();
    }
    settingsLoader_.Stop();
    SilenceProperties();
    Stop();
    // On the connection thread itself, or when waiting for it would be a deadlock, it has not ended yet.
    MessageReceipts().OnLost();
    ClearMirror();
    {
        ConnectionRound round(connectionObservers_);
        round.CallEach([this](IMorquilConnectionObserver& observer) { observer.Disconnected(connectFailReason_); });
    }
    Lock lock(stateLock_);
    state_ = ConnectionState::Disconnected;
    return S_OK;
}

/// From here on no property observer is called. Inside a callback more calls may be pending: the rest of the current
/// round, and those for bytes already received.
void CMorquilDevice::SilenceProperties() {
    StopListening();
    Silence();
    delivery_.Silence();
    for (const auto& feature : features_.All()) {
        feature->Silence();
    }
}

void CMorquilDevice::OnThreadStarting() {
    TakeHold();
    MessageReceipts().OnConnected();
}

void CMorquilDevice::OnConnectionChanged(bool connected) {
    if (!connected) {
        MessageReceipts().OnLost();
        Disconnect();
    }
}

void CMorquilDevice::ClearMirror() {
    initialStateReceived_ = false;
    Lock wholeMirror(wholeMirrorLock_);
    {
        Lock lock(mirrorLock_);
        Clear(deviceCache_);
        Clear(conversionsCache_);
        deviceReceived_ = conversionsReceived_ = false;
    }
    for (const auto& feature : features_.All()) {
        feature->ClearCache();
    }
}

/// Ends the wait for the initial state with a failure.
void CMorquilDevice::FailConnecting(_MorquilConnectToFailure reason) {
    connectFailReason_ = reason;
    connectEvent_.Set();
}

void CMorquilDevice::CheckInitialState() {
    if (!initialStateReceived_ && IsInitialStateComplete()) {
        initialStateReceived_ = true;
        connectEvent_.Set();
    }
}

/// First checks the feature that was incomplete last time: it usually still is, and this runs after every block.
bool CMorquilDevice::IsInitialStateComplete() {
    const FeatureList::Objects features = features_.HandedOut();
    if (!features[missingFeature_]->IsCacheComplete()) {
        return false;
    }
    {
        Lock lock(mirrorLock_);
        if (!deviceReceived_ || !conversionsReceived_) {
            return false;
        }
    }
    for (std::size_t place = 0; place < features.size(); ++place) {
        if (!features[place]->IsCacheComplete()) {
            missingFeature_ = place;
            return false;
        }
    }
    return true;
}
