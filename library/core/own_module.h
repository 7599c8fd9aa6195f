#pragma once

#include <windows.h>

namespace QRN::Core {

/// Takes a reference to the module that contains this code, for a thread that is about to be started. Without it the
/// thread could run code of a module that is being unloaded. The thread drops the reference with
/// `EndThreadOfOwnModule`.
HMODULE HoldOwnModule();

/// Drops the reference and ends the thread in one step outside the module, since the module may be unmapped by that
/// step.
[[noreturn]] void EndThreadOfOwnModule(DWORD exitCode);

}  // namespace QRN::Core
