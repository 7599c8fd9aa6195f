#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace Morquil {

/// A path in the system's own form, and the characters that may precede the file name in it.
#ifdef _WIN32
using NativePath = std::wstring;
inline constexpr wchar_t pathSeparators[] = L"\\/:";
#else
using NativePath = std::string;
inline constexpr char pathSeparators[] = "/";
#endif

/// Converts `path` (UTF-8) to the system's form. Empty, which names no file, when `path` is malformed or contains a
/// zero character.
/// Throws: std::bad_alloc.
NativePath ToNativePath(const std::string& path);
/// The name of an existing file after following links, where the system has them; empty when it has no name.
/// Throws: std::bad_alloc.
NativePath WithoutLinks(const NativePath& path);
/// Renames the closed file `from` to `to` in one step, replacing a file that has that name.
/// Returns: false on failure; nothing has changed.
bool RenameFile(const NativePath& from, const NativePath& to);
void RemoveFile(const NativePath& path);

/// An open file. No operation throws or kills the process, not even a write to a pipe without a reader.
class NativeFile {
public:
    /// Opens an existing file for reading. A pipe without a writer is at its end at once. A folder cannot be opened.
    static NativeFile ForReading(const NativePath& path);
    /// Opens an existing file for writing, without changing it. Never waits: a pipe without a reader cannot be opened.
    /// Sets `isMissing` when there is no such file.
    static NativeFile ForWriting(const NativePath& path, bool& isMissing);
    /// Creates a file, with the mode of `model` if that is open. No file of that name may exist.
    static NativeFile Create(const NativePath& path, const NativeFile& model);

    NativeFile() = default;
    ~NativeFile() { Close(); }
    NativeFile(NativeFile&& other) noexcept : handle_(std::exchange(other.handle_, none)) {}
    NativeFile& operator=(NativeFile&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }

    bool IsOpen() const { return handle_ != none; }
    /// Whether it is a file on a disk, not a pipe or a device.
    bool IsRegular() const;
    /// The size of a regular file in bytes.
    std::uint64_t Size() const;
    bool SetSize(std::uint64_t size);
    void Close();

    /// Reads up to `capacity` bytes at `offset`, which is the number of bytes read before. Waits for a pipe's writer
    /// until `stopped` is set.
    /// Returns: the number of bytes read; 0 at the end of the file or when reading fails.
    std::size_t Read(char* buffer, std::size_t capacity, std::uint64_t offset, const std::atomic<bool>& stopped);
    /// Writes all of `text`, in a regular file at `offset`.
    /// Returns: false when some of it could not be written.
    bool Write(std::string_view text, std::uint64_t offset = 0);
    /// Waits until the written data is on the disk.
    bool Sync();

private:
    static constexpr std::intptr_t none = -1;

    explicit NativeFile(std::intptr_t handle) : handle_(handle) {}

    std::intptr_t handle_ = none;  // a descriptor or a HANDLE
};

}  // namespace Morquil
