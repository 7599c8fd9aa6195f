#include "settings/native_file.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "core/above_standard_streams.h"
#include "core/raised_signals.h"

namespace Morquil {
namespace {

static_assert(sizeof(off_t) == sizeof(std::uint64_t));

int DescriptorOf(const NativeFile& file) {
    return static_cast<int>(file.Get());
}

// A signal handled by the host must not end a transfer.
template <class Call>
auto Repeat(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

NativeFile OpenFile(const NativePath& path, int flags, mode_t mode = 0) {
    return NativeFile(QRN::Core::AboveStandardStreams(
        Repeat([&] { return open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); })));
}

// The links in /proc represent open files: their text is a name that the file once had.
bool IsLinkToOpenFile(const std::filesystem::path& link) {
    struct statfs system {};
    return statfs((link.parent_path() / ".").c_str(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

// The name after following all links, even if no file has it. Empty when a link represents an open file, since its text
// may not be that file's name.
NativePath FollowLinks(const NativePath& path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    std::filesystem::path name = path;
    for (int link = 0; link < mostLinks && is_symlink(name, error); ++link) {
        if (IsLinkToOpenFile(name)) {
            return NativePath();
        }
        name = name.parent_path() / read_symlink(name, error);
    }
    return name.native();
}

}  // namespace

NativePath ToNativePath(const std::string& path) {
    return path.find('\0') == std::string::npos ? path : NativePath();
}

void NativeFile::Close() {
    if (IsOpen()) {
        close(DescriptorOf(*this));
        handle_ = none;
    }
}

/// The file is non-blocking, so that a wait can check `stopped` regularly.
std::size_t NativeFile::Read(char* buffer, std::size_t capacity, std::uint64_t /*offset*/,
                             const std::atomic<bool>& stopped) {
    constexpr int lookIntervalMs = 50;
    const auto readSome = [&] { return Repeat([&] { return read(DescriptorOf(*this), buffer, capacity); }); };
    ssize_t count = readSome();
    while (count < 0 && errno == EAGAIN && !stopped) {
        pollfd readable{DescriptorOf(*this), POLLIN, 0};
        poll(&readable, 1, lookIntervalMs);
        count = readSome();
    }
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

bool NativeFile::Write(std::string_view text) {
    const QRN::Core::RaisedSignals raised;
    while (!text.empty()) {
        const ssize_t count = Repeat([&] { return write(DescriptorOf(*this), text.data(), text.size()); });
        if (count <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool NativeFile::Flush() {
    return Repeat([&] { return fsync(DescriptorOf(*this)); }) == 0;
}

std::uint64_t NativeFile::Size() const {
    struct stat status {};
    return fstat(DescriptorOf(*this), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool NativeFile::SetSize(std::uint64_t size) {
    const QRN::Core::RaisedSignals raised;
    return Repeat([&] { return ftruncate(DescriptorOf(*this), static_cast<off_t>(size)); }) == 0;
}

bool NativeFile::Seek(std::uint64_t offset) {
    return lseek(DescriptorOf(*this), static_cast<off_t>(offset), SEEK_SET) >= 0;
}

TargetFile OpenTarget(const NativePath& path) {
    using Kind = TargetFile::Kind;
    NativeFile file = OpenFile(path, O_WRONLY | O_NONBLOCK);
    if (!file.IsOpen()) {
        return errno == ENOENT ? TargetFile{Kind::Missing, {}, FollowLinks(path)} : TargetFile();
    }
    struct stat status {};
    if (fstat(DescriptorOf(file), &status) != 0 || fcntl(DescriptorOf(file), F_SETFL, 0) != 0) {
        return TargetFile();
    }
    if (S_ISREG(status.st_mode)) {
        return {Kind::Regular, std::move(file), FollowLinks(path)};
    }
    return {Kind::Stream, std::move(file), {}};
}

NativeFile OpenForReading(const NativePath& path) {
    NativeFile file = OpenFile(path, O_RDONLY | O_NONBLOCK);
    struct stat status {};
    const bool isFolder = file.IsOpen() && fstat(DescriptorOf(file), &status) == 0 && S_ISDIR(status.st_mode);
    return isFolder ? NativeFile() : std::move(file);
}

/// A file that will replace a private file is private from the moment it exists.
NativeFile MakeFile(const NativePath& name, const NativeFile& model, bool& exists) {
    struct stat status {};
    const bool hasModel = model.IsOpen() && fstat(DescriptorOf(model), &status) == 0;
    NativeFile file = OpenFile(name, O_WRONLY | O_CREAT | O_EXCL, hasModel ? 0600 : 0666);
    exists = !file.IsOpen() && errno == EEXIST;
    if (file.IsOpen() && hasModel) {
        fchmod(DescriptorOf(file), status.st_mode & 0777);
    }
    return file;
}

void RemoveFile(const NativePath& name) {
    unlink(name.c_str());
}

/// A failure to flush the folder is ignored: some disks cannot do it.
bool MoveFileOver(const NativePath& from, const NativePath& to) {
    // Allocate first: after the rename nothing may fail.
    const NativePath folderName = to.substr(0, to.find_last_of(pathSeparators) + 1) + ".";
    if (rename(from.c_str(), to.c_str()) != 0) {
        return false;
    }
    NativeFile folder = OpenFile(folderName, O_RDONLY | O_DIRECTORY);
    if (folder.IsOpen()) {
        folder.Flush();
    }
    return true;
}

std::uint64_t ProcessId() {
    return static_cast<std::uint64_t>(getpid());
}

}  // namespace Morquil
