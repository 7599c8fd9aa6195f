// How a settings file is saved without risk to the one that is there.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "morquil/text.hpp"

namespace morquil::detail {

/// A file that is first saved beside its name, and gets that name once the content is known to be good. What is no
/// regular file (a pipe, a device) has nothing to lose and is saved as it is.
class SafeFile {
public:
    explicit SafeFile(std::string_view path) : target_(Utf16FromUtf8(path)), name_(target_) {
        std::error_code error;
        const std::filesystem::file_status status = std::filesystem::status(target_, error);
        isThere_ = std::filesystem::is_regular_file(status);
        isBeside_ = isThere_ || status.type() == std::filesystem::file_type::not_found;
        // A path with a zero character in it is the library's to refuse.
        if (path.find('\0') != std::string_view::npos || !isBeside_) {
            isBeside_ = false;
            return;
        }
        if (isThere_) {
            target_ = std::filesystem::canonical(target_, error);
            permissions_ = status.permissions();
        }
        name_ = target_.parent_path() / NewName();
    }
    ~SafeFile() {
        if (isBeside_) {
            std::error_code error;
            std::filesystem::remove(name_, error);
        }
    }
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    /// Where to save, in UTF-8.
    std::string Name() const { return Utf8FromUtf16(name_.string<OLECHAR>()); }

    /// Gives the saved file the name that it is to have. Returns: false when that cannot be; nothing has changed.
    bool TakePlace() {
        if (!isBeside_) {
            return true;
        }
        std::error_code error;
        if (isThere_) {
            // Replacing a file is not to change what may not be written.
            if (!std::ofstream(target_, std::ios::app)) {
                return false;
            }
            std::filesystem::permissions(name_, permissions_, error);
        }
        std::filesystem::rename(name_, target_, error);
        isBeside_ = static_cast<bool>(error);
        return !error;
    }

private:
    static std::string NewName() {
        std::random_device random;
        return ".morquil-" + std::to_string(random()) + "-" + std::to_string(random()) + ".tmp";
    }

    std::filesystem::path target_;
    std::filesystem::path name_;
    std::filesystem::perms permissions_ = std::filesystem::perms::unknown;
    bool isThere_ = false;
    bool isBeside_ = false;
};

}  // namespace morquil::detail
