#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "transport/abstract_comms.h"
#include "transport/deadline.h"
#include "transport/pending_events.h"
#include "transport/read_ahead.h"
#include "transport/signals.h"
#include "transport/windows_handle.h"

namespace Morquil {

/// The transport on Windows Sockets 2.
class WSAComms final : public AbstractComms {
public:
    ~WSAComms() override;

    bool Initialise() override;
    bool Open(const std::string& host, std::uint32_t port, bool nonBlocking) override;
    bool WaitForConnect(std::int32_t timeoutMs) override;
    bool Attach(SocketHandle socket, bool nonBlocking) override;
    void Close() override;
    std::uint32_t SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) override;
    CommsEvent WaitForEvent() override;
    int Receive(char* buffer, int length, int flags) override;
    int Send(const char* data, int length, int flags) override;
    bool Signal(int which) override;
    void WaitUntilWritable() override;

private:
    void Arm(SOCKET socket);
    bool CreateEvents();
    bool Connect(SOCKET socket, const sockaddr_in& address);
    void Wait(const Deadline& deadline);
    bool TakeSignal();
    bool Signal(CommsSignal which, const WindowsHandle& event);
    std::optional<long> TakeNetworkEvents();
    SocketState EnumerateSocket();

    SOCKET socket_ = INVALID_SOCKET;
    bool started_ = false;
    bool isConnected_ = false;  // the connection is known to be up; the system reports that only once
    std::uint32_t waitTimeoutMs_ = 0;
    Signals signals_;
    // Each wakes a wait for its signal.
    WindowsHandle stopEvent_;
    WindowsHandle sendEvent_;
    WindowsHandle userEvent_;
    WindowsHandle networkEvent_;
    std::array<HANDLE, 4> waitHandles_{};  // stop, send, user, network: in order of priority
    DWORD waitCount_ = 0;
    PendingEvents pending_;
    long collected_ = 0;  // network events that were found while waiting to send
    ReadAhead readAhead_;
    bool endPending_ = false;  // the connection has ended, but bytes that were read ahead are reported first
};

}  // namespace Morquil
