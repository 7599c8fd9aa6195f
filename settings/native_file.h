#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "settings/native_path.h"

namespace Morquil {

/// An open file of the system's. Nothing here throws or kills the process, not even writing to a pipe without a reader.
class NativeFile {
public:
    NativeFile() = default;
    explicit NativeFile(std::intptr_t handle) : handle_(handle) {}
    ~NativeFile() { Close(); }
    NativeFile(NativeFile&& other) noexcept : handle_(other.handle_) { other.handle_ = none; }
    NativeFile& operator=(NativeFile&& other) noexcept;

    bool IsOpen() const { return handle_ != none; }
    /// The system's own descriptor or handle.
    std::intptr_t Get() const { return handle_; }
    void Close();

    /// Reads up to `capacity` of the next bytes. Returns: their number; 0 at the end, also when reading fails.
    std::size_t Read(char* buffer, std::size_t capacity);
    /// Writes all of `text` next. Returns: false when some of it was not taken.
    bool Write(std::string_view text);

    // Of regular files only.
    std::uint64_t Size() const;
    bool SetSize(std::uint64_t size);
    /// Goes to a place counted from the beginning.
    bool Seek(std::uint64_t offset);
    /// Returns when the disk has what was written.
    bool Flush();

private:
    static constexpr std::intptr_t none = -1;

    std::intptr_t handle_ = none;
};

/// Opens a file to be read from its beginning. A pipe that nobody writes to is at its end at once; a
/// folder cannot be opened.
NativeFile OpenForReading(const NativePath& path);

}  // namespace Morquil
