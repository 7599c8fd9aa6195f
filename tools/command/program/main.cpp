// morquilctl: reads, sets and watches a device from the command line.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <string_view>
#include <thread>

#include "command/commands/link.h"
#include "command/output/screen.h"
#include "command/output/standard_output.h"
#include "command/program/program.h"
#include "command/program/system.h"
#include "command/text/escape.h"
#include "morquil.hpp"
#include "platform/standard_streams.h"

namespace {

using namespace Morquil::Command;
using namespace std::chrono_literals;

// How long after its time limit the program ends if a system call hangs, and how long it may take to clean up after an
// interruption.
constexpr auto patience = 150ms;
constexpr auto interruptionPatience = 500ms;
constexpr auto lookInterval = 50ms;

std::atomic<bool> isInterrupted{false};

[[noreturn]] void End(ExitCode code) {
    RestoreTerminal();
    if (code == ExitCode::Interrupted) {
        EndInterrupted();
    }
    // Skips the library's clean-up: a connection attempt may still be in progress in another thread.
    std::_Exit(static_cast<int>(code));
}

// Some systems buffer standard error.
void WriteError(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

/// Writes to standard error, but does not wait long if it has no reader.
void TryWriteError(const char* text) {
    std::promise<void> written;
    std::future<void> isWritten = written.get_future();
    std::thread([text, written = std::move(written)]() mutable {
        WriteError(text);
        written.set_value();
    }).detach();
    isWritten.wait_for(patience);
}

/// Ends the program when a system call blocks it: a file that is a pipe, a name lookup, an output without a reader.
class Guard {
public:
    Guard(const StandardOutput& output, const Options& options)
        : output_(output),
          isOpenEnded_(options.command == "watch" || options.command == "top"),
          end_(Clock::now() + options.timeout + patience) {}

    [[noreturn]] void Run() {
        while (!isInterrupted) {
            const Clock::time_point next = Clock::now() + lookInterval;
            std::this_thread::sleep_until(isOpenEnded_ ? next : std::min(next, end_));
            Look();
        }
        std::this_thread::sleep_for(interruptionPatience);
        End(ExitCode::Interrupted);
    }

private:
    void Look() const {
        if (isOpenEnded_ && !output_.HasReader()) {
            isInterrupted = true;
        }
        if (!isOpenEnded_ && Clock::now() >= end_) {
            TryWriteError("morquilctl: timed out\n");
            End(ExitCode::TimedOut);
        }
    }

    const StandardOutput& output_;
    const bool isOpenEnded_;
    const Clock::time_point end_;
};

void Begin(const StandardOutput& output, const Options& options) {
    NoteInterruption(isInterrupted);
    std::thread([guard = Guard(output, options)]() mutable { guard.Run(); }).detach();
}

/// Standard output belongs to the program. What the library prints is discarded or, escaped, goes to standard error.
void TakeLibraryOutput(const Options& options) {
    if (!options.isTraced) {
        morquil::SilenceLibrary();
        return;
    }
    morquil::SetLibraryOutput([](const std::string& line) { WriteError("| " + Escaped(line) + "\n"); });
}

/// Writes the program's output, and remembers whether that failed.
class Output {
public:
    explicit Output(StandardOutput& own) : own_(own) {}

    void Write(std::string_view text) {
        const Written written = own_.Write(text);
        if (written != Written::All) {
            isInterrupted = true;  // ends commands that would otherwise run on
        }
        hasFailed_ = hasFailed_ || written == Written::Failed;
    }
    bool HasFailed() const { return hasFailed_; }

private:
    StandardOutput& own_;
    bool hasFailed_ = false;
};

std::string GroupsFile() {
    const std::string named = EnvironmentVariable("MORQUIL_GROUPS");
    return named.empty() ? ConfigurationFolder() + "/morquil/groups" : named;
}

}  // namespace

int main(int count, char** words) {
    if (!Morquil::OccupyStandardStreams()) {
        return static_cast<int>(ExitCode::Usage);
    }
    // If the library is registered, it is loaded through COM, which each thread must initialize.
    [[maybe_unused]] const morquil::Apartment apartment;
    StandardOutput own;
    IgnoreBrokenPipes();
    Output output(own);
    const std::string device = EnvironmentVariable("MORQUIL_DEVICE");
    const bool isDumb = EnvironmentVariable("TERM") == "dumb";
    const Surroundings surroundings{
        .terminal = {.out = [&output](std::string_view text) { output.Write(text); },
                     .err = &WriteError,
                     .isColoured = own.IsTerminal() && EnvironmentVariable("NO_COLOR").empty() && !isDumb,
                     .width = own.Width(),
                     .openScreen = isDumb ? nullptr : &OpenScreen},
        .defaultAddress = device.empty() ? "127.0.0.1" : device,
        .groupsFile = GroupsFile(),
        .begin = [&own](const Options& options) { Begin(own, options); },
        .prepareLibrary = &TakeLibraryOutput,
        .isInterrupted = isInterrupted};
    ExitCode code = RunProgram(CommandLineWords(count, words), surroundings);
    if (output.HasFailed() && code == ExitCode::Done) {
        PrintMessage(surroundings.terminal, "the output cannot be written");
        code = ExitCode::Usage;
    }
    End(code);
}
