// How a device object connects and disconnects.
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "core/lock.h"
#include "core/thread.h"
#include "device/device.h"
#include "device/incoming_blocks.h"
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
        // What a resolver reads ends at a zero byte; what is printed does, too.
        Print("Connecting to " + host.substr(0, host.find('\0')) + '\n');
        return SetServer(std::move(host), devicePort);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

HRESULT CMorquilDevice::ConnectAsynchronously(IMorquilConnectionObserver* observer) {
    // A host that cannot be told of the outcome would wait for it for ever.
    if (FAILED(AddConnectionObserver(observer))) {
        return E_FAIL;
    }
    AddRef();  // the attempt's own, before its thread can give it back
    QRN::Core::ThreadHandle timerThread;
    if (QRN::Core::StartThread(timerThread, &ConnectionTimerMain, this) != 0) {
        Print("Error creating connection timer thread!\n");
        Stop();
        ClearMirror();
        Release();
        return E_FAIL;
    }
    // Nobody waits for this thread: its reference keeps what it works on.
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

/// Turns Connecting into Connected, or ends the attempt. When somebody else has ended it meanwhile that is no failure,
/// unless the device is one that cannot be used.
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
            // Begun here, so that a loss that follows at once is told after it.
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
    ClearMirror();
    {
        ConnectionRound round(connectionObservers_);
        round.CallEach([this](IMorquilConnectionObserver& observer) { observer.Disconnected(connectFailReason_); });
    }
    Lock lock(stateLock_);
    state_ = ConnectionState::Disconnected;
    return S_OK;
}

/// Where this runs inside a callback others may be about to come, of the round at hand and of bytes that have been
/// received: from here on none does.
void CMorquilDevice::SilenceProperties() {
    StopListening();
    Silence();
    ForEachFeature([](FeatureBase& feature) { feature.Silence(); });
}

void CMorquilDevice::OnConnectionChanged(bool connected) {
    if (!connected) {
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
    ForEachFeature([](FeatureBase& feature) { feature.ClearCache(); });
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

/// Looks at the feature first that was missing last: it mostly still is, and this is asked after every block.
bool CMorquilDevice::IsInitialStateComplete() {
    if (!handedOut_[missingFeature_]->IsCacheComplete()) {
        return false;
    }
    {
        Lock lock(mirrorLock_);
        if (!deviceReceived_ || !conversionsReceived_) {
            return false;
        }
    }
    for (std::size_t place = 0; place < handedOut_.size(); ++place) {
        if (!handedOut_[place]->IsCacheComplete()) {
            missingFeature_ = place;
            return false;
        }
    }
    return true;
}
