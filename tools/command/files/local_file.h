// Files on this machine, and standard input and output in their place.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace Morquil::Command {

/// Stands for standard input or standard output.
inline constexpr std::string_view standardStream = "-";

/// A path from UTF-8.
std::filesystem::path PathOf(const std::string& name);

/// The content of a file, or of standard input.
/// Throws: UsageFailure with the system's reason, or if there are more than `mostBytes`.
std::string ReadLocalFile(const std::string& name, std::size_t mostBytes);

/// Writes a file. A regular file is replaced as a whole, and only after the new content has been read back; a device or
/// a pipe is written directly.
/// Throws: UsageFailure with the system's reason. An existing regular file is then unchanged.
void WriteLocalFile(const std::string& name, std::string_view content);

/// A file name unique to this process; the file is removed at the end.
class TemporaryFile {
public:
    /// In the system's folder for temporary files.
    TemporaryFile();
    explicit TemporaryFile(const std::filesystem::path& folder);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    /// In UTF-8.
    std::string Name() const;

private:
    std::filesystem::path path_;
};

}  // namespace Morquil::Command
