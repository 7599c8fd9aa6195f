#pragma once

#include <string>

#include "tests/kit/complete_device/complete_device.h"
#include "tests/system/host/host.h"

namespace Morquil::Testing {

/// A device that this library does not connect to: what it sends, and the reason that the host gets.
struct Refusal {
    const char* what;
    std::string greeting;
    const char* reason;
};

inline const Refusal refusals[] = {
    {"an old version", "PROTOCOL PREAMBLE:\nVersion: 1.21\n\n", "cfif"},
    {"an old version without flags", "PROTOCOL PREAMBLE:\nVersion: 0.21\n\n", "cfif"},
    {"a new version", "PROTOCOL PREAMBLE:\nVersion: 4.23\n\n", "cfif"},
    {"an old version that can be updated", "PROTOCOL PREAMBLE:\nVersion: 2.21\n\n", "cfus"},
    {"an old version with more flags", "PROTOCOL PREAMBLE:\nVersion: 7.21\n\n", "cfus"},
    {"a remote lock", std::string(preamble) + "MORQUIL DEVICE:\nModel name: Locked\nRemote lock: true\n\n", "cfrm"},
};

/// The first call of an observer whose device sends the reason for its refusal and hangs up at once.
std::string NotificationOfLastWords(const Refusal& refusal);

/// The outcome of a synchronous connect to such a device.
ConnectOutcome ConnectToLastWords(const Refusal& refusal);

}  // namespace Morquil::Testing
