#include "tests/kit/temporary_folder.h"

#include <fstream>
#include <iterator>
#include <random>

namespace Morquil::Testing {

std::filesystem::path ToPath(const std::string& path) {
    return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

std::string ToText(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    do {
        path_ = std::filesystem::temp_directory_path() / ("settings-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::PathOf(const std::string& name) const {
    return ToText(path_ / ToPath(name));
}

std::string TemporaryFolder::Make(const std::string& name, const std::string& content) const {
    std::ofstream(path_ / ToPath(name), std::ios::binary) << content;
    return PathOf(name);
}

std::set<std::string> TemporaryFolder::Names() const {
    std::set<std::string> names;
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(path_)) {
        names.insert(ToText(entry.path().filename()));
    }
    return names;
}

std::string ContentOf(const std::string& path) {
    std::ifstream file(ToPath(path), std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : std::string("(none)");
}

}  // namespace Morquil::Testing
