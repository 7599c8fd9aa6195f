#include "command/program/program.h"

#include <algorithm>
#include <exception>

#include "command/commands/commands.h"
#include "command/commands/fleet.h"
#include "command/devices/named_devices.h"

namespace Morquil::Command {
namespace {

/// With how many devices a command works.
enum class Reach {
    None,
    One,
    Each,      // with any number, and the same for each of them
    Together,  // with any number at once
};

struct Verb {
    const char* name;
    void (*run)(const Context& context);
    Reach reach;
};

// clang-format off
constexpr Verb verbs[] = {
    {"status",        &ShowStatus,      Reach::Each},
    {"get",           &ShowValues,      Reach::Each},
    {"set",           &SetValues,       Reach::Each},
    {"ranges",        &ShowRanges,      Reach::Each},
    {"diff",          &ShowDifferences, Reach::Each},
    {"apply",         &ApplyFile,       Reach::Each},
    {"copy",          &CopySettings,    Reach::One},
    {"watch",         &WatchChanges,    Reach::One},
    {"top",           &ShowTop,         Reach::Together},
    {"save",          &SaveSettings,    Reach::Each},
    {"load",          &LoadSettings,    Reach::Each},
    {"preset save",   &SavePreset,      Reach::Each},
    {"preset recall", &RecallPreset,    Reach::Each},
    {"preset name",   &NamePreset,      Reach::Each},
    {"list",          &ShowList,        Reach::None},
    {"completion",    &WriteCompletion, Reach::None},
    {"complete",      &WriteCandidates, Reach::None}};
// clang-format on

// Two devices without a file are compared with each other.
bool ComparesDevices(const Options& options) {
    return options.command == "diff" && options.words.empty();
}

void Carry(const Verb& verb, const Context& context) {
    const bool isForEach = verb.reach == Reach::Each && !ComparesDevices(context.options);
    if (verb.reach == Reach::One && context.addresses.size() > 1) {
        throw UsageFailure(context.options.command + ": one device at a time");
    }
    isForEach ? RunForAll(context, context.addresses, verb.run) : verb.run(context);
}

void Run(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
    constexpr std::size_t usualWidth = 80;
    ParsedLine line = ParseCommandLine(arguments, surroundings.terminal.width.value_or(usualWidth));
    surroundings.terminal.out(line.output);
    const auto verb = std::find_if(std::begin(verbs), std::end(verbs),
                                   [&line](const Verb& known) { return known.name == line.options.command; });
    if (verb == std::end(verbs)) {
        return;
    }
    surroundings.begin(line.options);
    const std::vector<std::string> addresses =
        verb->reach == Reach::None ? std::vector<std::string>()
                                   : DevicesOf(line.options, surroundings.defaultAddress, surroundings.groupsFile);
    line.options.address = addresses.empty() ? "" : addresses.front();
    const std::function<void()> prepareLibrary = [&] { surroundings.prepareLibrary(line.options); };
    Carry(*verb, {line.options, surroundings.terminal, Deadline(line.options.timeout), surroundings.isInterrupted,
                  prepareLibrary, addresses, surroundings.groupsFile, surroundings.longestSilence});
}

}  // namespace

ExitCode RunProgram(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
    try {
        Run(arguments, surroundings);
        return ExitCode::Done;
    } catch (const Failure& failure) {
        if (failure.Code() != ExitCode::Interrupted) {
            PrintMessage(surroundings.terminal, failure.what());
        }
        return failure.Code();
    } catch (const morquil::Error& error) {
        // An error that the command does not expect means that the connection has just been lost.
        PrintMessage(surroundings.terminal, error.what());
        return ExitCode::ConnectionLost;
    } catch (const std::exception& error) {
        PrintMessage(surroundings.terminal, error.what());
        return ExitCode::Usage;
    }
}

}  // namespace Morquil::Command
