#pragma once

#include <cstddef>
#include <string>

namespace Morquil::Simulator {

/// The content of a file, or why it is unusable.
struct FileReading {
    std::string content;
    std::string error;
};

/// Reads a whole file of at most `limit` bytes, a multiple of 1 MiB.
FileReading ReadInputFile(const std::string& name, std::size_t limit);

}  // namespace Morquil::Simulator
