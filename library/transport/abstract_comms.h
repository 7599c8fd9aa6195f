#pragma once

#include <cstdint>
#include <string>

#include "transport/socket_handle.h"

namespace Morquil {

/// What `AbstractComms::WaitForEvent` tells.
// clang-format off
enum class CommsEvent : std::uint32_t {
    SendRequested = 0,  ///< `signalSend` was signalled
    StopRequested = 1,  ///< `signalStop` was signalled
    UserSignal    = 2,  ///< `signalUser` was signalled
    Readable      = 3,  ///< bytes may be waiting; told again only after a `Receive`
    Writable      = 4,  ///< the socket takes bytes; told once per arming and again after a `Send` that would block
    SocketError   = 5,  ///< the connection is closed or broken, and nothing is left to receive
    Timeout       = 6,  ///< nothing happened within the time-out of `SetWaitMode`
    WaitFailed    = 7,  ///< the system refused to wait
};
// clang-format on

/// The wake-ups of `AbstractComms::Signal`.
enum CommsSignal : int { signalSend = 0, signalStop = 1, signalUser = 2 };

/// Results of `Send` and `Receive` below 0.
enum CommsResult : int { commsFailed = -1, commsWouldBlock = -2 };

/// One TCP connection and three wake-ups, joined into one blocking wait.
///
/// Order of use: `Initialise`; `Open` and `WaitForConnect`, or `Attach`; then waits, receives and sends; `Close`; maybe
/// `Open` again. Nothing prints or throws.
/// Threads: `Signal` from any; everything else from one thread at a time.
/// The order of the operations is fixed: it is the order of their slots.
class AbstractComms {
public:
    AbstractComms() = default;
    /// Lets the wake-ups go. A socket that is still open stays open: it is `Close` that ends a connection.
    virtual ~AbstractComms() = default;
    AbstractComms(const AbstractComms&) = delete;
    AbstractComms& operator=(const AbstractComms&) = delete;

    /// Makes the wake-ups; once, before anything else.
    /// Returns: false when the system has none to give.
    virtual bool Initialise() = 0;

    /// Connects to the first IPv4 address of `host` (UTF-8; a name or a dotted address).
    /// With `nonBlocking` it returns while the connection is still being made: `WaitForConnect` tells how it ended.
    /// Otherwise it returns when the connection stands or is refused, but after 2 s of the attempt at the latest; a
    /// `signalStop` that comes meanwhile, or was still waiting, is used up and ends the attempt at once.
    /// Returns: false when there is no connection (also for an empty host, and for a port that is 0 or above 65535);
    ///          no socket is left over then.
    virtual bool Open(const std::string& host, std::uint32_t port, bool nonBlocking) = 0;

    /// Waits up to `timeoutMs` milliseconds (negative: without limit) for the connection to stand; at once when it does
    /// already. On failure the socket stays open, so that one can wait again: `Close` it.
    virtual bool WaitForConnect(std::int32_t timeoutMs) = 0;

    /// Takes a connected socket over and watches it from now on. It becomes non-blocking, whatever is asked for: a
    /// watched socket always is, and no more is read from it than is asked for.
    /// Ownership: stays with the caller until
    /// `Close`.
    /// Returns: always true.
    virtual bool Attach(SocketHandle socket, bool nonBlocking) = 0;

    /// Ends the connection. Harmless when there is none.
    virtual void Close() = 0;

    /// Chooses what the next waits look at. `includeSocket` false: the wake-ups only, for 1000 ms, whatever is asked
    /// for. `timeoutMs` 0xFFFFFFFF waits without limit.
    /// Returns: the time-out used.
    virtual std::uint32_t SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) = 0;

    virtual void Reserved1() {}  ///< keeps its slot
    virtual void Reserved2() {}  ///< keeps its slot

    /// Waits for the next event. Of things that happen together it tells stop, then send, then user, then the socket;
    /// each wake-up once however often it was signalled. The end of a connection is told after all bytes that came
    /// before it have been received, unless Winsock reports both at once: then only the end is told.
    virtual CommsEvent WaitForEvent() = 0;

    /// Reads up to `length` bytes. `flags` are the system's.
    /// Returns: their number; 0 when the other side has closed; `commsWouldBlock` when none is there yet (no loss of
    ///          the connection); another negative number on error.
    virtual int Receive(char* buffer, int length, int flags) = 0;

    /// Writes up to `length` bytes. `flags` are the system's.
    /// Returns: how many the system took, `commsWouldBlock` when it takes none now, or `commsFailed`.
    virtual int Send(const char* data, int length, int flags) = 0;

    /// Wakes the wait for the reason `which` (a `CommsSignal`). A signal nobody waits for is kept.
    /// Returns: false when `which` is no `CommsSignal` or `Initialise` has not succeeded.
    virtual bool Signal(int which) = 0;

    /// After a `Send` that would block: waits until the socket may take bytes again, the connection breaks or
    /// `signalStop` is signalled. May return early. What happens meanwhile, the stop included, stays for
    /// `WaitForEvent`. A transport that does not override it has no such wait: the next `Send` is tried at once.
    virtual void WaitUntilWritable() {}
};

}  // namespace Morquil
