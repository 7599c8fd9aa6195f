#include <fcntl.h>
#include <io.h>

#include <string>

#include "command/files/native_file.h"

namespace Morquil::Command {

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    const std::string narrow = std::string(mode) + "N";
    return _wfopen(path.c_str(), std::wstring(narrow.begin(), narrow.end()).c_str());
}

bool StoreFile(std::FILE* file) {
    return _commit(_fileno(file)) == 0;
}

std::FILE* StandardInput() {
    _setmode(_fileno(stdin), _O_BINARY);
    return stdin;
}

}  // namespace Morquil::Command
