#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>

#include "tests/system/module/loaded_library.h"

namespace Morquil::Testing {

std::vector<std::string> ExpectedExports() {
    return {"DllCanUnloadNow",   "DllGetClassObject",   "DllMain",
            "DllRegisterServer", "DllUnregisterServer", "GetMorquilDiscoveryInstance_0000"};
}

const bool LoadedLibrary::canGo = true;

LoadedLibrary::LoadedLibrary(const std::string& path) : handle_(LoadLibraryA(path.c_str())) {
    EXPECT_NE(handle_, nullptr) << path << ": error " << GetLastError();
}

bool LoadedLibrary::IsLoaded(const std::string& path) {
    return GetModuleHandleA(path.c_str()) != nullptr;
}

LoadedLibrary::~LoadedLibrary() {
    if (handle_ != nullptr) {
        FreeLibrary(static_cast<HMODULE>(handle_));
    }
}

void* LoadedLibrary::FindAddress(const char* name) const {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

std::vector<std::string> LoadedLibrary::ExportedNames() const {
    const auto* const base = static_cast<const unsigned char*>(handle_);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD offset = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
    const auto* const exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + offset);
    const auto* const names = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
    std::vector<std::string> list;
    for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
        list.emplace_back(reinterpret_cast<const char*>(base + names[i]));
    }
    std::sort(list.begin(), list.end());
    return list;
}

}  // namespace Morquil::Testing
