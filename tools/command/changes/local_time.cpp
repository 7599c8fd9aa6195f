#include "command/changes/local_time.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace Morquil::Command {

std::string LocalTime(WallClock::time_point time) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const std::time_t seconds = WallClock::to_time_t(whole);
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(time - whole);
    std::array<char, 32> text{};
    // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread at a time, as the header requires
    const std::tm* const local = std::localtime(&seconds);
    const std::size_t length =
        local != nullptr ? std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", local) : 0;
    std::snprintf(text.data() + length, text.size() - length, ".%03d", static_cast<int>(rest.count()));
    return text.data();
}

}  // namespace Morquil::Command
