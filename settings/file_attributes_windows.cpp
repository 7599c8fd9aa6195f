#include "settings/file_attributes.h"

#include <windows.h>
// windows.h comes first: the other one does not include what it needs.
#include <aclapi.h>

#include <array>
#include <cstddef>

namespace Morquil {
namespace {

HANDLE HandleOf(const NativeFile& file) {
    return reinterpret_cast<HANDLE>(file.Get());
}

/// Who owns a file and who may do what with it.
class SecurityOf {
public:
    explicit SecurityOf(const NativeFile& file) {
        constexpr SECURITY_INFORMATION parts = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
        known_ = GetSecurityInfo(HandleOf(file), SE_FILE_OBJECT, parts, &owner_, nullptr, &accessList_, nullptr,
                                 &descriptor_) == ERROR_SUCCESS;
    }
    ~SecurityOf() { LocalFree(descriptor_); }
    SecurityOf(const SecurityOf&) = delete;
    SecurityOf& operator=(const SecurityOf&) = delete;

    bool HasOwnerOf(const SecurityOf& other) const {
        return known_ && other.known_ && EqualSid(owner_, other.owner_) != FALSE;
    }

    /// Gives `file` this access list; what a list has inherited, it inherits again.
    bool GiveAccessList(const NativeFile& file) const {
        SECURITY_DESCRIPTOR_CONTROL control = 0;
        DWORD revision = 0;
        if (GetSecurityDescriptorControl(descriptor_, &control, &revision) == FALSE) {
            return false;
        }
        const SECURITY_INFORMATION inheritance = (control & SE_DACL_PROTECTED) != 0
                                                     ? PROTECTED_DACL_SECURITY_INFORMATION
                                                     : UNPROTECTED_DACL_SECURITY_INFORMATION;
        return SetSecurityInfo(HandleOf(file), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheritance, nullptr,
                               nullptr, accessList_, nullptr) == ERROR_SUCCESS;
    }

private:
    bool known_ = false;
    PSID owner_ = nullptr;
    PACL accessList_ = nullptr;
    PSECURITY_DESCRIPTOR descriptor_ = nullptr;
};

// Further contents under names of their own. A disk that does not know such things has none.
bool HasNamedStreams(const NativeFile& file) {
    alignas(FILE_STREAM_INFO) std::array<std::byte, 1024> buffer{};
    if (GetFileInformationByHandleEx(HandleOf(file), FileStreamInfo, buffer.data(), buffer.size()) == FALSE) {
        return GetLastError() == ERROR_MORE_DATA;
    }
    return reinterpret_cast<const FILE_STREAM_INFO*>(buffer.data())->NextEntryOffset != 0;
}

bool CopyFlags(const NativeFile& from, const NativeFile& to) {
    // The others (compressed, encrypted) belong to how the content is stored.
    constexpr DWORD settable = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                               FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_NORMAL;
    FILE_BASIC_INFO wanted{};
    FILE_BASIC_INFO actual{};
    if (GetFileInformationByHandleEx(HandleOf(from), FileBasicInfo, &wanted, sizeof wanted) == FALSE ||
        GetFileInformationByHandleEx(HandleOf(to), FileBasicInfo, &actual, sizeof actual) == FALSE ||
        ((wanted.FileAttributes ^ actual.FileAttributes) & ~settable) != 0) {
        return false;
    }
    // A time of 0 leaves the time as it is.
    FILE_BASIC_INFO changed{};
    changed.CreationTime = wanted.CreationTime;
    changed.FileAttributes = wanted.FileAttributes;
    return SetFileInformationByHandle(HandleOf(to), FileBasicInfo, &changed, sizeof changed) != FALSE;
}

}  // namespace

bool CopyAttributes(const NativeFile& from, const NativeFile& to) {
    const SecurityOf wanted(from);
    const SecurityOf actual(to);
    return actual.HasOwnerOf(wanted) && !HasNamedStreams(from) && wanted.GiveAccessList(to) && CopyFlags(from, to);
}

}  // namespace Morquil
