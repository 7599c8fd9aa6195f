#include "gateway/config/device_entry.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

constexpr std::size_t mostTextBytes = 200;
constexpr std::size_t mostTags = 32;

bool IsLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool IsText(std::string_view text) {
    return text.size() <= mostTextBytes &&
           std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

/// A host name or an IPv4 address: the library accepts nothing else.
bool IsAddress(std::string_view text) {
    const auto belongs = [](char c) {
        return IsLetterOrDigit(c) || (c >= 'A' && c <= 'Z') || c == '.' || c == '-' || c == '_';
    };
    return !text.empty() && text.size() <= 253 && std::all_of(text.begin(), text.end(), belongs);
}

}  // namespace

bool IsDeviceName(std::string_view name) {
    return !name.empty() && name.size() <= 63 && name.front() != '-' &&
           std::all_of(name.begin(), name.end(), [](char c) { return IsLetterOrDigit(c) || c == '-'; });
}

std::optional<std::string> FaultOf(const DeviceEntry& entry) {
    if (!IsDeviceName(entry.name)) {
        return "name: '" + entry.name + "' is not a name; use up to 63 letters a to z, digits and hyphens";
    }
    if (!IsAddress(entry.address)) {
        return "address: '" + entry.address + "' is neither a host name nor an IPv4 address, without a port";
    }
    if (!IsText(entry.label) || !IsText(entry.room)) {
        return "label and room hold up to 200 bytes, without control characters";
    }
    if (entry.tags.size() > mostTags || !std::all_of(entry.tags.begin(), entry.tags.end(), IsText)) {
        return "tags: up to 32 texts of up to 200 bytes each, without control characters";
    }
    return std::nullopt;
}

}  // namespace Morquil::Gateway
