#include "settings/settings_file.h"

#include <algorithm>

#include "core/static_lock.h"
#include "settings/target_file.h"

namespace Morquil {
namespace {

// The first `length` bytes of a file's content, or fewer when it cannot be read.
std::string ContentOf(const NativePath& path, std::size_t length) {
    std::string content(length, '\0');
    NativeFile file = OpenForReading(path);
    std::size_t filled = 0;
    while (file.IsOpen() && filled < length) {
        const std::size_t count = file.Read(content.data() + filled, length - filled);
        if (count == 0) {
            break;
        }
        filled += count;
    }
    content.resize(filled);
    return content;
}

bool WriteAt(NativeFile& file, std::uint64_t offset, std::string_view text) {
    return file.Seek(offset) && file.Write(text) && file.Flush();
}

// Overwrites a file that cannot be replaced. Whatever could not be given back is not overwritten.
void Overwrite(TargetFile& target, std::string_view text) {
    NativeFile& file = target.file;
    const std::uint64_t oldSize = file.Size();
    const std::size_t shared = static_cast<std::size_t>(std::min<std::uint64_t>(oldSize, text.size()));
    const std::string oldContent = ContentOf(target.path, shared);
    if (oldContent.size() < shared) {
        return;
    }
    // What the file grows by goes first: where there is no room for it, nothing has been lost.
    if (shared < text.size() && !WriteAt(file, shared, text.substr(shared))) {
        file.SetSize(oldSize);
        return;
    }
    if (!WriteAt(file, 0, text.substr(0, shared))) {
        WriteAt(file, 0, oldContent);
        file.SetSize(oldSize);
        return;
    }
    file.SetSize(text.size());
    file.Flush();
}

// Gives the target's name to a new file. Returns: false when this new file cannot have it. One that the text does not
// fit into has no use, but the target has been dealt with: another way would find no more room.
bool Replace(TargetFile& target, std::string_view text) {
    ReplacementFile replacement(target);
    if (!replacement.IsOpen()) {
        return false;
    }
    const bool filled = replacement.File().Write(text) && replacement.File().Flush();
    return !filled || replacement.TakePlaceOf(target);
}

// Opens the target once more: the attempt to replace it has closed it.
void OverwriteAgain(const NativePath& path, std::string_view text) {
    TargetFile target = OpenTarget(path);
    if (target.kind == TargetFile::Kind::Replaceable || target.kind == TargetFile::Kind::Fixed) {
        Overwrite(target, text);
    }
}

// Returns: whether it could be opened.
bool WriteRegularFile(TargetFile& target, const NativePath& path, std::string_view text) {
    if (target.kind == TargetFile::Kind::Fixed) {
        Overwrite(target, text);
        return true;
    }
    const bool missing = target.kind == TargetFile::Kind::Missing;
    const bool replaced = Replace(target, text);
    if (!replaced && !missing) {
        OverwriteAgain(path, text);
    }
    return replaced || !missing;
}

// Two texts must not be written over one file at once, nor one thread's open file keep another's from its place.
constinit QRN::Core::StaticLock regularFilesLock;

}  // namespace

bool WriteSettingsFile(const std::string& path, std::string_view text) {
    const NativePath nativePath = ToNativePath(path);
    TargetFile target;
    {
        const QRN::Core::StaticLockHold lock(regularFilesLock);
        target = OpenTarget(nativePath);
        if (target.kind == TargetFile::Kind::Unopenable) {
            return false;
        }
        if (target.kind != TargetFile::Kind::Stream) {
            return WriteRegularFile(target, nativePath, text);
        }
    }
    // Whoever reads a pipe may take its time.
    target.file.Write(text);
    return true;
}

}  // namespace Morquil
