// The value that guards the stack, and what happens when it has been overwritten: compiled code asks for both under
// these names. The compiler's own library opens a provider of cryptography for them, which takes a third of the time
// that loading this library takes.
#include <windows.h>
// Needs the types of the first.
#include <ntsecapi.h>

#include <cstdint>

namespace {

/// Ends the process at once and tells the system why. No handler of the host's runs on a stack that cannot be trusted.
[[noreturn]] void FailFast(unsigned reason) {
    __asm__ volatile("int {$}0x29" : : "c"(reason) : "memory");
    __builtin_unreachable();
}

}  // namespace

extern "C" {

std::uintptr_t __stack_chk_guard = 0;

[[noreturn]] void __stack_chk_fail();
void __stack_chk_fail() {
    FailFast(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE);
}

/// A checked function of the C library would have written beyond its buffer.
[[noreturn]] void __chk_fail();
void __chk_fail() {
    FailFast(FAST_FAIL_RANGE_CHECK_FAILURE);
}

}  // extern "C"

namespace {

/// Runs while the library is loaded, before anything of it that is guarded. Changes the guard, and so has none.
[[gnu::constructor, gnu::no_stack_protector]] void ChooseStackGuard() {
    if (!RtlGenRandom(&__stack_chk_guard, sizeof __stack_chk_guard)) {
        LARGE_INTEGER time;
        QueryPerformanceCounter(&time);
        __stack_chk_guard = static_cast<std::uintptr_t>(time.QuadPart) * 0x9E3779B97F4A7C15U ^
                            reinterpret_cast<std::uintptr_t>(&time) ^ GetCurrentProcessId();
    }
}

}  // namespace
