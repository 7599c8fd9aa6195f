#include "simulator/program/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "protocol/text/ascii.h"
#include "protocol/text/value_reader.h"
#include "simulator/program/fleet.h"
#include "simulator/program/script.h"

namespace Morquil::Simulator {

namespace {

constexpr std::size_t longestModelName = 49;
constexpr std::uint64_t longestLatencyMs = 60'000;
constexpr std::uint64_t mostDevices = 10'000;

struct FragmentationWord {
    std::string_view word;
    Fragmentation fragmentation;
};
constexpr std::array<FragmentationWord, 3> fragmentationWords{
    {{"none", Fragmentation::None}, {"byte", Fragmentation::Byte}, {"random", Fragmentation::Random}}};

constexpr const char* examples =
    "Examples:\n"
    "  morquil-sim --address 127.0.0.5 --model \"Rack 3\"\n"
    "      a second device on the same machine\n"
    "  morquil-sim --devices 20 --address 127.0.0.11\n"
    "      twenty devices, from 127.0.0.11 to 127.0.0.30; \"@7 drop\" hangs up on the hosts of the seventh\n"
    "  morquil-sim --settings studio.txt --latency 40 --fragment random --seed 7\n"
    "      a device with these settings on a slow line\n"
    "  echo \"at 2 s set VIDEO PROC AMP Gain 12\" | morquil-sim\n"
    "      turns a knob on the front panel two seconds after the start\n"
    "  morquil-sim --script scenario.txt --record conversation.txt\n"
    "      runs a scenario and records the conversation; --replay conversation.txt plays it back\n";

/// Options that the command line gives as words, and that are stored in another form.
struct Words {
    std::string protocolVersion = {};
    std::string fragmentation = {};
    std::int64_t latencyMs = 0;
    std::int64_t dropAfter = 0;
};

template <class Condition>
CLI::Validator Expect(std::string expected, Condition condition) {
    const auto check = [expected = std::move(expected), condition](const std::string& text) {
        return condition(text) ? std::string() : "expected " + expected + ", not \"" + text + "\"";
    };
    return {check, ""};
}

/// Accepts a whole number, or a hexadecimal one that begins with 0x.
CLI::Validator ExpectNumber(std::uint64_t most, std::uint64_t least = 0) {
    const std::string expected = "a number from " + std::to_string(least) + " to " + std::to_string(most);
    return Expect(expected, [most, least](const std::string& text) {
        const bool isHex = text.starts_with("0x") || text.starts_with("0X");
        const char* const first = text.data() + (isHex ? 2 : 0);
        const char* const end = text.data() + text.size();
        std::uint64_t number = 0;
        const auto [stop, error] = std::from_chars(first, end, number, isHex ? 16 : 10);
        return error == std::errc() && stop == end && number >= least && number <= most;
    });
}

CLI::Validator ExpectAddress() {
    return Expect("an IPv4 address such as 127.0.0.1", [](std::string text) { return CLI::ValidIPV4(text).empty(); });
}

CLI::Validator ExpectModel() {
    return Expect("a name of 1 to " + std::to_string(longestModelName) + " printable bytes", [](std::string_view text) {
        const bool isPrintable =
            std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
        return isPrintable && !text.empty() && text.size() <= longestModelName;
    });
}

CLI::Validator ExpectVersion() {
    return Expect("a version of two numbers, such as 2.22", [](std::string_view text) {
        ProtocolVersion version;
        return ParseVersionPair(text, version.flags, version.minor);
    });
}

const FragmentationWord* FindFragmentation(std::string_view text) {
    const auto* const found =
        std::find_if(fragmentationWords.begin(), fragmentationWords.end(),
                     [&](const FragmentationWord& known) { return EqualsIgnoringCase(text, known.word); });
    return found == fragmentationWords.end() ? nullptr : found;
}

std::string FragmentationNames() {
    std::string names;
    for (const FragmentationWord& known : fragmentationWords) {
        names += (names.empty() ? "" : "|") + std::string(known.word);
    }
    return names;
}

std::string Footer() {
    return ScriptHelp() + "\n" + examples;
}

// clang-format off
void AddDeviceOptions(CLI::App& app, Options& options, Words& words) {
    constexpr auto mostPort = std::numeric_limits<std::uint16_t>::max();
    constexpr auto mostVersion = std::numeric_limits<std::uint32_t>::max();
    DeviceIdentity& identity = options.identity;
    const std::string group = "The device";
    app.add_option("--address", options.address, "Address to listen on")
        ->check(ExpectAddress())->type_name("IPV4")->capture_default_str()->group(group);
    app.add_option("--port", options.port, "TCP port to listen on; 0 chooses a free one")
        ->check(ExpectNumber(mostPort))->type_name("NUMBER")->capture_default_str()->group(group);
    app.add_option("--devices", options.devices, "Number of devices, at this address and those that follow it")
        ->check(ExpectNumber(mostDevices, 1))->type_name("NUMBER")->group(group);
    app.add_option("--model", identity.modelName, "Model name")
        ->check(ExpectModel())->type_name("NAME")->capture_default_str()->group(group);
    app.add_option("--software-version", identity.softwareVersion, "Software version, such as 0x20417")
        ->check(ExpectNumber(mostVersion))->type_name("NUMBER")->group(group);
    app.add_option("--fpga-version", identity.fpgaVersion, "FPGA version, such as 0x1c")
        ->check(ExpectNumber(mostVersion))->type_name("NUMBER")->group(group);
    app.add_option("--protocol-version", words.protocolVersion, "Protocol version; hosts accept only a second number of 22")
        ->check(ExpectVersion())->type_name("NUMBER.NUMBER")->capture_default_str()->group(group);
    app.add_flag("--remote-lock", identity.remoteLock, "Start with remote control locked: hosts disconnect")->group(group);
    app.add_option("--settings", options.settingsFile, "Start with the settings in this file")
        ->type_name("FILE")->group(group);
}

void AddLineOptions(CLI::App& app, Faults& faults, Words& words) {
    const std::string group = "How it sends";
    app.add_option("--latency", words.latencyMs, "Send everything this many milliseconds late")
        ->check(ExpectNumber(longestLatencyMs))->type_name("MS")->group(group);
    app.add_option("--fragment", words.fragmentation, "Send single bytes, or pieces of random length")
        ->check(Expect(FragmentationNames(), FindFragmentation))->type_name(FragmentationNames())->group(group);
    app.add_option("--seed", faults.seed, "Seed of the random numbers; the same seed repeats the same faults")
        ->check(ExpectNumber(std::numeric_limits<std::uint32_t>::max()))
        ->type_name("NUMBER")->capture_default_str()->group(group);
    app.add_flag("--crlf", faults.crlf, "End lines with carriage return and line feed")->group(group);
}
// clang-format on

void AddFaultOptions(CLI::App& app, Faults& faults, Words& words) {
    const std::string group = "Faults";
    app.add_flag("--never-acknowledge", faults.neverAcknowledge, "Carry out blocks without acknowledging them")
        ->group(group);
    app.add_flag("--nack-all", faults.refuseAll, "Refuse all blocks")->group(group);
    app.add_option("--drop-after", words.dropAfter, "Hang up on a host after sending it this many bytes")
        ->check(ExpectNumber(std::numeric_limits<std::int32_t>::max()))
        ->type_name("BYTES")
        ->group(group);
    app.add_flag("--close-mid-block", faults.closeMidBlock, "Hang up in the middle of the first block of settings")
        ->group(group);
    app.add_flag("--garbage", faults.garbage, "Send random bytes between blocks")->group(group);
    app.add_flag("--long-lines", faults.longLines, "Send a line of 5000 characters in every block")->group(group);
    app.add_flag("--flood", faults.flood, "Repeat the latest report as long as the host reads")->group(group);
    app.add_flag("--silent", faults.silent, "Send nothing after the preamble")->group(group);
}

std::string Failure(const CLI::App* /*app*/, const CLI::Error& error) {
    return "morquil-sim: " + std::string(error.what()) + "\nTry \"morquil-sim --help\".\n";
}

void AddScenarioOptions(CLI::App& app, Options& options) {
    const std::string group = "Scenarios";
    app.add_option("--script", options.scriptFile, "Run the commands in this file")->type_name("FILE")->group(group);
    app.add_option("--record", options.recordFile, "Record the conversation, with times, in this file")
        ->type_name("FILE")
        ->group(group);
    app.add_option("--replay", options.replayFile, "Play back the device's side of a recorded conversation")
        ->type_name("FILE")
        ->group(group);
}

/// A replay sends exactly what was recorded, so only these options can be combined with it.
void RefuseMixtures(const CLI::App& app) {
    constexpr std::array<std::string_view, 5> allowed{"--address", "--port", "--devices", "--record", "--replay"};
    if (app.count("--replay") == 0) {
        return;
    }
    for (const CLI::Option* option : app.get_options()) {
        const std::string name = option->get_name();
        if (option->count() > 0 && std::find(allowed.begin(), allowed.end(), name) == allowed.end()) {
            throw CLI::ExcludesError("--replay", name);
        }
    }
}

/// Several devices need addresses and names, and have no common conversation.
void RefuseImpossibleFleet(const CLI::App& app, const Options& options) {
    const unsigned count = options.DeviceCount();
    if (count == 1) {
        return;
    }
    for (const char* name : {"--record", "--replay"}) {
        if (app.count(name) > 0) {
            throw CLI::ExcludesError("--devices", name);
        }
    }
    if (!HasAddresses(options)) {
        throw CLI::ValidationError("--address", "there are fewer than " + std::to_string(count) + " addresses from " +
                                                    options.address + " on");
    }
    const std::size_t longest = longestModelName - 1 - std::to_string(count).size();
    if (options.identity.modelName.size() > longest) {
        throw CLI::ValidationError("--model", "expected at most " + std::to_string(longest) +
                                                  " bytes before the number of one of " + std::to_string(count) +
                                                  " devices");
    }
}

void TakeWords(const CLI::App& app, const Words& words, Options& options) {
    ProtocolVersion& version = options.identity.protocolVersion;
    ParseVersionPair(words.protocolVersion, version.flags, version.minor);
    options.faults.latency = std::chrono::milliseconds(words.latencyMs);
    if (const FragmentationWord* const word = FindFragmentation(words.fragmentation)) {
        options.faults.fragmentation = word->fragmentation;
    }
    if (app.count("--drop-after") > 0) {
        options.faults.dropAfter = static_cast<std::size_t>(words.dropAfter);
    }
}

}  // namespace

std::optional<Options> ReadOptions(int argumentCount, const char* const* arguments, int& exitStatus) {
    Options options;
    const ProtocolVersion& version = options.identity.protocolVersion;
    Words words{.protocolVersion = std::to_string(version.flags) + "." + std::to_string(version.minor)};
    CLI::App app{"A simulated Morquil video converter.", "morquil-sim"};
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.set_version_flag("--version", "morquil-sim " MORQUIL_VERSION, "Print the version and exit");
    app.footer(Footer);
    AddDeviceOptions(app, options, words);
    AddLineOptions(app, options.faults, words);
    AddFaultOptions(app, options.faults, words);
    AddScenarioOptions(app, options);
    app.failure_message(Failure);
    try {
        app.parse(argumentCount, arguments);
        RefuseMixtures(app);
        RefuseImpossibleFleet(app, options);
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : usageError;
        return std::nullopt;
    }
    TakeWords(app, words, options);
    return options;
}

}  // namespace Morquil::Simulator
