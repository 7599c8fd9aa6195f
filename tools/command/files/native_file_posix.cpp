#include <unistd.h>

#include <cerrno>
#include <string>

#include "command/files/native_file.h"

namespace Morquil::Command {

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), (std::string(mode) + "e").c_str());
}

bool StoreFile(std::FILE* file) {
    // Pipes and some file systems cannot be asked to.
    return fsync(fileno(file)) == 0 || errno == EINVAL || errno == EROFS || errno == ENOTSUP;
}

std::FILE* StandardInput() {
    return stdin;
}

}  // namespace Morquil::Command
