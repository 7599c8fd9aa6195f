#include "settings/target_file.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <utility>

#include "core/above_standard_streams.h"
#include "settings/file_attributes.h"

namespace Morquil {
namespace {

using QRN::Core::AboveStandardStreams;

// The name behind a link, or nothing for what is no link.
NativePath LinkTarget(const NativePath& path) {
    std::array<char, PATH_MAX> target;
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) == target.size()) {
        return NativePath();
    }
    const NativePath name(target.data(), static_cast<std::size_t>(length));
    return name.front() == '/' ? name : FolderOf(path) + name;
}

// The links of the process file system lead to open files: their text is a name that the file had once.
bool LeadsToOpenFile(const NativePath& path) {
    struct statfs system {};
    return statfs((FolderOf(path) + '.').c_str(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

// The name behind all links, also when nothing has it; nothing when the links lead to no name.
NativePath FollowLinks(NativePath path) {
    constexpr int mostLinks = 40;
    for (int link = 0; link < mostLinks; ++link) {
        const NativePath target = LinkTarget(path);
        if (target.empty()) {
            return path;
        }
        if (LeadsToOpenFile(path)) {
            return NativePath();
        }
        path = target;
    }
    return NativePath();
}

// Whether this very file is the one that has the name.
bool HasName(const struct stat& status, const NativePath& path) {
    struct stat named {};
    return !path.empty() && lstat(path.c_str(), &named) == 0 && named.st_dev == status.st_dev &&
           named.st_ino == status.st_ino;
}

TargetFile MissingTarget(const NativePath& path) {
    TargetFile target;
    target.path = FollowLinks(path);
    const bool named = !target.path.empty() && target.path.back() != '/';
    target.kind = named ? TargetFile::Kind::Missing : TargetFile::Kind::Unopenable;
    return target;
}

TargetFile RegularTarget(NativeFile file, const struct stat& status, const NativePath& path) {
    NativePath ownName = FollowLinks(path);
    if (status.st_nlink == 1 && HasName(status, ownName)) {
        return {TargetFile::Kind::Replaceable, std::move(file), std::move(ownName)};
    }
    return {TargetFile::Kind::Fixed, std::move(file), path};
}

int OpenNew(const TargetFile& target, const NativePath& path) {
    // The replacement of a private file is private from its first moment on.
    const mode_t mode = target.file.IsOpen() ? 0600 : 0666;
    return AboveStandardStreams(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
}

// A name is safe once the disk has the folder. There is nothing to do about a disk that refuses.
void FlushFolder(const NativePath& folder) {
    NativeFile file(
        AboveStandardStreams(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
    if (file.IsOpen()) {
        file.Flush();
    }
}

}  // namespace

TargetFile OpenTarget(const NativePath& path) {
    NativeFile file(AboveStandardStreams(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)));
    if (!file.IsOpen()) {
        return errno == ENOENT ? MissingTarget(path) : TargetFile();
    }
    const int descriptor = static_cast<int>(file.Get());
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || fcntl(descriptor, F_SETFL, 0) != 0) {
        return TargetFile();
    }
    if (S_ISREG(status.st_mode)) {
        return RegularTarget(std::move(file), status, path);
    }
    return {TargetFile::Kind::Stream, std::move(file), path};
}

ReplacementFile::ReplacementFile(const TargetFile& target) : ReplacementFile() {
    errno = EEXIST;
    for (int attempt = 0; attempt < mostNames && !file_.IsOpen() && errno == EEXIST; ++attempt) {
        path_ = NewNameBeside(target.path, static_cast<std::uint64_t>(getpid()));
        file_ = NativeFile(OpenNew(target, path_));
    }
    if (!file_.IsOpen()) {
        path_.clear();
    } else if (target.file.IsOpen() && !CopyAttributes(target.file, file_)) {
        file_.Close();
    }
}

ReplacementFile::~ReplacementFile() {
    if (!path_.empty()) {
        unlink(path_.c_str());
    }
}

bool ReplacementFile::TakePlaceOf(TargetFile& target) {
    const NativePath folder = FolderOf(target.path);
    file_.Close();
    target.file.Close();
    if (rename(path_.c_str(), target.path.c_str()) != 0) {
        return false;
    }
    path_.clear();
    FlushFolder(folder);
    return true;
}

}  // namespace Morquil
