#include "command/program/program.h"

#include <algorithm>
#include <exception>

#include "command/commands/commands.h"

namespace Morquil::Command {
namespace {

struct Verb {
    const char* name;
    void (*run)(const Context& context);
};

// clang-format off
constexpr Verb verbs[] = {
    {"status",        &ShowStatus},
    {"get",           &ShowValues},
    {"set",           &SetValues},
    {"ranges",        &ShowRanges},
    {"watch",         &WatchChanges},
    {"save",          &SaveSettings},
    {"load",          &LoadSettings},
    {"preset save",   &SavePreset},
    {"preset recall", &RecallPreset},
    {"preset name",   &NamePreset},
    {"list",          &ShowList},
    {"completion",    &WriteCompletion},
    {"complete",      &WriteCandidates}};
// clang-format on

void Run(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
    const ParsedLine line = ParseCommandLine(arguments, surroundings.defaultAddress);
    surroundings.terminal.out(line.output);
    const auto verb = std::find_if(std::begin(verbs), std::end(verbs),
                                   [&line](const Verb& known) { return known.name == line.options.command; });
    if (verb != std::end(verbs)) {
        surroundings.begin(line.options);
        const std::function<void()> prepareLibrary = [&] { surroundings.prepareLibrary(line.options); };
        verb->run({line.options, surroundings.terminal, Deadline(line.options.timeout), surroundings.isInterrupted,
                   prepareLibrary});
    }
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
