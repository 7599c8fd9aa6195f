#include "settings/native_file.h"

#include <windows.h>

namespace Morquil {
namespace {

HANDLE HandleOf(const NativeFile& file) {
    return reinterpret_cast<HANDLE>(file.Get());
}

// Others may read, write, rename or delete the file meanwhile.
NativeFile OpenFile(const NativePath& path, DWORD access, DWORD disposition, DWORD flags) {
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return NativeFile(reinterpret_cast<std::intptr_t>(
        CreateFileW(path.c_str(), access, shareAll, nullptr, disposition, flags, nullptr)));
}

// The name after following all links; empty when the system knows none.
NativePath OwnName(const NativeFile& file) {
    constexpr DWORD kind = FILE_NAME_NORMALIZED | VOLUME_NAME_DOS;
    NativePath name(GetFinalPathNameByHandleW(HandleOf(file), nullptr, 0, kind), L'\0');
    const DWORD length = GetFinalPathNameByHandleW(HandleOf(file), name.data(), static_cast<DWORD>(name.size()), kind);
    name.resize(length < name.size() ? length : 0);
    return name;
}

// A broken link must keep its name, so it cannot be a target.
TargetFile MissingTarget(const NativePath& path) {
    const bool isLink = GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    return isLink || path.empty() ? TargetFile() : TargetFile{TargetFile::Kind::Missing, {}, path};
}

}  // namespace

NativePath ToNativePath(const std::string& path) {
    if (path.find('\0') != std::string::npos) {
        return NativePath();
    }
    const auto convert = [&path](wchar_t* wide, int capacity) {
        const int length = static_cast<int>(path.size());
        return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path.data(), length, wide, capacity);
    };
    NativePath wide(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
    convert(wide.data(), static_cast<int>(wide.size()));
    return wide;
}

void NativeFile::Close() {
    if (IsOpen()) {
        CloseHandle(HandleOf(*this));
        handle_ = none;
    }
}

/// The read is overlapped, so that a wait can check `stopped` regularly.
std::size_t NativeFile::Read(char* buffer, std::size_t capacity, std::uint64_t offset,
                             const std::atomic<bool>& stopped) {
    constexpr DWORD lookIntervalMs = 50;
    OVERLAPPED reading{};
    reading.Offset = static_cast<DWORD>(offset);
    reading.OffsetHigh = static_cast<DWORD>(offset >> 32);
    if (ReadFile(HandleOf(*this), buffer, static_cast<DWORD>(capacity), nullptr, &reading) == FALSE &&
        GetLastError() != ERROR_IO_PENDING) {
        return 0;
    }
    while (!stopped && WaitForSingleObject(HandleOf(*this), lookIntervalMs) == WAIT_TIMEOUT) {
    }
    CancelIo(HandleOf(*this));
    DWORD count = 0;
    return GetOverlappedResult(HandleOf(*this), &reading, &count, TRUE) != FALSE ? count : 0;
}

bool NativeFile::Write(std::string_view text) {
    DWORD count = 0;
    return WriteFile(HandleOf(*this), text.data(), static_cast<DWORD>(text.size()), &count, nullptr) != FALSE &&
           count == text.size();
}

bool NativeFile::Flush() {
    return FlushFileBuffers(HandleOf(*this)) != FALSE;
}

std::uint64_t NativeFile::Size() const {
    LARGE_INTEGER size{};
    return GetFileSizeEx(HandleOf(*this), &size) != FALSE ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

bool NativeFile::SetSize(std::uint64_t size) {
    return Seek(size) && SetEndOfFile(HandleOf(*this)) != FALSE;
}

bool NativeFile::Seek(std::uint64_t offset) {
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(offset);
    return SetFilePointerEx(HandleOf(*this), place, nullptr, FILE_BEGIN) != FALSE;
}

/// Checks the read-only attribute too: an administrator may be able to open a read-only file for writing.
TargetFile OpenTarget(const NativePath& path) {
    using Kind = TargetFile::Kind;
    NativeFile file = OpenFile(path, GENERIC_WRITE, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    if (!file.IsOpen()) {
        return GetLastError() == ERROR_FILE_NOT_FOUND ? MissingTarget(path) : TargetFile();
    }
    if (GetFileType(HandleOf(file)) != FILE_TYPE_DISK) {
        return {Kind::Stream, std::move(file), {}};
    }
    FILE_BASIC_INFO information{};
    if (GetFileInformationByHandleEx(HandleOf(file), FileBasicInfo, &information, sizeof information) == FALSE ||
        (information.FileAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return TargetFile();
    }
    NativePath name = OwnName(file);
    return {Kind::Regular, std::move(file), std::move(name)};
}

NativeFile OpenForReading(const NativePath& path) {
    return OpenFile(path, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_OVERLAPPED);
}

NativeFile MakeFile(const NativePath& name, const NativeFile& /*model*/, bool& exists) {
    NativeFile file = OpenFile(name, GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
    exists = !file.IsOpen() && GetLastError() == ERROR_FILE_EXISTS;
    return file;
}

void RemoveFile(const NativePath& name) {
    DeleteFileW(name.c_str());
}

/// Fails while another process has the file `to` open.
bool MoveFileOver(const NativePath& from, const NativePath& to) {
    return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
}

std::uint64_t ProcessId() {
    return GetCurrentProcessId();
}

}  // namespace Morquil
