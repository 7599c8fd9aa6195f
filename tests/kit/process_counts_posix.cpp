#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/kit/process_counts.h"

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

const Morquil::Testing::SystemsOwn Morquil::Testing::systemsOwn{0, 0};

// What wakes its connection thread.
const std::size_t Morquil::Testing::handlesOfAnAttempt = 1;

const std::size_t Morquil::Testing::handlesOfAnUnloading = 0;

std::size_t Morquil::Testing::ProcessMemory() {
    std::ifstream numbers("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    numbers >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::chrono::nanoseconds Morquil::Testing::ProcessorTime() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}
