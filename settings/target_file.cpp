#include "settings/target_file.h"

#include <atomic>

namespace Morquil {

NativePath FolderOf(const NativePath& path) {
    const std::size_t separator = path.find_last_of(pathSeparators);
    return separator == NativePath::npos ? NativePath() : path.substr(0, separator + 1);
}

NativePath NewNameBeside(const NativePath& path, std::uint64_t processId) {
    static std::atomic<std::uint32_t> lastNumber = 0;
    const std::string name = ".morquil-" + std::to_string(processId) + '-' + std::to_string(++lastNumber) + ".tmp";
    return FolderOf(path) + NativePath(name.begin(), name.end());
}

}  // namespace Morquil
