// Included first: what the layer uses of the standard library and of Windows, with the macros that <windows.h> has
// unless NOMINMAX is defined. From here on only what Microsoft's compiler knows is known.
#include <windows.h>

#include "tests/system/windows_macros/standard_library.h"

#include <oaidl.h>
#include <ole2.h>
#include <rpc.h>
#include <rpcndr.h>

#include "tests/system/windows_macros/min_max.h"

#undef __GNUC__
#undef __GNUC_MINOR__
#undef __GNUC_PATCHLEVEL__
#undef __GNUG__
#pragma GCC poison __attribute__ __builtin_expect __extension__ __typeof__ typeof __has_virtual_destructor
