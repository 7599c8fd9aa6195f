#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "settings/native_file.h"

namespace Morquil {

/// Makes `text` the content of the file `path` (UTF-8), byte for byte; makes the file when there is none.
///
/// A regular file has its old content or all of the new one at every moment: the text goes to a file beside it, which
/// then takes its place and its permissions. Links keep leading where they led. Where no file beside it can take its
/// place (it has several names, its folder takes no new files) it is overwritten, and gets its old content back when
/// the new one does not fit. Anything else (a pipe, a device) is written as it is.
///
/// Threads: any, several at once.
/// Returns: whether the file could be opened for writing; when not, nothing has changed. A file that could be opened
///          and then not be written (the disk is full) keeps its old content, and the answer is still true.
/// Throws:  std::bad_alloc; the file has its old content then.
bool WriteSettingsFile(const std::string& path, std::string_view text);

/// Reads a file from its beginning to its end; what cannot be read ends it. One thread at a time.
class SettingsFileReader {
public:
    /// `path` is UTF-8. A folder cannot be opened. Throws: std::bad_alloc.
    explicit SettingsFileReader(const std::string& path) : file_(OpenForReading(ToNativePath(path))) {}

    bool IsOpen() const { return file_.IsOpen(); }
    /// Reads up to `capacity` of the next bytes. Returns: their number, 0 at the end.
    std::size_t Read(char* buffer, std::size_t capacity) { return file_.Read(buffer, capacity); }

private:
    NativeFile file_;
};

}  // namespace Morquil
