#include "gateway/fleet/greeting.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

constexpr std::string_view preamble = "PROTOCOL PREAMBLE:";
constexpr std::string_view versionKey = "\nVersion: ";
constexpr std::string_view lockKey = "\nRemote lock: ";
constexpr std::string_view minorVersion = ".22";

/// The rest of the line after `key`; nothing if it has not arrived as a whole.
std::optional<std::string_view> LineAfter(std::string_view bytes, std::string_view key) {
    const std::size_t at = bytes.find(key);
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view rest = bytes.substr(at + key.size());
    const std::size_t end = rest.find_first_of("\r\n");
    return end == std::string_view::npos ? std::nullopt : std::optional(rest.substr(0, end));
}

bool IsPrintable(std::string_view text) {
    return text.size() <= 20 && std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7f'; });
}

Diagnosis Silent(std::string_view address) {
    return {LinkState::NoDevice, std::string(address) +
                                     " accepts connections on port 9800, but sends nothing: it is not a converter, or "
                                     "the converter hangs; restart it"};
}

Diagnosis Foreign(std::string_view address) {
    return {LinkState::WrongProtocol,
            "what answers at " + std::string(address) + " on port 9800 is not a converter; check the address"};
}

Diagnosis OtherVersion(std::string_view address, std::string_view version) {
    return {LinkState::WrongProtocol, "the converter at " + std::string(address) + " speaks protocol " +
                                          (IsPrintable(version) ? std::string(version) : "of another kind") +
                                          ", not 2.22; update its firmware"};
}

Diagnosis Locked(std::string_view address) {
    return {LinkState::RemoteLocked, "the converter at " + std::string(address) +
                                         " is locked against remote control; unlock it at its front panel"};
}

}  // namespace

std::optional<Diagnosis> JudgeGreeting(std::string_view address, std::string_view bytes, bool isAll) {
    const std::size_t compared = std::min(bytes.size(), preamble.size());
    if (bytes.substr(0, compared) != preamble.substr(0, compared)) {
        return Foreign(address);
    }
    if (const auto version = LineAfter(bytes, versionKey); version && !version->ends_with(minorVersion)) {
        return OtherVersion(address, *version);
    }
    if (const auto lock = LineAfter(bytes, lockKey)) {
        return *lock == "true" ? Locked(address)
                               : Diagnosis{LinkState::Connected,
                                           "a converter answers at " + std::string(address) + " and can be controlled"};
    }
    if (!isAll) {
        return std::nullopt;
    }
    return compared < preamble.size() && compared > 0 ? Foreign(address) : Silent(address);
}

}  // namespace Morquil::Gateway
