// What the module writes into the registry about itself. Windows only.
#pragma once

#include "MorquilAPI.h"

namespace Morquil {

/// Enters the class CMorquilDiscovery under HKEY_CLASSES_ROOT and registers the type library that `module` carries as
/// a resource. Stops at the first failure and leaves what is done.
/// Returns: S_OK; E_UNEXPECTED without a module path; E_OUTOFMEMORY; a registry error as it stands, which is positive;
///          what LoadTypeLib or RegisterTypeLib answered.
HRESULT RegisterServer(HMODULE module) noexcept;

/// Takes both out again. Keys that cannot be deleted are left behind silently.
/// Returns: S_OK; E_UNEXPECTED without a module path; E_OUTOFMEMORY; what the type library functions answered.
HRESULT UnregisterServer(HMODULE module) noexcept;

}  // namespace Morquil
