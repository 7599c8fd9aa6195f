#pragma once

#include <cstdio>
#include <filesystem>

namespace Morquil::Command {

/// fopen() for every path. Not inherited by other processes.
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

/// Waits until the system has stored what was written. Returns: false with the reason in errno.
bool StoreFile(std::FILE* file);

/// Standard input, for bytes as they are.
std::FILE* StandardInput();

}  // namespace Morquil::Command
