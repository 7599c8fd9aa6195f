#pragma once

#include <cstdint>
#include <string>

#include "transport/socket_handle.h"

namespace Morquil {

/// The events that `AbstractComms::WaitForEvent` reports.
// clang-format off
enum class CommsEvent : std::uint32_t {
    SendRequested = 0,  ///< `signalSend` was signalled
    StopRequested = 1,  ///< `signalStop` was signalled
    UserSignal    = 2,  ///< `signalUser` was signalled
    Readable      = 3,  ///< bytes may be available; reported again only after a `Receive`
    Writable      = 4,  ///< the socket accepts bytes; reported once on connecting and after a `Send` that would block
    SocketError   = 5,  ///< the connection is closed or broken and has nothing left to receive
    Timeout       = 6,  ///< nothing happened within the time-out of `SetWaitMode`
    WaitFailed    = 7,  ///< the system could not wait
};
// clang-format on

/// The wake-ups of `AbstractComms::Signal`.
enum CommsSignal : int { signalSend = 0, signalStop = 1, signalUser = 2 };

/// Results of `Send` and `Receive` below 0.
enum CommsResult : int { commsFailed = -1, commsWouldBlock = -2 };

/// One TCP connection and three wake-ups, combined in one blocking wait.
///
/// Order of use: `Initialise`; `Open` and `WaitForConnect`, or `Attach`; then waits, receives and sends; `Close`;
/// possibly `Open` again. No operation prints or throws.
/// Threads: `Signal` from any thread; everything else from one thread at a time.
/// The order of the operations is fixed: it is the order of their slots.
class AbstractComms {
public:
    AbstractComms() = default;
    /// Releases the wake-ups. A socket that is still open stays open: only `Close` ends a connection.
    virtual ~AbstractComms() = default;
    AbstractComms(const AbstractComms&) = delete;
    AbstractComms& operator=(const AbstractComms&) = delete;

    /// Creates the wake-ups. Call it once, before anything else.
    /// Returns: false when the system cannot create them.
    virtual bool Initialise() = 0;

    /// Connects to the first IPv4 address of `host` (UTF-8; a name or a dotted address). With `nonBlocking` it returns
    /// while the attempt is still in progress, and `WaitForConnect` reports the outcome. Otherwise it returns when the
    /// connection is up or refused, and at the latest 2 s after the attempt began. A `signalStop` that is pending or
    /// arrives meanwhile is consumed and ends the attempt at once.
    /// Returns: false when there is no connection, also for an empty host and for a port of 0 or above 65535. No socket
    ///          is left open in that case.
    virtual bool Open(const std::string& host, std::uint32_t port, bool nonBlocking) = 0;

    /// Waits up to `timeoutMs` milliseconds (negative: without limit) for the connection to be up. Returns at once when
    /// it is up already. On failure the socket stays open: wait again, or `Close` it.
    virtual bool WaitForConnect(std::int32_t timeoutMs) = 0;

    /// Watches a connected socket that the caller provides. The socket becomes non-blocking even if `nonBlocking` is
    /// false: a watched socket always is. Never reads more from it than the caller requests.
    /// Ownership: stays with the caller until `Close`.
    /// Returns: always true.
    virtual bool Attach(SocketHandle socket, bool nonBlocking) = 0;

    /// Ends the connection, if there is one.
    virtual void Close() = 0;

    /// Selects what the next waits wait for. With `includeSocket` false: for the wake-ups only, for 1000 ms, whatever
    /// `timeoutMs` says. A `timeoutMs` of 0xFFFFFFFF waits without limit.
    /// Returns: the time-out used.
    virtual std::uint32_t SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) = 0;

    virtual void Reserved1() {}  ///< keeps its slot
    virtual void Reserved2() {}  ///< keeps its slot

    /// Waits for the next event. When several are due it reports stop, then send, then user, then the socket. A wake-up
    /// is reported once, however often it was signalled. The end of a connection is reported after all bytes that
    /// arrived before it have been received. Exception: if Winsock reports both at once, only the end is reported.
    virtual CommsEvent WaitForEvent() = 0;

    /// Reads up to `length` bytes. `flags` are the system's.
    /// Returns: the number of bytes read; 0 when the other side has closed; `commsWouldBlock` when none is available
    ///          yet (the connection is not lost); another negative number on error.
    virtual int Receive(char* buffer, int length, int flags) = 0;

    /// Writes up to `length` bytes. `flags` are the system's.
    /// Returns: the number of bytes that the system accepted, `commsWouldBlock` when it accepts none now, or
    ///          `commsFailed`.
    virtual int Send(const char* data, int length, int flags) = 0;

    /// Wakes the wait with the reason `which` (a `CommsSignal`). A signal that arrives outside a wait stays pending.
    /// Returns: false when `which` is not a `CommsSignal` or `Initialise` has not succeeded.
    virtual bool Signal(int which) = 0;

    /// After a `Send` that would block: waits until the socket may accept bytes again, the connection breaks or
    /// `signalStop` is signalled. May return early. Events that occur meanwhile, including the stop, stay pending for
    /// `WaitForEvent`. A transport that does not override it has no such wait: the next `Send` is tried at once.
    virtual void WaitUntilWritable() {}
};

}  // namespace Morquil
