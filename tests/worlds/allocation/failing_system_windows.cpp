// The program calls functions of the system's libraries through variables, `__imp_name`. The linker redirects every use
// of such a variable to `__wrap___imp_name`; `__real___imp_name` is the system's own; see tests/CMakeLists.txt.
#include <windows.h>
// Needs the types of the header above.
#include <oleauto.h>

#include <atomic>
#include <cstdlib>

#include "tests/worlds/allocation/failing_system.h"
#include "tests/worlds/allocation/scarce_memory.h"

using Morquil::Testing::ScarceMemory;

// NOLINTBEGIN(bugprone-reserved-identifier): the linker chooses these names
extern "C" {

extern decltype(&SysAllocStringLen) __real___imp_SysAllocStringLen;
extern decltype(&SysAllocStringLen) __wrap___imp_SysAllocStringLen;
extern decltype(&SysFreeString) __real___imp_SysFreeString;
extern decltype(&SysFreeString) __wrap___imp_SysFreeString;
extern decltype(&CreateThread) __real___imp_CreateThread;
extern decltype(&CreateThread) __wrap___imp_CreateThread;

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace {

std::atomic<long> liveTexts{0};

BSTR WINAPI AllocateText(const OLECHAR* text, UINT length) {
    const BSTR allocated = ScarceMemory::Grants() ? __real___imp_SysAllocStringLen(text, length) : nullptr;
    liveTexts += allocated != nullptr ? 1 : 0;
    return allocated;
}

void WINAPI FreeText(BSTR text) {
    liveTexts -= text != nullptr ? 1 : 0;
    __real___imp_SysFreeString(text);
}

HANDLE WINAPI MakeThread(SECURITY_ATTRIBUTES* security, SIZE_T stack, LPTHREAD_START_ROUTINE main, void* argument,
                         DWORD flags, DWORD* id) {
    if (ScarceMemory::Grants()) {
        return __real___imp_CreateThread(security, stack, main, argument, flags, id);
    }
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

}  // namespace

decltype(&SysAllocStringLen) __wrap___imp_SysAllocStringLen = &AllocateText;
decltype(&SysFreeString) __wrap___imp_SysFreeString = &FreeText;
decltype(&CreateThread) __wrap___imp_CreateThread = &MakeThread;

namespace Morquil::Testing {

void* PlainMemory(std::size_t size) {
    return std::malloc(size);
}

long LiveTexts() {
    return liveTexts;
}

}  // namespace Morquil::Testing
