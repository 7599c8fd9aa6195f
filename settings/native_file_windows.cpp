#include "settings/native_file.h"

#include <windows.h>

#include <algorithm>

namespace Morquil {
namespace {

HANDLE HandleOf(const NativeFile& file) {
    return reinterpret_cast<HANDLE>(file.Get());
}

// What one call of the system's may be asked for.
DWORD OneTransfer(std::size_t length) {
    constexpr std::size_t most = 1U << 30;
    return static_cast<DWORD>(std::min(length, most));
}

LARGE_INTEGER Large(std::uint64_t value) {
    LARGE_INTEGER large;
    large.QuadPart = static_cast<LONGLONG>(value);
    return large;
}

}  // namespace

void NativeFile::Close() {
    if (IsOpen()) {
        CloseHandle(HandleOf(*this));
        handle_ = none;
    }
}

std::size_t NativeFile::Read(char* buffer, std::size_t capacity) {
    DWORD count = 0;
    return ReadFile(HandleOf(*this), buffer, OneTransfer(capacity), &count, nullptr) != FALSE ? count : 0;
}

bool NativeFile::Write(std::string_view text) {
    while (!text.empty()) {
        DWORD count = 0;
        if (WriteFile(HandleOf(*this), text.data(), OneTransfer(text.size()), &count, nullptr) == FALSE || count == 0) {
            return false;
        }
        text.remove_prefix(count);
    }
    return true;
}

std::uint64_t NativeFile::Size() const {
    LARGE_INTEGER size{};
    return GetFileSizeEx(HandleOf(*this), &size) != FALSE ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

bool NativeFile::SetSize(std::uint64_t size) {
    return Seek(size) && SetEndOfFile(HandleOf(*this)) != FALSE;
}

bool NativeFile::Seek(std::uint64_t offset) {
    return SetFilePointerEx(HandleOf(*this), Large(offset), nullptr, FILE_BEGIN) != FALSE;
}

bool NativeFile::Flush() {
    return FlushFileBuffers(HandleOf(*this)) != FALSE;
}

NativeFile OpenForReading(const NativePath& path) {
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return NativeFile(reinterpret_cast<std::intptr_t>(
        CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

}  // namespace Morquil
