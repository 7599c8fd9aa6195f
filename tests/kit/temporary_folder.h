// A private folder for a test, and its files.
#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace Morquil::Testing {

/// An empty folder that is removed, with its content, at the end of its scope. Names and paths are UTF-8.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    /// The path of the file `name` in this folder.
    std::string PathOf(const std::string& name) const;
    /// Creates the file `name`. Returns: its path.
    std::string Make(const std::string& name, const std::string& content) const;
    /// All names in this folder.
    std::set<std::string> Names() const;

private:
    std::filesystem::path path_;
};

/// The bytes of a file; "(none)" when it cannot be opened.
std::string ContentOf(const std::string& path);

/// UTF-8 to a path and back.
std::filesystem::path ToPath(const std::string& path);
std::string ToText(const std::filesystem::path& path);

}  // namespace Morquil::Testing
