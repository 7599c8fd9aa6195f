#include "core/own_module.h"

namespace QRN::Core {
namespace {

HMODULE OwnModule(DWORD extraFlags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | extraFlags, reinterpret_cast<LPCWSTR>(&HoldOwnModule),
                       &module);
    return module;
}

}  // namespace

HMODULE HoldOwnModule() {
    return OwnModule(0);
}

void EndThreadOfOwnModule(DWORD exitCode) {
    FreeLibraryAndExitThread(OwnModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT), exitCode);
}

}  // namespace QRN::Core
