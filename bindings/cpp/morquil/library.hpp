// Where the first object comes from: the only thing that differs between systems for a host.
#pragma once

#include "MorquilAPI.h"
#include "MorquilEntry.h"
#include "morquil/interfaces.hpp"
#include "morquil/pointer.hpp"

namespace morquil {

#ifdef _WIN32
/// COM for the calling thread, for the lifetime of this object. A thread that has already chosen another mode keeps it.
class Apartment {
public:
    Apartment() : result_(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() {
        if (SUCCEEDED(result_)) {
            CoUninitialize();
        }
    }

private:
    HRESULT result_;
};
#else
/// COM for the calling thread: nothing to do on this system.
class [[maybe_unused]] Apartment {};
#endif

namespace detail {

/// An interface of the second contract, MorquilDelivery.idl.
template <class Raw>
Pointer<Raw> AskForDelivery(IUnknown* object, const char* call) {
    void* found = nullptr;
    const HRESULT result = object->QueryInterface(Identifier<Raw>::value, &found);
    if (result == E_NOINTERFACE) {
        throw Error(call, result, "the library is older than morquil.hpp and cannot do this; install a newer one");
    }
    Check(call, result, CallKind::Set);
    return Pointer<Raw>::Adopt(static_cast<Raw*>(found));
}

#ifdef _WIN32

/// From MorquilAPI.dll next to the program, which needs no registration; null when it is missing.
inline IMorquilDiscovery* DiscoveryBesideTheProgram() {
    // Stays loaded: the objects that it makes outlive every scope.
    static const HMODULE library =
        LoadLibraryExW(L"MorquilAPI.dll", nullptr, LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr) {
        return nullptr;
    }
    const FARPROC function = GetProcAddress(library, "GetMorquilDiscoveryInstance_0000");
    using Function = IMorquilDiscovery* (*)();
    return function == nullptr ? nullptr : reinterpret_cast<Function>(reinterpret_cast<void (*)()>(function))();
}

/// Keeps the library that `object` comes from loaded for the rest of the process. Otherwise the end of the last
/// apartment, which may be a session's own, would unload it while objects are still alive.
inline void KeepLibraryOf(IUnknown* object) {
    HMODULE library = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       *reinterpret_cast<LPCWSTR*>(object), &library);
}

/// The registered library, else the one next to the program.
inline Pointer<IMorquilDiscovery> GetDiscovery() {
    void* discovery = nullptr;
    const HRESULT result = CoCreateInstance(Identifier<CMorquilDiscovery>::value, nullptr, CLSCTX_INPROC_SERVER,
                                            Identifier<IMorquilDiscovery>::value, &discovery);
    if (SUCCEEDED(result)) {
        const auto created = Pointer<IMorquilDiscovery>::Adopt(static_cast<IMorquilDiscovery*>(discovery));
        KeepLibraryOf(created.Get());
        return created;
    }
    if (IMorquilDiscovery* const found = DiscoveryBesideTheProgram()) {
        return Pointer<IMorquilDiscovery>::Adopt(found);
    }
    throw Error("CoCreateInstance", result,
                "MorquilAPI.dll is neither registered (regsvr32 MorquilAPI.dll) nor in the program's folder");
}

#else

inline Pointer<IMorquilDiscovery> GetDiscovery() {
    IMorquilDiscovery* const discovery = GetMorquilDiscoveryInstance_0000();
    if (discovery == nullptr) {
        throw Error("GetMorquilDiscoveryInstance_0000", E_OUTOFMEMORY, "out of memory");
    }
    return Pointer<IMorquilDiscovery>::Adopt(discovery);
}

#endif

}  // namespace detail

}  // namespace morquil
