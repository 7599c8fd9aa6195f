// Why a device cannot be reached, in a sentence for people. The library's own reasons are coarse: after a failure,
// Diagnose looks for itself.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "diagnosis/visit.h"
#include "morquil.hpp"

namespace Morquil::Diagnosis {

/// Long enough for a connection over a slow network.
inline constexpr std::chrono::milliseconds usualLimit{2000};

enum class Fault {
    NotResolved,
    LookupFailed,
    Unreachable,
    NoRoute,
    NoAnswer,
    Refused,
    Silent,  // connects, but sends nothing
    NotADevice,
    WrongProtocol,
    RemoteLocked,
    BrokenOff,  // in the middle of the device's state
    None,       // the device answers now
};

/// The sentence of a fault, to be shown after the address and a colon.
std::string_view SentenceOf(Fault fault);

struct Finding {
    Fault fault;
    std::string sentence;  // of the fault, perhaps with details
};

/// What a visit to a device's port means, after the library could not connect.
Finding Explain(const Visit& visit);

/// What a reason of the library means. Nothing for NoResponse, which has many causes.
std::optional<Finding> Explain(morquil::ConnectFailure reason);

/// Connects to the device's port, without the library, and explains what happens.
/// Threads: any. Blocks, as VisitAddress does.
Finding Diagnose(const std::string& address, std::chrono::milliseconds limit, std::stop_token stop = {});

/// A diagnosis in the background.
class Inquiry {
public:
    /// Calls `found` once, on a thread of its own, unless the inquiry is destroyed before. A call in progress is not
    /// waited for, so `found` must keep alive what it uses.
    Inquiry(std::string address, std::chrono::milliseconds limit, std::function<void(const Finding&)> found);
    ~Inquiry() { stop_.request_stop(); }
    Inquiry(const Inquiry&) = delete;
    Inquiry& operator=(const Inquiry&) = delete;

private:
    std::stop_source stop_;
};

}  // namespace Morquil::Diagnosis
