#pragma once

#include <poll.h>

#include <cstdint>
#include <string>

#include "transport/abstract_comms.h"
#include "transport/deadline.h"
#include "transport/file_descriptor.h"
#include "transport/pending_events.h"
#include "transport/read_ahead.h"
#include "transport/signals.h"
#include "transport/wake_up.h"

namespace Morquil {

/// The transport on poll and eventfd.
class PollComms final : public AbstractComms {
public:
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
    void Arm(int socket);
    bool AwaitConnection(int socket);
    void Poll(const Deadline& deadline);
    bool TakeSignal();
    bool HasUnread() const;
    bool IsSocketEventDue() const;
    short WatchedEvents() const;
    SocketState Translate(short reported);

    int socket_ = -1;
    bool isConnected_ = false;  // the connection is known to be up
    bool hasEnded_ = false;     // poll has reported the end, which is passed on once all bytes have been received
    std::uint32_t waitTimeoutMs_ = 0;
    bool includeSocket_ = false;
    Signals signals_;
    WakeUp wakeUp_;  // wakes a wait for a signal
    PendingEvents pending_;
    ReadAhead readAhead_;

    // poll reports a state as long as it lasts, but the client relies on being notified of each change once. These
    // flags say what may still be reported.
    bool reportReadable_ = false;
    bool reportWritable_ = false;
    bool reportGone_ = false;
};

}  // namespace Morquil
