// Windows only: registers the built DLL, asks COM for the class, and cleans up.
#include <gtest/gtest.h>

#include <string>

#include "MorquilAPI.h"
#include "tests/system/module/loaded_library.h"

namespace Morquil::Testing {
namespace {

constexpr const char* classKey = "CLSID\\{1E7BE91D-FAC6-4CDE-B52E-68844DF364F6}";
constexpr const char* serverKey = "CLSID\\{1E7BE91D-FAC6-4CDE-B52E-68844DF364F6}\\InprocServer32";
constexpr const char* typeLibraryKey = sizeof(void*) == 8
                                           ? "TypeLib\\{5FF6856C-F8DA-41D9-B457-E6889D512B6B}\\1.1\\0\\win64"
                                           : "TypeLib\\{5FF6856C-F8DA-41D9-B457-E6889D512B6B}\\1.1\\0\\win32";

// `view` may be that of 64-bit or of 32-bit programs, which have classes of their own.
bool KeyExists(const char* name, REGSAM view = 0) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CLASSES_ROOT, name, 0, KEY_READ | view, &key) != ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(key);
    return true;
}

// A value without the terminating zero that the system adds if the writer left it out.
std::string Value(const char* keyName, const char* valueName) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CLASSES_ROOT, keyName, 0, KEY_READ, &key), ERROR_SUCCESS) << keyName;
    char text[512];
    DWORD size = sizeof text;
    DWORD type = 0;
    EXPECT_EQ(RegQueryValueExA(key, valueName, nullptr, &type, reinterpret_cast<BYTE*>(text), &size), ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    RegCloseKey(key);
    if (size > 0 && text[size - 1] == 0) {
        --size;
    }
    return std::string(text, size);
}

std::string ModulePath(const LoadedLibrary& library) {
    char path[MAX_PATH];
    return std::string(path, GetModuleFileNameA(static_cast<HMODULE>(library.Get()), path, MAX_PATH));
}

class Registration : public testing::Test {
protected:
    HRESULT Register() const { return library.Find<HRESULT STDAPICALLTYPE()>("DllRegisterServer")(); }
    HRESULT Unregister() const { return library.Find<HRESULT STDAPICALLTYPE()>("DllUnregisterServer")(); }
    void TearDown() override { Unregister(); }

    LoadedLibrary library;
};

TEST_F(Registration, WritesTheClassItsServerAndItsThreadingModel) {
    ASSERT_EQ(Register(), S_OK);

    EXPECT_FALSE(Value(classKey, nullptr).empty());
    EXPECT_EQ(Value(serverKey, nullptr), ModulePath(library));
    EXPECT_EQ(Value(serverKey, "ThreadingModel"), "Both");
}

TEST_F(Registration, WritesTheClassForProgramsOfTheLibrarysOwnWidthOnly) {
    constexpr REGSAM own = sizeof(void*) == 8 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
    constexpr REGSAM other = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

    ASSERT_EQ(Register(), S_OK);

    EXPECT_TRUE(KeyExists(serverKey, own));
    EXPECT_FALSE(KeyExists(serverKey, other));
}

TEST_F(Registration, RegistersTheTypeLibrary) {
    ASSERT_EQ(Register(), S_OK);

    ITypeLib* found = nullptr;
    EXPECT_EQ(LoadRegTypeLib(LIBID_MorquilAPI, 1, 1, 0, &found), S_OK);
    if (found != nullptr) {
        found->Release();
    }
    EXPECT_TRUE(KeyExists(typeLibraryKey));
}

TEST_F(Registration, AllowsComToCreateTheClass) {
    ASSERT_EQ(Register(), S_OK);
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));

    IMorquilDiscovery* discovery = nullptr;
    EXPECT_EQ(CoCreateInstance(CLSID_CMorquilDiscovery, nullptr, CLSCTX_INPROC_SERVER, IID_IMorquilDiscovery,
                               reinterpret_cast<void**>(&discovery)),
              S_OK);
    if (discovery != nullptr) {
        EXPECT_EQ(discovery->FindDevices(nullptr), S_OK);
        discovery->Release();
    }
    CoUninitialize();
}

TEST_F(Registration, CanBeDoneTwice) {
    EXPECT_EQ(Register(), S_OK);
    EXPECT_EQ(Register(), S_OK);
}

TEST_F(Registration, IsUndoneCompletely) {
    ASSERT_EQ(Register(), S_OK);

    EXPECT_EQ(Unregister(), S_OK);
    EXPECT_FALSE(KeyExists(serverKey));
    EXPECT_FALSE(KeyExists(classKey));
    EXPECT_FALSE(KeyExists(typeLibraryKey));
}

}  // namespace
}  // namespace Morquil::Testing
