#include "diagnosis/diagnosis.h"

#include <algorithm>
#include <cctype>
#include <thread>
#include <utility>

namespace Morquil::Diagnosis {
namespace {

constexpr std::uint16_t devicePort = 9800;

enum class Speaker { Unknown, Device, Other };

bool IsSameLetter(char left, char right) {
    const auto upper = [](char c) { return std::toupper(static_cast<unsigned char>(c)); };
    return upper(left) == upper(right);
}

std::string_view FromFirstLine(std::string_view received) {
    return received.substr(std::min(received.find_first_not_of("\r\n"), received.size()));
}

// Every device begins with the same words.
Speaker SpeakerOf(std::string_view received) {
    constexpr std::string_view beginning = "PROTOCOL PREAMBLE:";
    const std::string_view begun = FromFirstLine(received).substr(0, beginning.size());
    if (!std::equal(begun.begin(), begun.end(), beginning.begin(), &IsSameLetter)) {
        return Speaker::Other;
    }
    return begun.size() == beginning.size() ? Speaker::Device : Speaker::Unknown;
}

Finding Of(Fault fault) {
    return {fault, std::string(SentenceOf(fault))};
}

// Many programs introduce themselves in their first line.
Finding OfOther(std::string_view received) {
    constexpr std::size_t longest = 60;
    const std::string_view rest = FromFirstLine(received);
    const std::string_view line = rest.substr(0, std::min(rest.find_first_of("\r\n"), longest));
    Finding finding = Of(Fault::NotADevice);
    finding.sentence += ", which says '" + std::string(line) + "'";
    return finding;
}

Finding OfConnection(const Visit& visit) {
    const bool hungUp = visit.end == Visit::End::HungUp;
    switch (SpeakerOf(visit.received)) {
        case Speaker::Device:
            return Of(hungUp ? Fault::BrokenOff : Fault::None);
        case Speaker::Unknown:
            return Of(hungUp ? Fault::BrokenOff : Fault::Silent);
        case Speaker::Other:
            break;
    }
    return OfOther(visit.received);
}

}  // namespace

std::string_view SentenceOf(Fault fault) {
    // clang-format off
    switch (fault) {
        case Fault::NotResolved:   return "cannot be resolved to an IPv4 address";
        case Fault::LookupFailed:  return "cannot be resolved now: the name service does not answer";
        case Fault::Unreachable:   return "cannot be reached";
        case Fault::NoRoute:       return "cannot be reached: there is no route to it";
        case Fault::NoAnswer:      return "does not answer: it is off or unplugged, or a firewall is in between";
        case Fault::Refused:       return "refuses the connection: nothing listens on port 9800";
        case Fault::Silent:        return "accepts the connection, but sends nothing";
        case Fault::NotADevice:    return "is not a Morquil device: another program answers on port 9800";
        case Fault::WrongProtocol: return "the device's firmware speaks another version of the protocol";
        case Fault::RemoteLocked:  return "the device is locked against remote control";
        case Fault::BrokenOff:     return "ends the connection before it has sent its complete state";
        case Fault::None:          return "could not be connected, but answers now: try again";
    }
    // clang-format on
    return "cannot be reached";
}

Finding Explain(const Visit& visit) {
    // clang-format off
    switch (visit.end) {
        case Visit::End::NotResolved:  return Of(Fault::NotResolved);
        case Visit::End::LookupFailed: return Of(Fault::LookupFailed);
        case Visit::End::Refused:      return Of(Fault::Refused);
        case Visit::End::NoRoute:      return Of(Fault::NoRoute);
        case Visit::End::NoAnswer:     return Of(Fault::NoAnswer);
        case Visit::End::Failed:       return {Fault::Unreachable, std::string(SentenceOf(Fault::Unreachable)) + ": " + visit.reason};
        case Visit::End::HungUp:
        case Visit::End::StillOpen:    break;
    }
    // clang-format on
    return OfConnection(visit);
}

std::optional<Finding> Explain(morquil::ConnectFailure reason) {
    switch (reason) {
        case morquil::ConnectFailure::NoFailure:
        case morquil::ConnectFailure::NoResponse:
            return std::nullopt;
        case morquil::ConnectFailure::RemoteLock:
            return Finding{Fault::RemoteLocked, ToText(reason)};
        default:
            return Finding{Fault::WrongProtocol, ToText(reason)};
    }
}

Finding Diagnose(const std::string& address, std::chrono::milliseconds limit, std::stop_token stop) {
    const auto isEnough = [](std::string_view received) { return SpeakerOf(received) == Speaker::Other; };
    return Explain(VisitAddress(address, devicePort, limit, isEnough, std::move(stop)));
}

Inquiry::Inquiry(std::string address, std::chrono::milliseconds limit, std::function<void(const Finding&)> found) {
    std::thread([address = std::move(address), limit, found = std::move(found), stop = stop_.get_token()] {
        const Finding finding = Diagnose(address, limit, stop);
        if (!stop.stop_requested()) {
            found(finding);
        }
    }).detach();
}

}  // namespace Morquil::Diagnosis
