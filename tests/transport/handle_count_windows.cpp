#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "tests/transport/handle_count.h"

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

// The system's table of all handles: the plain count of a process is not kept everywhere.
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
