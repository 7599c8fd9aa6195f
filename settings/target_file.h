#pragma once

#include <cstdint>

#include "settings/native_file.h"

namespace Morquil {

/// A file that is to get a new content, opened for writing; nothing of it has changed yet.
struct TargetFile {
    // clang-format off
    enum class Kind : std::uint8_t {
        Unopenable,   ///< it cannot be written
        Missing,      ///< there is none yet
        Replaceable,  ///< a regular file whose place another file can take
        Fixed,        ///< a regular file that must stay the file that it is: it has other names, or none
        Stream,       ///< no regular file: a pipe, a device
    };
    // clang-format on

    Kind kind = Kind::Unopenable;
    NativeFile file;
    /// The file's own name, behind all links, where its place can be taken; else the name it was opened by.
    NativePath path;
};

/// Opens the file `path`. Waits for nobody: a pipe that nobody reads cannot be opened. Throws: std::bad_alloc.
TargetFile OpenTarget(const NativePath& path);

/// A new, empty file beside a target. Goes away again unless it has taken the target's place.
class ReplacementFile {
public:
    /// One that may be used by whoever may use `target`. Throws: std::bad_alloc.
    explicit ReplacementFile(const TargetFile& target);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Whether it could be made.
    bool IsOpen() const { return file_.IsOpen(); }
    NativeFile& File() { return file_; }

    /// Closes both files and gives this one the target's name, in one step for everybody who looks.
    /// Returns: false when it cannot; the target is as it was, but closed.
    bool TakePlaceOf(TargetFile& target);

private:
    /// Nothing yet. Once it is there the destructor cleans up, whatever the rest of a construction throws.
    ReplacementFile() = default;

    static constexpr int mostNames = 100;

    NativeFile file_;
    NativePath path_;
};

/// The part of `path` before the file's name, with the separator at its end; empty when there is none.
NativePath FolderOf(const NativePath& path);
/// A name beside `path` that this process has not used before.
NativePath NewNameBeside(const NativePath& path, std::uint64_t processId);

}  // namespace Morquil
