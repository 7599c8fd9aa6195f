// Writes the seeds of the device target: for each story the shortest sequence of dice throws among the seeded worlds in
// which it happens. Run it again when the simulation throws its dice in another order.
//   morquil-fuzz-record-worlds FOLDER
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/written_dice.h"
#include "tests/worlds/simulation/quiet_console.h"
#include "tests/worlds/simulation/scenario.h"

namespace Morquil::Fuzz {
namespace {

constexpr std::uint64_t seeds = 20'000;
/// The longest input that the fuzzer tries.
constexpr std::size_t longest = 4096;

/// Whether the events happen, one after the other.
bool HasInOrder(std::string_view trace, std::initializer_list<std::string_view> events) {
    for (const std::string_view event : events) {
        const std::size_t at = trace.find(event);
        if (at == std::string_view::npos) {
            return false;
        }
        trace.remove_prefix(at + event.size());
    }
    return true;
}

std::size_t CountOf(std::string_view trace, std::string_view event) {
    std::size_t count = 0;
    for (std::size_t at = trace.find(event); at != std::string_view::npos; at = trace.find(event, at + 1)) {
        ++count;
    }
    return count;
}

/// Which thread a line of a trace is about.
std::string_view ThreadOf(std::string_view line) {
    const std::size_t begin = line.find('[');
    return begin != std::string_view::npos ? line.substr(begin, line.find(']') - begin) : std::string_view();
}

/// Whether the first thing that a thread does inside a call to an observer is `act`.
bool HasInsideCall(std::string_view trace, std::string_view call, std::string_view act) {
    for (std::size_t at = trace.find(call); at != std::string_view::npos; at = trace.find(call, at + 1)) {
        const std::size_t begin = trace.rfind('\n', at) + 1;
        const std::size_t next = trace.find('\n', at) + 1;
        const std::string_view line = trace.substr(begin, next - begin);
        const std::string_view following = trace.substr(next, trace.find('\n', next) - next);
        if (ThreadOf(line) == ThreadOf(following) && following.ends_with(act)) {
            return true;
        }
    }
    return false;
}

/// Whether a block with lines comes back as it was sent.
bool HasEcho(std::string_view trace) {
    static constexpr std::string_view sent = " sent ";
    for (std::size_t at = trace.find(sent); at != std::string_view::npos; at = trace.find(sent, at + 1)) {
        const std::size_t begin = at + sent.size();
        const std::string_view block = trace.substr(begin, trace.find('\n', begin) - begin);
        if (block.find(": ") != std::string_view::npos &&
            trace.find("received " + std::string(block), begin) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

struct Story {
    const char* name;
    std::function<bool(std::string_view trace)> happens;
};

// clang-format off
const std::vector<Story>& Stories() {
    static const std::string refusals = [] {
        std::string text;
        for (int count = 0; count < 100; ++count) {
            text += "NACK\\n";
        }
        return text;
    }();
    static const std::vector<Story> stories{
        {"connect-and-disconnect",      [](auto trace) { return HasInOrder(trace, {"] connect\n", "notified: connected", "] disconnect\n", "notified: disconnected"}); }},
        {"connect-asynchronously",      [](auto trace) { return HasInOrder(trace, {"connect asynchronously", "notified: connected"}); }},
        {"connection-refused",          [](auto trace) { return HasInOrder(trace, {"] connect", "not opened", "notified: disconnected cfnr"}); }},
        {"wrong-version",               [](auto trace) { return HasInOrder(trace, {"notified: disconnected cfif"}); }},
        {"remote-lock",                 [](auto trace) { return HasInOrder(trace, {"notified: disconnected cfrm"}); }},
        {"lost-in-the-greeting",        [](auto trace) { return HasInOrder(trace, {"opened", "received PROTOCOL", "closed"}) && CountOf(trace, "received") < 8 && CountOf(trace, "] disconnect\n") == 0; }},
        {"silence-then-ping",           [](auto trace) { return HasInOrder(trace, {"notified: connected", "silence", "sent PING"}); }},
        {"silence-with-block-in-flight", [](auto trace) { return HasInOrder(trace, {"notified: connected", "] set ", "sent ", "silence", "closed", "notified: disconnected"}); }},
        {"flood",                       [](auto trace) { return HasInOrder(trace, {"notified: connected"}) && CountOf(trace, "received ") > 150; }},
        {"storm-of-refusals",           [](auto trace) { return HasInOrder(trace, {"notified: connected", refusals}); }},
        {"echo-of-a-setter",            [](auto trace) { return HasInOrder(trace, {"notified: connected"}) && HasEcho(trace); }},
        {"set-inside-a-callback",       [](auto trace) { return HasInsideCall(trace, "notified: vpap", "Gain 1"); }},
        {"disconnect-inside-a-callback", [](auto trace) { return HasInsideCall(trace, "notified: ", "] disconnect"); }},
        {"release-inside-a-callback",   [](auto trace) { return HasInsideCall(trace, "notified: ", "] release"); }},
        {"observer-leaves-in-a-callback", [](auto trace) { return HasInsideCall(trace, "notified: connected", "] remove connection observer 0"); }},
        {"load-a-settings-file",        [](auto trace) { return HasInOrder(trace, {"notified: connected", "load moving", "sent TEST PATTERN:\\nMotion: true"}); }},
        {"flapping",                    [](auto trace) { return HasInOrder(trace, {"notified: connected", "the device goes", "notified: disconnected", "life 1 begins", "not opened", "the device comes", "begins", "opened", "notified: connected"}); }},
        {"connect-again-inside-the-end", [](auto trace) { return HasInsideCall(trace, "notified: disconnected", "life 1 begins"); }}};
    return stories;
}
// clang-format on

bool Write(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    return file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush().good();
}

/// The shortest recording of each story; empty where none was found.
std::vector<std::string> Record() {
    const Testing::Worlds::QuietConsole quiet;
    std::vector<std::string> shortest(Stories().size());
    for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
        RecordingDice dice(seed);
        const std::string trace = Testing::Worlds::RunScenario(dice, "seed " + std::to_string(seed)).trace;
        for (std::size_t story = 0; story < shortest.size() && dice.Bytes().size() <= longest; ++story) {
            std::string& found = shortest[story];
            if ((found.empty() || dice.Bytes().size() < found.size()) && Stories()[story].happens(trace)) {
                found = dice.Bytes();
            }
        }
    }
    return shortest;
}

}  // namespace
}  // namespace Morquil::Fuzz

int main(int argumentCount, char** arguments) {
    using namespace Morquil::Fuzz;
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: morquil-fuzz-record-worlds FOLDER\n");
        return 2;
    }
    bool isComplete = true;
    const std::vector<std::string> recordings = Record();
    for (std::size_t story = 0; story < recordings.size(); ++story) {
        const std::string path = std::string(arguments[1]) + '/' + Stories()[story].name;
        const bool isWritten = !recordings[story].empty() && Write(path, recordings[story]);
        std::printf("%s: %zu bytes\n", path.c_str(), recordings[story].size());
        isComplete = isComplete && isWritten;
    }
    return isComplete ? EXIT_SUCCESS : EXIT_FAILURE;
}
