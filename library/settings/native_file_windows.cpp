#include <windows.h>

#include "settings/native_file.h"

namespace Morquil {
namespace {

HANDLE HandleOf(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

// Others may read, write, rename or delete the file meanwhile.
std::intptr_t Open(const NativePath& path, DWORD access, DWORD disposition, DWORD flags) {
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return reinterpret_cast<std::intptr_t>(
        CreateFileW(path.c_str(), access, shareAll, nullptr, disposition, flags, nullptr));
}

OVERLAPPED At(std::uint64_t offset) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
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

NativePath WithoutLinks(const NativePath& path) {
    return path;
}

/// Fails while another process has the file `to` open.
bool RenameFile(const NativePath& from, const NativePath& to) {
    return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
}

void RemoveFile(const NativePath& path) {
    DeleteFileW(path.c_str());
}

/// Overlapped, so that a wait can check `stopped` regularly.
NativeFile NativeFile::ForReading(const NativePath& path) {
    return NativeFile(Open(path, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_OVERLAPPED));
}

/// Checks the read-only attribute too: an administrator may be able to open a read-only file for writing.
NativeFile NativeFile::ForWriting(const NativePath& path, bool& isMissing) {
    NativeFile file(Open(path, GENERIC_WRITE, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL));
    isMissing = !file.IsOpen() && GetLastError() == ERROR_FILE_NOT_FOUND;
    FILE_BASIC_INFO information{};
    const bool isReadOnly =
        file.IsRegular() && (GetFileInformationByHandleEx(HandleOf(file.handle_), FileBasicInfo, &information,
                                                          sizeof information) == FALSE ||
                             (information.FileAttributes & FILE_ATTRIBUTE_READONLY) != 0);
    return isReadOnly ? NativeFile() : std::move(file);
}

NativeFile NativeFile::Create(const NativePath& path, const NativeFile& /*model*/) {
    return NativeFile(Open(path, GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL));
}

bool NativeFile::IsRegular() const {
    return GetFileType(HandleOf(handle_)) == FILE_TYPE_DISK;
}

std::uint64_t NativeFile::Size() const {
    LARGE_INTEGER size{};
    return GetFileSizeEx(HandleOf(handle_), &size) != FALSE ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

bool NativeFile::SetSize(std::uint64_t size) {
    LARGE_INTEGER end;
    end.QuadPart = static_cast<LONGLONG>(size);
    const HANDLE file = HandleOf(handle_);
    return SetFilePointerEx(file, end, nullptr, FILE_BEGIN) != FALSE && SetEndOfFile(file) != FALSE;
}

void NativeFile::Close() {
    if (IsOpen()) {
        CloseHandle(HandleOf(std::exchange(handle_, none)));
    }
}

std::size_t NativeFile::Read(char* buffer, std::size_t capacity, std::uint64_t offset,
                             const std::atomic<bool>& stopped) {
    constexpr DWORD checkIntervalMs = 50;
    const HANDLE file = HandleOf(handle_);
    OVERLAPPED reading = At(offset);
    if (ReadFile(file, buffer, static_cast<DWORD>(capacity), nullptr, &reading) == FALSE &&
        GetLastError() != ERROR_IO_PENDING) {
        return 0;
    }
    while (!stopped && WaitForSingleObject(file, checkIntervalMs) == WAIT_TIMEOUT) {
    }
    CancelIo(file);
    DWORD count = 0;
    return GetOverlappedResult(file, &reading, &count, TRUE) != FALSE ? count : 0;
}

bool NativeFile::Write(std::string_view text, std::uint64_t offset) {
    OVERLAPPED place = At(offset);
    DWORD count = 0;
    return WriteFile(HandleOf(handle_), text.data(), static_cast<DWORD>(text.size()), &count, &place) != FALSE &&
           count == text.size();
}

bool NativeFile::Sync() {
    return FlushFileBuffers(HandleOf(handle_)) != FALSE;
}

}  // namespace Morquil
