// How a settings file is saved without risk to an existing one.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "morquil/text.hpp"

namespace morquil::detail {

/// A file that is about to be saved. For an existing regular file the new content is saved in a temporary file next to
/// it, and replaces it once it is known to be good. Anything else (no file, a pipe, a device) has nothing to lose and
/// is saved directly.
class SafeFile {
public:
    explicit SafeFile(std::string_view path) : target_(Utf16FromUtf8(path)), name_(target_) {
        std::error_code error;
        const std::filesystem::file_status status = std::filesystem::status(target_, error);
        if (path.find('\0') != std::string_view::npos) {
            return;  // the library refuses it; here it would name another file
        }
        isMissing_ = status.type() == std::filesystem::file_type::not_found;
        isReplaced_ = std::filesystem::is_regular_file(status);
        if (isReplaced_) {
            permissions_ = status.permissions();
            target_ = std::filesystem::canonical(target_, error);
            name_ = target_.parent_path() / NewName();
        }
    }
    /// Removes what has not been kept.
    ~SafeFile() {
        std::error_code error;
        if (!isKept_ && (isReplaced_ || isMissing_) && std::filesystem::is_regular_file(name_, error)) {
            std::filesystem::remove(name_, error);
        }
    }
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    /// Where to save, in UTF-8.
    std::string Name() const { return Utf8FromUtf16(name_.string<OLECHAR>()); }

    /// Call this when the saved content is good.
    /// Returns: false when it cannot replace the old file, which stays.
    bool Keep() {
        std::error_code error;
        if (isReplaced_) {
            if (!MayBeWritten()) {
                return false;
            }
            std::error_code ignored;
            std::filesystem::permissions(name_, permissions_, ignored);
            std::filesystem::rename(name_, target_, error);
        }
        isKept_ = !error;
        return isKept_;
    }

private:
    static std::string NewName() {
        std::random_device random;
        return ".morquil-" + std::to_string(random()) + "-" + std::to_string(random()) + ".tmp";
    }

    /// A read-only file could be replaced, but must not be.
    bool MayBeWritten() const {
        using std::filesystem::perms;
        const perms anyWrite = perms::owner_write | perms::group_write | perms::others_write;
        return (permissions_ & anyWrite) != perms::none && std::ofstream(target_, std::ios::app).is_open();
    }

    std::filesystem::path target_;
    std::filesystem::path name_;
    std::filesystem::perms permissions_ = std::filesystem::perms::unknown;
    bool isReplaced_ = false;
    bool isMissing_ = false;
    bool isKept_ = false;
};

}  // namespace morquil::detail
