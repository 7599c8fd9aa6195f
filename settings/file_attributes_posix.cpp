#include "settings/file_attributes.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstddef>
#include <string>

namespace Morquil {
namespace {

// The names of a file's extended attributes, each with a zero behind it; empty where the disk knows none.
std::string AttributeNames(int file) {
    const ssize_t capacity = flistxattr(file, nullptr, 0);
    std::string names(capacity < 0 ? 0 : static_cast<std::size_t>(capacity), '\0');
    const ssize_t length = flistxattr(file, names.data(), names.size());
    names.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return names;
}

template <class Action>
bool ForEachName(const std::string& names, Action action) {
    bool allDone = true;
    for (std::size_t start = 0; start < names.size(); start = names.find('\0', start) + 1) {
        allDone = action(names.c_str() + start) && allDone;
    }
    return allDone;
}

bool HasName(const std::string& names, const std::string& name) {
    return !ForEachName(names, [&name](const char* other) { return name != other; });
}

bool CopyAttribute(int from, int to, const char* name) {
    const ssize_t capacity = fgetxattr(from, name, nullptr, 0);
    std::string value(capacity < 0 ? 0 : static_cast<std::size_t>(capacity), '\0');
    const ssize_t length = fgetxattr(from, name, value.data(), value.size());
    return length >= 0 && fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0) == 0;
}

// A new file has attributes of its own where its folder hands some down: an access list, for one.
bool CopyExtendedAttributes(int from, int to) {
    const std::string names = AttributeNames(from);
    const bool removed = ForEachName(
        AttributeNames(to), [&](const char* name) { return HasName(names, name) || fremovexattr(to, name) == 0; });
    return removed && ForEachName(names, [&](const char* name) { return CopyAttribute(from, to, name); });
}

}  // namespace

bool CopyAttributes(const NativeFile& fromFile, const NativeFile& toFile) {
    const int from = static_cast<int>(fromFile.Get());
    const int to = static_cast<int>(toFile.Get());
    struct stat wanted {};
    struct stat actual {};
    if (fstat(from, &wanted) != 0 || fstat(to, &actual) != 0) {
        return false;
    }
    const bool sameOwner = wanted.st_uid == actual.st_uid && wanted.st_gid == actual.st_gid;
    // The mode comes last: a new owner and a new access list change it.
    return (sameOwner || fchown(to, wanted.st_uid, wanted.st_gid) == 0) && CopyExtendedAttributes(from, to) &&
           fchmod(to, wanted.st_mode & 07777) == 0;
}

}  // namespace Morquil
