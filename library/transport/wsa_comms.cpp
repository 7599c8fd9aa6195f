#include "transport/wsa_comms.h"

#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "transport/connect_rules.h"
#include "transport/make_comms.h"

namespace Morquil {
namespace {

constexpr long watchedEvents = FD_READ | FD_WRITE | FD_CLOSE;
constexpr DWORD allHandles = 4;
constexpr DWORD allButSocket = 3;

// The first IPv4 address of `host`.
bool Resolve(const std::string& host, std::uint32_t port, sockaddr_in& address) {
    const hostent* const found = gethostbyname(host.c_str());
    if (found == nullptr || found->h_addrtype != AF_INET || found->h_addr_list[0] == nullptr) {
        return false;
    }
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    std::memcpy(&address.sin_addr, found->h_addr_list[0], sizeof(address.sin_addr));
    return true;
}

// Without this, small blocks wait for the acknowledgement of the block before them.
void SendAtOnce(SOCKET socket) {
    constexpr BOOL on = TRUE;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof(on));
}

// Begins to connect. Returns: false when the attempt fails at once.
bool BeginConnect(SOCKET socket, const sockaddr_in& address) {
    return connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 ||
           WSAGetLastError() == WSAEWOULDBLOCK;
}

bool HasPeer(SOCKET socket) {
    sockaddr_storage peer{};
    int size = sizeof(peer);
    return getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &size) == 0;
}

// Whether `connectEvent`, selected for FD_CONNECT, reports that the attempt has succeeded.
bool HasConnected(SOCKET socket, HANDLE connectEvent) {
    WSANETWORKEVENTS found{};
    return WSAEnumNetworkEvents(socket, connectEvent, &found) == 0 && (found.lNetworkEvents & FD_CONNECT) != 0 &&
           found.iErrorCode[FD_CONNECT_BIT] == 0;
}

int ResultOf(int result) {
    if (result != SOCKET_ERROR) {
        return result;
    }
    return WSAGetLastError() == WSAEWOULDBLOCK ? commsWouldBlock : commsFailed;
}

}  // namespace

WSAComms::~WSAComms() {
    if (started_) {
        WSACleanup();
    }
}

bool WSAComms::Initialise() {
    WSADATA data;
    started_ = started_ || WSAStartup(MAKEWORD(2, 2), &data) == 0;
    return started_ && CreateEvents();
}

bool WSAComms::CreateEvents() {
    networkEvent_ = WindowsHandle(CreateEventA(nullptr, FALSE, FALSE, nullptr));
    stopEvent_ = WindowsHandle(CreateEventA(nullptr, FALSE, FALSE, nullptr));
    sendEvent_ = WindowsHandle(CreateEventA(nullptr, FALSE, FALSE, nullptr));
    userEvent_ = WindowsHandle(CreateEventA(nullptr, FALSE, FALSE, nullptr));
    waitHandles_ = {stopEvent_.Get(), sendEvent_.Get(), userEvent_.Get(), networkEvent_.Get()};
    return networkEvent_.IsOpen() && stopEvent_.IsOpen() && sendEvent_.IsOpen() && userEvent_.IsOpen();
}

bool WSAComms::Open(const std::string& host, std::uint32_t port, bool nonBlocking) {
    sockaddr_in address{};
    if (!IsConnectable(host, port) || !Resolve(host, port, address)) {
        return false;
    }
    // Child processes must not inherit the socket: they would keep the connection open.
    constexpr DWORD flags = WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT;
    WindowsSocket attempt(WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, flags));
    if (!attempt.IsOpen()) {
        return false;
    }
    u_long on = 1;
    const bool begun = nonBlocking ? ioctlsocket(attempt.Get(), static_cast<long>(FIONBIO), &on) == 0 &&
                                         BeginConnect(attempt.Get(), address)
                                   : Connect(attempt.Get(), address);
    if (!begun) {
        return false;
    }
    readAhead_.Enable(true);
    Arm(attempt.Detach());
    isConnected_ = !nonBlocking;
    return true;
}

// Connects and waits for the connection or for a stop, which takes precedence. A plain blocking connect could take
// minutes and could not be ended.
bool WSAComms::Connect(SOCKET socket, const sockaddr_in& address) {
    const WindowsHandle connectEvent(WSACreateEvent());
    if (!connectEvent.IsOpen() || WSAEventSelect(socket, connectEvent.Get(), FD_CONNECT) != 0 ||
        !BeginConnect(socket, address)) {
        return false;
    }
    const Deadline deadline(connectLimitMs);
    const Signals::Wait wait(signals_);
    const std::array<HANDLE, 2> handles{stopEvent_.Get(), connectEvent.Get()};
    while (!signals_.Take(signalStop)) {
        const DWORD result = WSAWaitForMultipleEvents(2, handles.data(), FALSE, deadline.RemainingMs(), FALSE);
        if (result != WSA_WAIT_EVENT_0) {
            return result == WSA_WAIT_EVENT_0 + 1 && HasConnected(socket, connectEvent.Get());
        }
    }
    return false;
}

bool WSAComms::WaitForConnect(std::int32_t timeoutMs) {
    isConnected_ = isConnected_ || HasPeer(socket_);
    if (!isConnected_) {
        const WindowsHandle connectEvent(WSACreateEvent());
        const DWORD limit = timeoutMs < 0 ? WSA_INFINITE : static_cast<DWORD>(timeoutMs);
        const HANDLE handle = connectEvent.Get();
        isConnected_ = connectEvent.IsOpen() && WSAEventSelect(socket_, handle, FD_CONNECT) == 0 &&
                       WSAWaitForMultipleEvents(1, &handle, FALSE, limit, FALSE) == WSA_WAIT_EVENT_0 &&
                       HasConnected(socket_, handle);
    }
    Arm(socket_);
    return isConnected_;
}

bool WSAComms::Attach(SocketHandle socket, bool nonBlocking) {
    const auto attached = static_cast<SOCKET>(socket);
    if (nonBlocking) {
        u_long on = 1;
        ioctlsocket(attached, static_cast<long>(FIONBIO), &on);
    }
    isConnected_ = false;
    readAhead_.Enable(false);
    Arm(attached);
    return true;
}

// From here on every state of the socket is reported again. Selecting events also makes the socket non-blocking.
void WSAComms::Arm(SOCKET socket) {
    if (socket != socket_) {
        endPending_ = false;
        readAhead_.Clear();
    }
    socket_ = socket;
    pending_.Clear();
    collected_ = 0;
    readAhead_.ReportAgain();
    SendAtOnce(socket);
    WSAEventSelect(socket, networkEvent_.Get(), watchedEvents);
}

void WSAComms::Close() {
    const WindowsSocket closes(socket_);
    socket_ = INVALID_SOCKET;
    isConnected_ = false;
    endPending_ = false;
    collected_ = 0;
    readAhead_.Clear();
}

std::uint32_t WSAComms::SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) {
    waitCount_ = includeSocket ? allHandles : allButSocket;
    waitTimeoutMs_ = includeSocket ? timeoutMs : idleTimeoutMs;
    return waitTimeoutMs_;
}

CommsEvent WSAComms::WaitForEvent() {
    const Deadline deadline(waitTimeoutMs_);
    while (pending_.IsEmpty()) {
        Wait(deadline);
    }
    return pending_.TakeOldest();
}

// Queues a signal, or waits once and queues the events that it finds, which may be none. A failed wait counts as one
// that found nothing, but cannot outlast the time-out.
void WSAComms::Wait(const Deadline& deadline) {
    const Signals::Wait wait(signals_);
    if (TakeSignal()) {
        return;
    }
    const bool endIsDue = endPending_ && readAhead_.IsEmpty();
    const bool isDue = waitCount_ == allHandles && (readAhead_.HasUnreported() || endIsDue || collected_ != 0);
    const DWORD remaining = isDue ? 0 : deadline.RemainingMs();
    const DWORD result = WSAWaitForMultipleEvents(waitCount_, waitHandles_.data(), FALSE, remaining, FALSE);
    if (result < WSA_WAIT_EVENT_0 + allButSocket) {
        TakeSignal();
    } else if (isDue || result == WSA_WAIT_EVENT_0 + allButSocket) {
        pending_.AddSocket(EnumerateSocket());
    } else if (result == WSA_WAIT_TIMEOUT || remaining == 0) {
        pending_.AddOne(CommsEvent::Timeout);
    }
}

bool WSAComms::TakeSignal() {
    const std::optional<CommsEvent> signal = signals_.TakeFirst();
    if (signal) {
        pending_.AddOne(*signal);
    }
    return signal.has_value();
}

// The system reports each event once. The wait has already reset the event object. Returns: no value when the system
// cannot report.
std::optional<long> WSAComms::TakeNetworkEvents() {
    WSANETWORKEVENTS found{};
    if (WSAEnumNetworkEvents(socket_, nullptr, &found) != 0) {
        return std::nullopt;
    }
    return found.lNetworkEvents;
}

SocketState WSAComms::EnumerateSocket() {
    SocketState state;
    const std::optional<long> events = TakeNetworkEvents();
    const long found = events.value_or(0) | std::exchange(collected_, 0);
    const bool failed = !events.has_value();
    const bool more = (found & FD_READ) != 0;
    const bool ended = endPending_ || (found & FD_CLOSE) != 0;
    // The system reports the end once, when it has no more bytes. Bytes that were read ahead are reported before it.
    endPending_ = ended && !more && !readAhead_.IsEmpty();
    state.readable = more || readAhead_.HasUnreported();
    state.writable = (found & FD_WRITE) != 0;
    state.gone = failed || (ended && !endPending_);
    readAhead_.MarkReported(more);
    return state;
}

int WSAComms::Receive(char* buffer, int length, int flags) {
    if (length < 0) {
        return commsFailed;
    }
    return readAhead_.Take(buffer, length, flags, (flags & MSG_PEEK) != 0,
                           [this](char* into, int room, int way) { return ResultOf(recv(socket_, into, room, way)); });
}

int WSAComms::Send(const char* data, int length, int flags) {
    return length < 0 ? commsFailed : ResultOf(send(socket_, data, length, flags));
}

bool WSAComms::Signal(int which) {
    switch (which) {
        case signalSend:
            return Signal(signalSend, sendEvent_);
        case signalStop:
            return Signal(signalStop, stopEvent_);
        case signalUser:
            return Signal(signalUser, userEvent_);
        default:
            return false;
    }
}

bool WSAComms::Signal(CommsSignal which, const WindowsHandle& event) {
    return event.IsOpen() && (!signals_.Raise(which) || SetEvent(event.Get()) != 0);
}

// A wake-up for another signal stays pending. Events of the socket are collected for the next wait.
void WSAComms::WaitUntilWritable() {
    const Signals::Wait wait(signals_);
    const std::array<HANDLE, 2> handles{stopEvent_.Get(), networkEvent_.Get()};
    while (!signals_.Has(signalStop)) {
        const DWORD result = WSAWaitForMultipleEvents(2, handles.data(), FALSE, WSA_INFINITE, FALSE);
        if (result == WSA_WAIT_EVENT_0) {
            continue;
        }
        const std::optional<long> events = TakeNetworkEvents();
        collected_ |= events.value_or(0);
        if (result == WSA_WAIT_FAILED || !events || (*events & (FD_WRITE | FD_CLOSE)) != 0) {
            return;
        }
    }
}

std::unique_ptr<AbstractComms> MakeComms() {
    return std::make_unique<WSAComms>();
}

}  // namespace Morquil
