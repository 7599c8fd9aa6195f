#pragma once

#include <windows.h>

namespace QRN::Core {

/// Takes a reference to the module that this code is in, for a thread that is about to be started: it must not run a
/// single instruction of a module that is being unloaded. The thread gives it back with `EndThreadOfOwnModule`.
HMODULE HoldOwnModule();

/// Gives the reference back and ends the thread in one step outside the module, which may be unmapped by it.
[[noreturn]] void EndThreadOfOwnModule(DWORD exitCode);

}  // namespace QRN::Core
