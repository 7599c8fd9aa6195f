// The module's registration in the Windows registry. Windows only.
#pragma once

#include "MorquilAPI.h"

namespace Morquil {

/// Registers the class CMorquilDiscovery under HKEY_CLASSES_ROOT, and the type library that `module` contains as a
/// resource. Stops at the first failure and does not undo earlier steps.
/// Returns: S_OK; E_UNEXPECTED without a module path; E_OUTOFMEMORY; a registry error code unchanged, which is
///          positive; the result of LoadTypeLib or RegisterTypeLib.
HRESULT RegisterServer(HMODULE module) noexcept;

/// Removes both registrations. Silently leaves keys that cannot be deleted.
/// Returns: S_OK; E_UNEXPECTED without a module path; E_OUTOFMEMORY; the result of the type library functions.
HRESULT UnregisterServer(HMODULE module) noexcept;

}  // namespace Morquil
