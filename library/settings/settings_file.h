#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "settings/native_file.h"

namespace Morquil {

/// Replaces the content of the file `path` (UTF-8) with `text`, byte for byte. Creates the file if it does not exist.
///
/// A regular file has either its old content or all of the new content at every moment: the text is written to a new
/// file in the same folder, which is synced and then renamed over the old one. The file keeps its mode. If no new file
/// can replace it (its folder accepts no new files, or another process has it open), it is overwritten. Anything else
/// (a pipe, a device) is written to directly.
///
/// Threads: any, several at once.
/// Returns: whether the file could be opened for writing; if not, nothing has changed. If the file was opened but
///          cannot be written (the disk is full), it keeps its old content and the result is still true.
/// Throws:  std::bad_alloc; the file then keeps its old content.
bool WriteSettingsFile(const std::string& path, std::string_view text);

/// Reads a file from its beginning to its end. A read error counts as the end. One thread at a time.
class SettingsFileReader {
public:
    /// `path` is UTF-8. A folder cannot be opened. A read that waits for a pipe's writer ends once `stopped` is set.
    /// Ownership: `stopped` must outlive the reader.
    /// Throws:    std::bad_alloc.
    SettingsFileReader(const std::string& path, const std::atomic<bool>& stopped);

    bool IsOpen() const { return file_.IsOpen(); }
    /// Reads up to `capacity` of the next bytes.
    /// Returns: the number of bytes read, 0 at the end.
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
