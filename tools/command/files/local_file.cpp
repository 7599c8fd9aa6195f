#include "command/files/local_file.h"

#include <cerrno>
#include <memory>
#include <random>
#include <system_error>

#include "command/arguments/exit_code.h"
#include "command/files/native_file.h"

namespace Morquil::Command {
namespace {

struct Closing {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenedFile = std::unique_ptr<std::FILE, Closing>;

[[noreturn]] void Fail(const std::string& name, const char* what, std::error_code reason) {
    throw UsageFailure(name + ": " + what + ": " + reason.message());
}
[[noreturn]] void FailToWrite(const std::string& name, int reason) {
    Fail(name, "cannot be written", std::error_code(reason, std::generic_category()));
}

// Reads one byte more than `mostBytes` if there is more. A directory can be opened, but not read.
std::string ReadAll(std::FILE* file, const std::string& name, std::size_t mostBytes) {
    std::string content(mostBytes + 1, '\0');
    errno = 0;
    content.resize(std::fread(content.data(), 1, content.size(), file));
    if (std::ferror(file) != 0) {
        Fail(name, "cannot be read", std::error_code(errno, std::generic_category()));
    }
    return content;
}

std::string ReadPath(const std::filesystem::path& path, const std::string& name, std::size_t mostBytes) {
    const OpenedFile file(OpenFile(path, "rb"));
    if (file == nullptr) {
        Fail(name, "cannot be read", std::error_code(errno, std::generic_category()));
    }
    return ReadAll(file.get(), name, mostBytes);
}

// Several devices may be given what comes from standard input, which can be read only once.
std::string ReadStandardInput(std::size_t mostBytes) {
    static const std::string content = ReadAll(StandardInput(), "standard input", mostBytes);
    return content;
}

void WriteTo(const std::filesystem::path& path, const std::string& name, std::string_view content) {
    OpenedFile file(OpenFile(path, "wb"));
    const bool isWritten = file != nullptr &&
                           std::fwrite(content.data(), 1, content.size(), file.get()) == content.size() &&
                           std::fflush(file.get()) == 0 && StoreFile(file.get());
    int reason = errno;
    const bool isClosed = file != nullptr && std::fclose(file.release()) == 0;
    reason = isWritten && !isClosed ? errno : reason;
    if (!isWritten || !isClosed) {
        FailToWrite(name, reason);
    }
}

// A read-only file could be replaced, but must not be.
void ExpectWritable(const std::filesystem::path& path, const std::string& name) {
    using std::filesystem::perms;
    const perms permissions = std::filesystem::status(path).permissions();
    const perms anyWrite = perms::owner_write | perms::group_write | perms::others_write;
    if ((permissions & anyWrite) == perms::none) {
        FailToWrite(name, EACCES);
    }
    if (const OpenedFile file(OpenFile(path, "ab")); file == nullptr) {
        FailToWrite(name, errno);
    }
}

void Replace(const std::filesystem::path& target, const std::string& name, std::string_view content, bool exists) {
    const TemporaryFile file(target.parent_path());
    WriteTo(file.Path(), name, content);
    if (ReadPath(file.Path(), name, content.size()) != content) {
        throw UsageFailure(name + ": cannot be written: what was written does not read back");
    }
    std::error_code error;
    if (exists) {
        std::filesystem::permissions(file.Path(), std::filesystem::status(target).permissions(), error);
    }
    std::filesystem::rename(file.Path(), target, error);
    if (error) {
        Fail(name, "cannot be written", error);
    }
}

std::string RandomName() {
    std::random_device random;
    return ".morquilctl-" + std::to_string(random()) + std::to_string(random()) + ".tmp";
}

}  // namespace

std::filesystem::path PathOf(const std::string& name) {
    return {std::u8string(name.begin(), name.end())};
}

std::string ReadLocalFile(const std::string& name, std::size_t mostBytes) {
    std::string content =
        name == standardStream ? ReadStandardInput(mostBytes) : ReadPath(PathOf(name), name, mostBytes);
    if (content.size() > mostBytes) {
        throw UsageFailure(name + ": is too large: more than " + std::to_string(mostBytes) + " bytes");
    }
    return content;
}

void WriteLocalFile(const std::string& name, std::string_view content) {
    std::error_code error;
    const std::filesystem::path path = PathOf(name);
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        Replace(path, name, content, false);
    } else if (std::filesystem::is_regular_file(status)) {
        ExpectWritable(path, name);
        Replace(std::filesystem::canonical(path), name, content, true);
    } else {
        WriteTo(path, name, content);
    }
}

TemporaryFile::TemporaryFile() : TemporaryFile(std::filesystem::temp_directory_path()) {}

TemporaryFile::TemporaryFile(const std::filesystem::path& folder) : path_(folder / RandomName()) {}

TemporaryFile::~TemporaryFile() {
    std::error_code error;
    std::filesystem::remove(path_, error);
}

std::string TemporaryFile::Name() const {
    const std::u8string name = path_.u8string();
    return {name.begin(), name.end()};
}

}  // namespace Morquil::Command
