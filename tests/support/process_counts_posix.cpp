#include <filesystem>
#include <iterator>

#include "tests/support/process_counts.h"

namespace {

std::size_t EntriesOf(const char* folder) {
    const std::filesystem::directory_iterator first(folder);
    return static_cast<std::size_t>(std::distance(first, {}));
}

}  // namespace

std::size_t Morquil::Testing::OpenHandleCount() {
    return EntriesOf("/proc/self/fd");
}

std::size_t Morquil::Testing::ThreadCount() {
    return EntriesOf("/proc/self/task");
}
