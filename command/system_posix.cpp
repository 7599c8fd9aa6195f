#include <csignal>
#include <cstdlib>

#include "command/system.h"

namespace Morquil::Command {
namespace {

std::atomic<bool>* interrupted = nullptr;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");

void HandleSignal(int /*signal*/) {
    interrupted->store(true);
}

}  // namespace

std::vector<std::string> CommandLineWords(int count, char** words) {
    return {words + (count > 0 ? 1 : 0), words + count};
}

void NoteInterruption(std::atomic<bool>& flag) {
    interrupted = &flag;
    struct sigaction action {};
    action.sa_handler = &HandleSignal;
    // A second one ends the program in any case.
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

std::string EnvironmentVariable(const char* name) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): this program never changes its environment
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace Morquil::Command
