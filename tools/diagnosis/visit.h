#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>

namespace Morquil::Diagnosis {

/// What came of a connection to an address.
struct Visit {
    enum class End {
        NotResolved,   // the name, or that text, is not known
        LookupFailed,  // the name could not be looked up
        Refused,
        NoRoute,
        NoAnswer,   // to the attempt to connect
        Failed,     // for another reason of the system
        HungUp,     // the other side ended the connection
        StillOpen,  // when the time was up, or when the other side had sent enough
    };
    End end = End::LookupFailed;
    std::string received = {};
    std::string reason = {};  // the system's, if the connection has failed
};

/// Connects with plain sockets, and reads what the other side sends until that is enough, the other side hangs up, or
/// the time is up. Sends nothing.
/// Threads: any. Blocks for `limit` at most, except that a name lookup in progress cannot be interrupted.
Visit VisitAddress(const std::string& address, std::uint16_t port, std::chrono::milliseconds limit,
                   const std::function<bool(std::string_view received)>& isEnough, std::stop_token stop = {});

}  // namespace Morquil::Diagnosis
