#include "settings/settings_file.h"

#include <chrono>
#include <utility>

#include "core/static_lock.h"

namespace Morquil {
namespace {

NativePath NewNameBeside(const NativePath& path) {
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    const std::string name = ".morquil-" + std::to_string(now) + ".tmp";
    return path.substr(0, path.find_last_of(pathSeparators) + 1) + NativePath(name.begin(), name.end());
}

// Writes a new file in the target's folder and renames it to the target's name. `old` is the target if that exists.
// Returns: false when no new file can replace the target. Returns true when the disk has no room for the text: another
//          way would find no more room either.
bool Replace(const NativePath& target, NativeFile old, std::string_view text) {
    const NativePath name = NewNameBeside(target);
    NativeFile file = NativeFile::Create(name, old);
    if (!file.IsOpen()) {
        return false;
    }
    const bool isWritten = file.Write(text) && file.Sync();
    file.Close();
    old.Close();
    const bool isReplaced = isWritten && RenameFile(name, target);
    if (!isReplaced) {
        RemoveFile(name);
    }
    return isReplaced || !isWritten;
}

// Writes the part that extends the file first: if the disk has no room for it, nothing is lost.
void Overwrite(NativeFile file, std::string_view text) {
    const std::uint64_t oldSize = file.Size();
    const bool fits = text.size() <= oldSize || file.Write(text.substr(static_cast<std::size_t>(oldSize)), oldSize);
    file.SetSize(fits && file.Write(text) ? text.size() : oldSize);
    file.Sync();
}

// Two threads must not overwrite one file at the same time, and one thread's open file must not prevent another's
// rename.
constinit QRN::Core::StaticLock regularFilesLock;

}  // namespace

bool WriteSettingsFile(const std::string& path, std::string_view text) {
    const NativePath target = ToNativePath(path);
    NativeFile file;
    {
        const QRN::Core::StaticLockHold lock(regularFilesLock);
        bool isMissing = false;
        file = NativeFile::ForWriting(target, isMissing);
        if (!file.IsOpen()) {
            return isMissing && !target.empty() && Replace(target, {}, text);
        }
        if (file.IsRegular()) {
            const NativePath name = WithoutLinks(target);
            if (name.empty() || !Replace(name, std::move(file), text)) {
                Overwrite(NativeFile::ForWriting(target, isMissing), text);
            }
            return true;
        }
    }
    file.Write(text);  // outside the lock, since a pipe's reader may be slow
    return true;
}

SettingsFileReader::SettingsFileReader(const std::string& path, const std::atomic<bool>& stopped)
    : file_(NativeFile::ForReading(ToNativePath(path))), stopped_(stopped) {}

}  // namespace Morquil
