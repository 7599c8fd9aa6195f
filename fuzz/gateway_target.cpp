// What the gateway reads from others: requests in any pieces, configurations, and greetings of what may be no device.
#include <algorithm>
#include <string>
#include <string_view>

#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "gateway/api/guard.h"
#include "gateway/api/routes.h"
#include "gateway/config/config.h"
#include "gateway/fleet/fleet_book.h"
#include "gateway/fleet/greeting.h"
#include "gateway/web/http_reader.h"

namespace Morquil::Fuzz {
namespace {

using namespace Morquil::Gateway;

constexpr HttpLimits limits{512, 1'024};

/// What a reader makes of the text, and at what it stops. Its bytes arrive in pieces of `size`.
std::string ReadRequests(std::string_view text, std::size_t size) {
    HttpReader reader(limits);
    std::string found;
    std::string held;
    while (true) {
        std::string_view rest = held;
        const HttpReader::State state = reader.Feed(rest);
        held.erase(0, held.size() - rest.size());
        if (state == HttpReader::State::Malformed) {
            return found + "malformed " + std::to_string(reader.Status());
        }
        if (state == HttpReader::State::Complete) {
            const Request request = reader.Take();
            Require(request.body.size() <= limits.bodyBytes, "a body is within its limit");
            found += request.method + " " + request.target + " " + request.body + "\n";
            continue;
        }
        if (text.empty()) {
            return found;
        }
        held += text.substr(0, size);
        text.remove_prefix(std::min(size, text.size()));
    }
}

/// Whole requests are the same however they arrive. Which limit a request that is too large exceeds first may differ.
void TryRequests(std::string_view text) {
    const std::string whole = ReadRequests(text, text.size() + 1);
    const std::string single = ReadRequests(text, 1);
    const auto complete = [](const std::string& found) { return found.substr(0, found.rfind('\n') + 1); };
    Require(complete(whole) == complete(single), "requests do not depend on the pieces that they arrive in");
}

void TryTarget(std::string_view text) {
    Request request;
    request.target = std::string(text);
    if (!ReadTarget(request)) {
        return;
    }
    for (const std::string& segment : request.segments) {
        Require(!segment.empty() && segment.find('\0') == std::string::npos, "a path has neither gaps nor zeros");
    }
    std::string methods;
    FindRoute(request, methods);
    request.headers = {{"host", std::string(text)}, {"origin", std::string(text)}};
    CheckHost(request, {});
    CheckOrigin(request);
}

void TryConfig(std::string_view text) {
    const ConfigReading reading = ReadConfig(text);
    if (const auto* const faults = std::get_if<std::vector<ConfigFault>>(&reading)) {
        Require(!faults->empty(), "a refused configuration has a fault");
        return;
    }
    for (const DeviceEntry& entry : std::get<Config>(reading).devices) {
        Require(!FaultOf(entry), "a configured device is well");
    }
}

void TryBook(std::string_view text) {
    FleetBook book;
    if (book.Load(text).empty()) {
        FleetBook other;
        Require(other.Load(book.Save()).empty(), "what a book has saved it reads");
        Require(other.Entries() == book.Entries(), "a book reads what it has saved");
    }
}

void TryGreeting(std::string_view text) {
    const auto early = JudgeGreeting("a", text, false);
    const auto late = JudgeGreeting("a", text, true);
    Require(late.has_value(), "at its end every greeting is judged");
    Require(!early || early->state == late->state, "a judgement is final");
}

}  // namespace
}  // namespace Morquil::Fuzz

/// The first byte selects what reads the rest.
int TestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace Morquil::Fuzz;
    if (size == 0) {
        return 0;
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    switch (bytes[0] % 5) {
        case 0:
            TryRequests(text);
            break;
        case 1:
            TryTarget(text);
            break;
        case 2:
            TryConfig(text);
            break;
        case 3:
            TryBook(text);
            break;
        default:
            TryGreeting(text);
            break;
    }
    return 0;
}
