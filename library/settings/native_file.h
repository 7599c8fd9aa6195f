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

/// An open file. No operation throws or kills the process, not even a write to a pipe without a reader.
class NativeFile {
public:
    NativeFile() = default;
    explicit NativeFile(std::intptr_t handle) : handle_(handle) {}
    ~NativeFile() { Close(); }
    NativeFile(NativeFile&& other) noexcept : handle_(std::exchange(other.handle_, none)) {}
    NativeFile& operator=(NativeFile&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }

    bool IsOpen() const { return handle_ != none; }
    /// The system's own descriptor or handle.
    std::intptr_t Get() const { return handle_; }
    void Close();

    /// Reads up to `capacity` bytes; `offset` is the number of bytes read before. Waits for a pipe's writer until
    /// `stopped` is set.
    /// Returns: the number of bytes read; 0 at the end of the file or when reading fails.
    std::size_t Read(char* buffer, std::size_t capacity, std::uint64_t offset, const std::atomic<bool>& stopped);
    /// Writes all of `text` at the current position.
    /// Returns: false when some of it could not be written.
    bool Write(std::string_view text);
    /// Waits until the written data is on the disk.
    bool Flush();

    // For regular files only.
    std::uint64_t Size() const;
    bool SetSize(std::uint64_t size);
    bool Seek(std::uint64_t offset);

private:
    static constexpr std::intptr_t none = -1;

    std::intptr_t handle_ = none;
};

/// A file whose content is to be replaced, opened for writing. It has not been changed yet.
struct TargetFile {
    // clang-format off
    enum class Kind : std::uint8_t {
        Unopenable,  ///< it cannot be opened for writing
        Missing,     ///< it does not exist yet
        Regular,
        Stream,      ///< not a regular file: a pipe, a device
    };
    // clang-format on

    Kind kind = Kind::Unopenable;
    NativeFile file;
    /// The name of a missing or regular file after following all links; empty when no other file can get that name.
    NativePath name;
};

/// Opens the file `path` for writing. Never waits: a pipe without a reader cannot be opened.
/// Throws: std::bad_alloc.
TargetFile OpenTarget(const NativePath& path);
/// Opens a file for reading from its beginning. A pipe without a writer is at its end at once. A folder cannot be
/// opened.
NativeFile OpenForReading(const NativePath& path);

/// Creates a new file, with the mode of `model` if that is open. `exists` becomes true when a file of that name exists
/// already.
NativeFile MakeFile(const NativePath& name, const NativeFile& model, bool& exists);
void RemoveFile(const NativePath& name);
/// Renames the closed file `from` to `to` in one step, replacing a file that has that name, and waits until the change
/// is on the disk.
/// Returns: false on failure; nothing has changed.
bool MoveFileOver(const NativePath& from, const NativePath& to);
std::uint64_t ProcessId();

}  // namespace Morquil
