#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "core/above_standard_streams.h"
#include "core/raised_signals.h"
#include "settings/native_file.h"

namespace Morquil {
namespace {

static_assert(sizeof(off_t) == sizeof(std::uint64_t));

// A signal handled by the host must not end a transfer.
template <class Call>
auto Repeat(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

int Open(const NativePath& path, int flags, mode_t mode = 0) {
    return QRN::Core::AboveStandardStreams(
        Repeat([&] { return open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); }));
}

struct stat StatusOf(std::intptr_t descriptor) {
    struct stat status {};
    fstat(static_cast<int>(descriptor), &status);  // all zero if it fails
    return status;
}

}  // namespace

NativePath ToNativePath(const std::string& path) {
    return path.find('\0') == std::string::npos ? path : NativePath();
}

NativePath WithoutLinks(const NativePath& path) {
    const std::unique_ptr<char, decltype(&std::free)> name(realpath(path.c_str(), nullptr), &std::free);
    return name != nullptr ? NativePath(name.get()) : NativePath();
}

bool RenameFile(const NativePath& from, const NativePath& to) {
    return rename(from.c_str(), to.c_str()) == 0;
}

void RemoveFile(const NativePath& path) {
    unlink(path.c_str());
}

/// Non-blocking, so that a wait can check `stopped` regularly.
NativeFile NativeFile::ForReading(const NativePath& path) {
    NativeFile file(Open(path, O_RDONLY | O_NONBLOCK));
    return S_ISDIR(StatusOf(file.handle_).st_mode) ? NativeFile() : std::move(file);
}

/// Opened without blocking, but writes wait for a pipe's reader.
NativeFile NativeFile::ForWriting(const NativePath& path, bool& isMissing) {
    NativeFile file(Open(path, O_WRONLY | O_NONBLOCK));
    isMissing = !file.IsOpen() && errno == ENOENT;
    return fcntl(static_cast<int>(file.handle_), F_SETFL, 0) == 0 ? std::move(file) : NativeFile();
}

/// A file that will replace a private file is private from the moment it exists.
NativeFile NativeFile::Create(const NativePath& path, const NativeFile& model) {
    NativeFile file(Open(path, O_WRONLY | O_CREAT | O_EXCL, model.IsOpen() ? 0600 : 0666));
    if (file.IsOpen() && model.IsOpen()) {
        fchmod(static_cast<int>(file.handle_), StatusOf(model.handle_).st_mode & 0777);
    }
    return file;
}

bool NativeFile::IsRegular() const {
    return S_ISREG(StatusOf(handle_).st_mode);
}

std::uint64_t NativeFile::Size() const {
    return static_cast<std::uint64_t>(StatusOf(handle_).st_size);
}

bool NativeFile::SetSize(std::uint64_t size) {
    return Repeat([&] { return ftruncate(static_cast<int>(handle_), static_cast<off_t>(size)); }) == 0;
}

void NativeFile::Close() {
    if (IsOpen()) {
        close(static_cast<int>(std::exchange(handle_, none)));
    }
}

std::size_t NativeFile::Read(char* buffer, std::size_t capacity, std::uint64_t /*offset*/,
                             const std::atomic<bool>& stopped) {
    constexpr int checkIntervalMs = 50;
    pollfd readable{static_cast<int>(handle_), POLLIN, 0};
    const auto readSome = [&] { return Repeat([&] { return read(readable.fd, buffer, capacity); }); };
    ssize_t count = readSome();
    while (count < 0 && errno == EAGAIN && !stopped) {
        poll(&readable, 1, checkIntervalMs);
        count = readSome();
    }
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

bool NativeFile::Write(std::string_view text, std::uint64_t offset) {
    const QRN::Core::RaisedSignals raised;
    const int descriptor = static_cast<int>(handle_);
    lseek(descriptor, static_cast<off_t>(offset), SEEK_SET);  // fails for a pipe, which has no offset
    while (!text.empty()) {
        const ssize_t count = Repeat([&] { return write(descriptor, text.data(), text.size()); });
        if (count <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool NativeFile::Sync() {
    return Repeat([&] { return fsync(static_cast<int>(handle_)); }) == 0;
}

}  // namespace Morquil
