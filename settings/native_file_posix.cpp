#include "settings/native_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "core/above_standard_streams.h"
#include "core/raised_signals.h"

namespace Morquil {
namespace {

static_assert(sizeof(off_t) == sizeof(std::uint64_t));

int DescriptorOf(const NativeFile& file) {
    return static_cast<int>(file.Get());
}

// A signal handler of the host's must not end a transfer.
template <class Call>
auto Repeat(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

}  // namespace

void NativeFile::Close() {
    if (IsOpen()) {
        close(DescriptorOf(*this));
        handle_ = none;
    }
}

std::size_t NativeFile::Read(char* buffer, std::size_t capacity) {
    const ssize_t count = Repeat([&] { return read(DescriptorOf(*this), buffer, capacity); });
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

bool NativeFile::Flush() {
    return Repeat([&] { return fsync(DescriptorOf(*this)); }) == 0;
}

/// Opened without waiting for a pipe's writer, but then read with waiting for what it writes.
NativeFile OpenForReading(const NativePath& path) {
    NativeFile file(QRN::Core::AboveStandardStreams(
        Repeat([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); })));
    struct stat status {};
    if (!file.IsOpen() || fstat(DescriptorOf(file), &status) != 0 || S_ISDIR(status.st_mode)) {
        return NativeFile();
    }
    fcntl(DescriptorOf(file), F_SETFL, 0);
    return file;
}

}  // namespace Morquil
