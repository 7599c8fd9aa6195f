#pragma once

#include <string>

namespace Morquil {

/// A path as the system takes it, and the characters that may stand before a file's own name.
#ifdef _WIN32
using NativePath = std::wstring;
inline constexpr wchar_t pathSeparators[] = L"\\/:";
#else
using NativePath = std::string;
inline constexpr char pathSeparators[] = "/";
#endif

/// The system's form of the path `path` (UTF-8). Empty, which names no file, when it is malformed or holds a zero
/// character. Throws: std::bad_alloc.
NativePath ToNativePath(const std::string& path);

}  // namespace Morquil
