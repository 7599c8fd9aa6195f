// Writes the seeds of a target that lives in simulated worlds: for each story the shortest sequence of dice throws
// among the seeded worlds in which it happens. Run it again when the simulation throws its dice in another order.
//   morquil-fuzz-record-worlds device|delivery FOLDER
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/written_dice.h"
#include "tests/worlds/simulation/delivery_world.h"
#include "tests/worlds/simulation/quiet_console.h"
#include "tests/worlds/simulation/scenario.h"

namespace Morquil::Fuzz {
namespace {

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
const std::vector<Story>& DeviceStories() {
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

const std::vector<Story>& DeliveryStories() {
    static const std::vector<Story> stories{
        {"confirmed",                   [](auto trace) { return HasInOrder(trace, {"1 confirmed, 0 adjusted"}); }},
        {"adjusted",                    [](auto trace) { return HasInOrder(trace, {"0 confirmed, 1 adjusted"}); }},
        {"several-messages",            [](auto trace) { return HasInOrder(trace, {"2 confirmed, 1 adjusted"}); }},
        {"refused",                     [](auto trace) { return HasInOrder(trace, {"received NACK", "notified: settled"}); }},
        {"never-reported",              [](auto trace) { return HasInOrder(trace, {"notified: answered", "notified: lost"}) && CountOf(trace, "notified: settled") == 0; }},
        {"lost-before-sending",         [](auto trace) { return HasInOrder(trace, {"0 unanswered, 1 unsent"}); }},
        {"lost-after-sending",          [](auto trace) { return HasInOrder(trace, {"1 unanswered, 0 unsent"}); }},
        {"many-at-once",                [](auto trace) { return CountOf(trace, "] mark receipt ") > 12; }},
        {"cancelled",                   [](auto trace) { return HasInOrder(trace, {"] open receipt 1\n", "] mark receipt 1\n", "] cancel receipt 1\n", "sent PING"}); }},
        {"cancelled-in-a-callback",     [](auto trace) { return HasInsideCall(trace, "notified: answered", "] cancel receipt 1"); }},
        {"opened-in-a-callback",        [](auto trace) { return HasInsideCall(trace, "notified: answered", "] open receipt 4"); }},
        {"disconnect-in-a-callback",    [](auto trace) { return HasInsideCall(trace, "notified: answered", "] disconnect"); }},
        {"release-in-a-callback",       [](auto trace) { return HasInsideCall(trace, "notified: answered", "] release"); }},
        {"reports",                     [](auto trace) { return CountOf(trace, "a report is notified") > 10; }},
        {"report-observer-leaves",      [](auto trace) { return HasInsideCall(trace, "a report is notified", "] remove report observer 0"); }},
        {"answer-to-a-ping",            [](auto trace) { return HasInOrder(trace, {"sent PING", "] mark receipt ", "received ACK", "notified: answered"}); }}};
    return stories;
}
// clang-format on

/// The stories of one target, how its worlds run, and how many are searched.
struct Library {
    const std::vector<Story>& stories;
    Testing::Worlds::Outcome (*run)(Testing::Worlds::Dice& dice, const std::string& name);
    std::uint64_t seeds;
};

bool Write(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    return file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush().good();
}

/// The shortest recording of each story; empty where none was found.
std::vector<std::string> Record(const Library& library) {
    const Testing::Worlds::QuietConsole quiet;
    std::vector<std::string> shortest(library.stories.size());
    for (std::uint64_t seed = 1; seed <= library.seeds; ++seed) {
        RecordingDice dice(seed);
        const std::string trace = library.run(dice, "seed " + std::to_string(seed)).trace;
        for (std::size_t story = 0; story < shortest.size() && dice.Bytes().size() <= longest; ++story) {
            std::string& found = shortest[story];
            if ((found.empty() || dice.Bytes().size() < found.size()) && library.stories[story].happens(trace)) {
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
    const std::string_view target = argumentCount == 3 ? arguments[1] : "";
    if (target != "device" && target != "delivery") {
        std::fprintf(stderr, "usage: morquil-fuzz-record-worlds device|delivery FOLDER\n");
        return 2;
    }
    const Library library = target == "device"
                                ? Library{DeviceStories(), &Morquil::Testing::Worlds::RunScenario, 20'000}
                                : Library{DeliveryStories(), &Morquil::Testing::Worlds::RunDeliveryScenario, 2'000};
    bool isComplete = true;
    const std::vector<std::string> recordings = Record(library);
    for (std::size_t story = 0; story < recordings.size(); ++story) {
        const std::string path = std::string(arguments[2]) + '/' + library.stories[story].name;
        const bool isWritten = !recordings[story].empty() && Write(path, recordings[story]);
        std::printf("%s: %zu bytes\n", path.c_str(), recordings[story].size());
        isComplete = isComplete && isWritten;
    }
    return isComplete ? EXIT_SUCCESS : EXIT_FAILURE;
}
