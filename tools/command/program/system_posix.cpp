#include <csignal>
#include <cstdlib>

#include "command/arguments/exit_code.h"
#include "command/output/screen.h"
#include "command/program/system.h"

namespace Morquil::Command {
namespace {

std::atomic<bool>* interrupted = nullptr;
std::atomic<int> lastSignal{0};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
              "a signal handler may not wait");

void EndBy(int signal) {
    RestoreTerminal();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void HandleSignal(int signal) {
    lastSignal = signal;
    if (interrupted->exchange(true)) {
        EndBy(signal);
    }
}

}  // namespace

std::vector<std::string> CommandLineWords(int count, char** words) {
    return {words + (count > 0 ? 1 : 0), words + count};
}

void NoteInterruption(std::atomic<bool>& flag) {
    interrupted = &flag;
    struct sigaction action {};
    action.sa_handler = &HandleSignal;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

void EndInterrupted() {
    if (lastSignal != 0) {
        EndBy(lastSignal);
    }
    std::_Exit(static_cast<int>(ExitCode::Interrupted));
}

void IgnoreBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

std::string EnvironmentVariable(const char* name) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): this program never changes its environment
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string ConfigurationFolder() {
    const std::string folder = EnvironmentVariable("XDG_CONFIG_HOME");
    return folder.empty() ? EnvironmentVariable("HOME") + "/.config" : folder;
}

}  // namespace Morquil::Command
