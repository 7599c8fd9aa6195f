#include "settings/target_file.h"

#include <windows.h>

#include <utility>

#include "settings/file_attributes.h"

namespace Morquil {
namespace {

HANDLE HandleOf(const NativeFile& file) {
    return reinterpret_cast<HANDLE>(file.Get());
}

bool Exists(const NativePath& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// The name behind all links; nothing when the system knows none.
NativePath OwnName(const NativeFile& file) {
    constexpr DWORD kind = FILE_NAME_NORMALIZED | VOLUME_NAME_DOS;
    NativePath name(GetFinalPathNameByHandleW(HandleOf(file), nullptr, 0, kind), L'\0');
    const DWORD length = GetFinalPathNameByHandleW(HandleOf(file), name.data(), static_cast<DWORD>(name.size()), kind);
    name.resize(length < name.size() ? length : 0);
    return name;
}

// A link that leads nowhere has a name that must stay its own.
TargetFile MissingTarget(const NativePath& path) {
    TargetFile target;
    target.path = path;
    target.kind = Exists(path) ? TargetFile::Kind::Unopenable : TargetFile::Kind::Missing;
    return target;
}

// An administrator may get a file opened for writing that is marked as read-only.
TargetFile DiskTarget(NativeFile file, const NativePath& path) {
    BY_HANDLE_FILE_INFORMATION information{};
    if (GetFileInformationByHandle(HandleOf(file), &information) == FALSE ||
        (information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return TargetFile();
    }
    NativePath ownName = OwnName(file);
    if (information.nNumberOfLinks == 1 && !ownName.empty()) {
        return {TargetFile::Kind::Replaceable, std::move(file), std::move(ownName)};
    }
    return {TargetFile::Kind::Fixed, std::move(file), path};
}

// Others may do with the file what they like meanwhile.
NativeFile OpenForWriting(const NativePath& path) {
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return NativeFile(reinterpret_cast<std::intptr_t>(
        CreateFileW(path.c_str(), GENERIC_WRITE, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

NativeFile CreateNew(const NativePath& path) {
    return NativeFile(reinterpret_cast<std::intptr_t>(
        CreateFileW(path.c_str(), GENERIC_WRITE | WRITE_DAC, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

}  // namespace

TargetFile OpenTarget(const NativePath& path) {
    NativeFile file = OpenForWriting(path);
    if (!file.IsOpen()) {
        return GetLastError() == ERROR_FILE_NOT_FOUND && !path.empty() ? MissingTarget(path) : TargetFile();
    }
    if (GetFileType(HandleOf(file)) == FILE_TYPE_DISK) {
        return DiskTarget(std::move(file), path);
    }
    return {TargetFile::Kind::Stream, std::move(file), path};
}

ReplacementFile::ReplacementFile(const TargetFile& target) : ReplacementFile() {
    SetLastError(ERROR_FILE_EXISTS);
    for (int attempt = 0; attempt < mostNames && !file_.IsOpen() && GetLastError() == ERROR_FILE_EXISTS; ++attempt) {
        path_ = NewNameBeside(target.path, GetCurrentProcessId());
        file_ = CreateNew(path_);
    }
    if (!file_.IsOpen()) {
        path_.clear();
    } else if (target.file.IsOpen() && !CopyAttributes(target.file, file_)) {
        file_.Close();
    }
}

ReplacementFile::~ReplacementFile() {
    if (!path_.empty()) {
        file_.Close();
        DeleteFileW(path_.c_str());
    }
}

/// Replacing in one step is refused while anybody has the target open.
bool ReplacementFile::TakePlaceOf(TargetFile& target) {
    file_.Close();
    target.file.Close();
    if (MoveFileExW(path_.c_str(), target.path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == FALSE) {
        return false;
    }
    path_.clear();
    return true;
}

}  // namespace Morquil
