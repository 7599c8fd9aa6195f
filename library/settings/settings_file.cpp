#include "settings/settings_file.h"

#include "core/static_lock.h"

namespace Morquil {
namespace {

using Kind = TargetFile::Kind;

/// A new file in the target's folder. Deleted at the end of the scope unless it has replaced the target.
class Replacement {
public:
    explicit Replacement(const TargetFile& target) {
        bool exists = !target.name.empty();
        while (exists) {
            name_ = NewNameBeside(target.name);
            file_ = MakeFile(name_, target.file, exists);
        }
        isMade_ = file_.IsOpen();
    }
    ~Replacement() {
        if (isMade_) {
            file_.Close();
            RemoveFile(name_);
        }
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    bool IsMade() const { return isMade_; }
    bool Fill(std::string_view text) { return file_.Write(text) && file_.Flush(); }

    /// Closes both files and renames this one to the target's name.
    /// Returns: false when the rename fails.
    bool TakePlaceOf(TargetFile& target) {
        file_.Close();
        target.file.Close();
        const bool isMoved = MoveFileOver(name_, target.name);
        isMade_ = !isMoved;
        return isMoved;
    }

private:
    static NativePath NewNameBeside(const NativePath& path) {
        static std::atomic<std::uint32_t> lastNumber = 0;
        const std::string name =
            ".morquil-" + std::to_string(ProcessId()) + '-' + std::to_string(++lastNumber) + ".tmp";
        return path.substr(0, path.find_last_of(pathSeparators) + 1) + NativePath(name.begin(), name.end());
    }

    NativePath name_;
    NativeFile file_;
    bool isMade_ = false;
};

// Returns: false when no new file can replace the target. Returns true when the disk has no room for the text: another
//          way would find no more room either.
bool Replace(TargetFile& target, std::string_view text) {
    Replacement replacement(target);
    return replacement.IsMade() && (!replacement.Fill(text) || replacement.TakePlaceOf(target));
}

// Writes the part that extends the file first: if the disk has no room for it, nothing is lost.
void Overwrite(NativeFile file, std::string_view text) {
    const std::uint64_t oldSize = file.Size();
    if (text.size() > oldSize && !(file.Seek(oldSize) && file.Write(text.substr(static_cast<std::size_t>(oldSize))))) {
        file.SetSize(oldSize);
        return;
    }
    file.Seek(0) && file.Write(text) && file.SetSize(text.size()) && file.Flush();
}

// Two threads must not overwrite one file at the same time, and one thread's open file must not prevent another's
// rename.
constinit QRN::Core::StaticLock regularFilesLock;

}  // namespace

bool WriteSettingsFile(const std::string& path, std::string_view text) {
    const NativePath nativePath = ToNativePath(path);
    TargetFile target;
    {
        const QRN::Core::StaticLockHold lock(regularFilesLock);
        target = OpenTarget(nativePath);
        if (target.kind == Kind::Missing) {
            return Replace(target, text);
        }
        if (target.kind == Kind::Regular) {
            if (!Replace(target, text)) {
                Overwrite(OpenTarget(nativePath).file, text);
            }
            return true;
        }
    }
    // Outside the lock, since a pipe's reader may be slow.
    return target.kind == Kind::Stream && (target.file.Write(text), true);
}

}  // namespace Morquil
