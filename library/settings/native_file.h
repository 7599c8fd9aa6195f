#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace Morquil {

/// A path as the system takes it, and the characters that may precede a file's own name.
#ifdef _WIN32
using NativePath = std::wstring;
inline constexpr wchar_t pathSeparators[] = L"\\/:";
#else
using NativePath = std::string;
inline constexpr char pathSeparators[] = "/";
#endif

/// The system's form of `path` (UTF-8). Empty, which names no file, when it is malformed or holds a zero character.
/// Throws: std::bad_alloc.
NativePath ToNativePath(const std::string& path);

/// An open file. Nothing here throws or kills the process, not even writing to a pipe without a reader.
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

    /// Reads up to `capacity` bytes, after the `offset` bytes that were read before. Waits for a pipe's writer until
    /// `stopped` is set.
    /// Returns: their number; 0 at the end, also when reading fails.
    std::size_t Read(char* buffer, std::size_t capacity, std::uint64_t offset, const std::atomic<bool>& stopped);
    /// Writes all of `text` next.
    /// Returns: false when some of it was not taken.
    bool Write(std::string_view text);
    /// Returns when the disk has what was written.
    bool Flush();

    // Of regular files only.
    std::uint64_t Size() const;
    bool SetSize(std::uint64_t size);
    bool Seek(std::uint64_t offset);

private:
    static constexpr std::intptr_t none = -1;

    std::intptr_t handle_ = none;
};

/// A file that is to get a new content, opened for writing; nothing of it has changed yet.
struct TargetFile {
    // clang-format off
    enum class Kind : std::uint8_t {
        Unopenable,  ///< it cannot be written
        Missing,     ///< there is none yet
        Regular,
        Stream,      ///< no regular file: a pipe, a device
    };
    // clang-format on

    Kind kind = Kind::Unopenable;
    NativeFile file;
    /// The name of a missing or regular file, at the end of all links; empty when no other file can be given that name.
    NativePath name;
};

/// Opens the file `path` for writing. Never waits: a pipe without a reader cannot be opened.
/// Throws: std::bad_alloc.
TargetFile OpenTarget(const NativePath& path);
/// Opens a file to be read from its beginning. A pipe without a writer is at its end at once; a folder cannot be
/// opened.
NativeFile OpenForReading(const NativePath& path);

/// Makes a file that does not exist yet, with the mode of `model` if that is open. `exists` says that there is one.
NativeFile MakeFile(const NativePath& name, const NativeFile& model, bool& exists);
void RemoveFile(const NativePath& name);
/// Gives the closed file `from` the name `to` in one step, whether or not another file has it, and returns when the
/// disk has that.
/// Returns: false when it cannot; nothing has changed.
bool MoveFileOver(const NativePath& from, const NativePath& to);
std::uint64_t ProcessId();

}  // namespace Morquil
