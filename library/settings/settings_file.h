#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "settings/native_file.h"

namespace Morquil {

/// Makes `text` the content of the file `path` (UTF-8), byte for byte; makes the file when there is none.
///
/// A regular file has its old content or all of the new one at every moment: the text goes to a file beside it, which
/// is synced and then renamed over it. It keeps its mode; symbolic links to it stay. Where no file beside it can take
/// its place (its folder takes no new files, another process keeps it open) it is overwritten. Anything else (a pipe, a
/// device) is written as it is.
///
/// Threads: any, several at once.
/// Returns: whether the file could be opened for writing; when not, nothing has changed. A file that could be opened
///          and then not be written (the disk is full) keeps its old content, and the answer is still true.
/// Throws:  std::bad_alloc; the file has its old content then.
bool WriteSettingsFile(const std::string& path, std::string_view text);

/// Reads a file from its beginning to its end; what cannot be read ends it. One thread at a time.
class SettingsFileReader {
public:
    /// `path` is UTF-8. A folder cannot be opened.
    /// Throws: std::bad_alloc.
    /// A read that waits for a pipe's writer ends once `stopped`, which outlives the reader, is set.
    SettingsFileReader(const std::string& path, const std::atomic<bool>& stopped)
        : file_(OpenForReading(ToNativePath(path))), stopped_(stopped) {}

    bool IsOpen() const { return file_.IsOpen(); }
    /// Reads up to `capacity` of the next bytes.
    /// Returns: their number, 0 at the end.
    std::size_t Read(char* buffer, std::size_t capacity) {
        const std::size_t count = file_.Read(buffer, capacity, offset_, stopped_);
        offset_ += count;
        return count;
    }

private:
    NativeFile file_;
    std::uint64_t offset_ = 0;
    const std::atomic<bool>& stopped_;
};

}  // namespace Morquil
