#include <windows.h>
// After the header that they need.
#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "tests/kit/process_counts.h"

namespace {

struct HandleEntry {
    void* object;
    std::uintptr_t processId;
    std::uintptr_t handle;
    ULONG access;
    USHORT traceIndex;
    USHORT typeIndex;
    ULONG attributes;
    ULONG reserved;
};

struct HandleTable {
    std::uintptr_t count;
    std::uintptr_t reserved;
    HandleEntry entries[1];
};

using QuerySystemInformation = LONG(WINAPI*)(int kind, void* buffer, ULONG size, ULONG* used);

constexpr int extendedHandleInformation = 64;
constexpr LONG bufferTooSmall = static_cast<LONG>(0xC0000004);

QuerySystemInformation FindQuery() {
    return reinterpret_cast<QuerySystemInformation>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "NtQuerySystemInformation")));
}

}  // namespace

// The system's table of all handles: not every system keeps a count per process.
std::size_t Morquil::Testing::OpenHandleCount() {
    static const QuerySystemInformation query = FindQuery();
    std::vector<std::uintptr_t> buffer(1U << 14);
    ULONG used = 0;
    while (query(extendedHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size() * sizeof(buffer[0])),
                 &used) == bufferTooSmall) {
        buffer.resize(buffer.size() * 2);
    }
    const auto& table = *reinterpret_cast<const HandleTable*>(buffer.data());
    return static_cast<std::size_t>(
        std::count_if(table.entries, table.entries + table.count,
                      [](const HandleEntry& entry) { return entry.processId == GetCurrentProcessId(); }));
}

std::size_t Morquil::Testing::ThreadCount() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::size_t count = 0;
    for (BOOL found = Thread32First(snapshot, &entry); found != FALSE; found = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId()) {
            ++count;
        }
    }
    CloseHandle(snapshot);
    return count;
}

// What the warm-up does not create, counted under Wine: an apartment uses up to eight handles, and each of the
// compiler's and the system's locks that two threads contend for keeps one permanently; 17 have been seen. A leak would
// grow with every test.
const Morquil::Testing::SystemsOwn Morquil::Testing::systemsOwn{24, 1};

// The four events of its transport and the one for its end; three more are the lock and the condition of the waiting
// thread.
const std::size_t Morquil::Testing::handlesOfAnAttempt = 8;

// In 32-bit libraries the compiler's run time locks its tables for exceptions as soon as it is loaded. For that it
// makes an event and a handle of the loading thread, and does not close them when the library is unloaded.
const std::size_t Morquil::Testing::handlesOfAnUnloading = sizeof(void*) == 4 ? 2 : 0;

std::size_t Morquil::Testing::ProcessMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.WorkingSetSize;
}

std::chrono::nanoseconds Morquil::Testing::ProcessorTime() {
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    const auto ticks = [](const FILETIME& time) {
        return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) + time.dwLowDateTime;
    };
    return std::chrono::nanoseconds((ticks(kernel) + ticks(user)) * 100);
}
