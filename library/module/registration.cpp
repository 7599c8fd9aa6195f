#include "module/registration.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

namespace Morquil {
namespace {

constexpr std::string_view description = "Morquil video converter control library by Morquil";
constexpr std::string_view threadingModel = "Both";

constexpr std::size_t keyNameSize = 256;
constexpr int guidTextSize = 39;  // with braces and a terminating zero

// The path of a module in the system's narrow encoding, truncated if it does not fit.
struct ModulePath {
    char text[MAX_PATH] = "";
    DWORD length = 0;

    explicit ModulePath(HMODULE module) noexcept { length = GetModuleFileNameA(module, text, MAX_PATH); }

    std::string_view View() const noexcept { return {text, length}; }
};

// "CLSID\{...}" and the key below it.
struct ClassKeys {
    char classKey[keyNameSize] = "";
    char serverKey[keyNameSize] = "";

    // Returns false when the class id cannot be formatted.
    bool Format() noexcept {
        wchar_t clsid[guidTextSize];
        if (StringFromGUID2(CLSID_CMorquilDiscovery, clsid, guidTextSize) == 0) {
            return false;
        }
        constexpr std::string_view classes = "CLSID\\";
        constexpr std::string_view server = "\\InprocServer32";
        static_assert(classes.size() + guidTextSize + server.size() < keyNameSize);
        char* const name = std::copy(classes.begin(), classes.end(), classKey);
        const auto narrow = [](wchar_t character) { return static_cast<char>(character); };  // all of it is ASCII
        std::transform(clsid, clsid + guidTextSize - 1, name, narrow);
        const std::string_view key = classKey;
        std::copy(server.begin(), server.end(), std::copy(key.begin(), key.end(), serverKey));
        return true;
    }
};

// Owns an open registry key.
class RegistryKey {
public:
    RegistryKey() = default;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }

    LSTATUS Create(HKEY parent, const char* name) noexcept {
        char noClass[] = "";
        return RegCreateKeyExA(parent, name, 0, noClass, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &key_,
                               nullptr);
    }

    // A null `name` is the unnamed value. Written without a terminating zero.
    LSTATUS SetText(const char* name, std::string_view text) noexcept {
        return RegSetValueExA(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.data()),
                              static_cast<DWORD>(text.size()));
    }

    HKEY Get() const noexcept { return key_; }

private:
    HKEY key_ = nullptr;
};

LSTATUS WriteClass(const char* classKey, std::string_view modulePath) noexcept {
    RegistryKey key;
    RegistryKey server;
    LSTATUS error = key.Create(HKEY_CLASSES_ROOT, classKey);
    if (error == ERROR_SUCCESS) {
        error = key.SetText(nullptr, description);
    }
    if (error == ERROR_SUCCESS) {
        error = server.Create(key.Get(), "InprocServer32");
    }
    if (error == ERROR_SUCCESS) {
        error = server.SetText(nullptr, modulePath);
    }
    if (error == ERROR_SUCCESS) {
        error = server.SetText("ThreadingModel", threadingModel);
    }
    return error;
}

struct ReleaseTypeLib {
    void operator()(ITypeLib* library) const noexcept { library->Release(); }
};
using TypeLibrary = std::unique_ptr<ITypeLib, ReleaseTypeLib>;

// The module's type library, and the module's path as wide text.
struct LoadedLibrary {
    OLECHAR path[MAX_PATH + 1] = {};
    TypeLibrary library;

    HRESULT Load(std::string_view modulePath) noexcept {
        const int length = MultiByteToWideChar(CP_THREAD_ACP, 0, modulePath.data(), static_cast<int>(modulePath.size()),
                                               path, MAX_PATH);
        path[length] = 0;
        ITypeLib* loaded = nullptr;
        const HRESULT result = LoadTypeLib(path, &loaded);
        library.reset(loaded);
        return result;
    }
};

HRESULT UnregisterLibrary(ITypeLib& library) noexcept {
    TLIBATTR* attributes = nullptr;
    HRESULT result = library.GetLibAttr(&attributes);
    if (FAILED(result)) {
        return result;
    }
    result = UnRegisterTypeLib(attributes->guid, attributes->wMajorVerNum, attributes->wMinorVerNum, attributes->lcid,
                               attributes->syskind);
    library.ReleaseTLibAttr(attributes);
    return result;
}

}  // namespace

HRESULT RegisterServer(HMODULE module) noexcept {
    const ModulePath path(module);
    if (path.length == 0) {
        return E_UNEXPECTED;
    }
    ClassKeys keys;
    if (!keys.Format()) {
        return E_OUTOFMEMORY;
    }
    const LSTATUS error = WriteClass(keys.classKey, path.View());
    if (error != ERROR_SUCCESS) {
        return static_cast<HRESULT>(error);
    }
    LoadedLibrary loaded;
    const HRESULT result = loaded.Load(path.View());
    return FAILED(result) ? result : RegisterTypeLib(loaded.library.get(), loaded.path, nullptr);
}

HRESULT UnregisterServer(HMODULE module) noexcept {
    ClassKeys keys;
    if (!keys.Format()) {
        return E_OUTOFMEMORY;
    }
    RegDeleteKeyA(HKEY_CLASSES_ROOT, keys.serverKey);
    RegDeleteKeyA(HKEY_CLASSES_ROOT, keys.classKey);
    const ModulePath path(module);
    if (path.length == 0) {
        return E_UNEXPECTED;
    }
    LoadedLibrary loaded;
    const HRESULT result = loaded.Load(path.View());
    return FAILED(result) ? result : UnregisterLibrary(*loaded.library);
}

}  // namespace Morquil
