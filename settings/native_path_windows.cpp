#include "settings/native_path.h"

#include <windows.h>

namespace Morquil {

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

}  // namespace Morquil
