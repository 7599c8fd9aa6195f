#include <filesystem>
#include <iterator>

#include "tests/transport/handle_count.h"

std::size_t Morquil::Testing::OpenHandleCount() {
    const std::filesystem::directory_iterator first("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(first, {}));
}
