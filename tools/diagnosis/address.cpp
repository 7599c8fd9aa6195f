#include "diagnosis/address.h"

#include <algorithm>

namespace Morquil::Diagnosis {
namespace {

constexpr const char* notAnAddress = "is neither a host name nor an IPv4 address";

bool IsNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

std::optional<std::string> FaultOfAddress(std::string_view address) {
    const std::size_t colon = address.find(':');
    const auto colons = std::count(address.begin(), address.end(), ':');
    if (colons > 1) {
        return "is an IPv6 address: name the device by its IPv4 address or a host name";
    }
    if (colons == 1 && IsNumber(address.substr(colon + 1))) {
        return "has a port: write " + std::string(address.substr(0, colon)) + ", the port is always 9800";
    }
    if (address.find_first_of(":/[] \t") != std::string_view::npos) {
        return notAnAddress;
    }
    return std::nullopt;
}

}  // namespace Morquil::Diagnosis
