// morquilctl: reads, sets and watches a device from the command line.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "command/own_output.h"
#include "command/program.h"
#include "command/system.h"
#include "morquil.hpp"
#include "platform/standard_streams.h"

namespace {

using Morquil::Command::ExitCode;
using Morquil::Command::Options;
using Morquil::Command::OwnOutput;

// How much later than its time the program ends when something of the system does not come back.
constexpr std::chrono::milliseconds patience{150};

std::atomic<bool> isInterrupted{false};

[[noreturn]] void End(ExitCode code) {
    // Without what belongs to the library: an attempt to connect may still be in progress in another thread.
    std::_Exit(static_cast<int>(code));
}

/// Ends the program when a call of the system holds it up: a file that is a pipe, a name that is not found.
void EndAfter(std::chrono::milliseconds timeout) {
    std::thread([until = std::chrono::steady_clock::now() + timeout + patience] {
        std::this_thread::sleep_until(until);
        std::fputs("morquilctl: timed out\n", stderr);
        End(ExitCode::TimedOut);
    }).detach();
}

void Begin(OwnOutput& output, const Options& options) {
    if (options.isTraced) {
        output.Trace();
    }
    if (options.command == "watch") {
        Morquil::Command::NoteInterruption(isInterrupted);
    } else {
        EndAfter(options.timeout);
    }
}

}  // namespace

int main(int count, char** words) {
    using namespace Morquil::Command;
    if (!Morquil::OccupyStandardStreams()) {
        return static_cast<int>(ExitCode::Usage);
    }
    // Where the library is registered it comes through COM, which threads must have asked for.
    [[maybe_unused]] const morquil::Apartment apartment;
    OwnOutput output;
    bool isWritten = true;
    const std::string device = EnvironmentVariable("MORQUIL_DEVICE");
    const Surroundings surroundings{
        .terminal = {.out = [&](std::string_view text) { isWritten = output.Write(text) && isWritten; },
                     .err = [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); },
                     .isColoured = output.IsTerminal() && EnvironmentVariable("NO_COLOR").empty() &&
                                   EnvironmentVariable("TERM") != "dumb"},
        .defaultAddress = device.empty() ? "127.0.0.1" : device,
        .begin = [&output](const Options& options) { Begin(output, options); },
        .isInterrupted = isInterrupted};
    ExitCode code = RunProgram(CommandLineWords(count, words), surroundings);
    output.Finish();
    if (!isWritten && code == ExitCode::Done) {
        Tell(surroundings.terminal, "the output cannot be written");
        code = ExitCode::Usage;
    }
    std::fflush(stderr);
    End(code);
}
