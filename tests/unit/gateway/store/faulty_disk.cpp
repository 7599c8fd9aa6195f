#include "tests/unit/gateway/store/faulty_disk.h"

#include <sqlite3.h>
#include <unistd.h>

#include <atomic>

namespace Morquil::Testing {
namespace {

std::atomic<FaultyDisk::Fault> fault = FaultyDisk::Fault::None;
std::atomic<bool> hasLog = false;  // a file that exists can be opened on a read-only disk, but none can be made
sqlite3_vfs* real = nullptr;
sqlite3_vfs faulty;

// The real file follows this one in memory.
sqlite3_file* RealOf(sqlite3_file* file) {
    return file + 1;
}

template <auto method, class... Arguments>
int Forward(sqlite3_file* file, Arguments... arguments) {
    sqlite3_file* const inner = RealOf(file);
    return (inner->pMethods->*method)(inner, arguments...);
}

int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    switch (fault.load()) {
        case FaultyDisk::Fault::Full:
            return SQLITE_FULL;
        case FaultyDisk::Fault::ReadOnly:
            return SQLITE_READONLY;
        case FaultyDisk::Fault::None:
            break;
    }
    return Forward<&sqlite3_io_methods::xWrite>(file, bytes, count, offset);
}

int MapShared(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
    if (fault.load() == FaultyDisk::Fault::ReadOnly && !hasLog.load()) {
        return SQLITE_CANTOPEN;
    }
    return Forward<&sqlite3_io_methods::xShmMap>(file, page, size, extend, memory);
}

sqlite3_io_methods Methods() {
    using M = sqlite3_io_methods;
    sqlite3_io_methods methods{};
    methods.iVersion = 2;  // shared memory, but no mapping of the file itself
    methods.xClose = [](sqlite3_file* file) { return Forward<&M::xClose>(file); };
    methods.xRead = [](sqlite3_file* f, void* to, int n, sqlite3_int64 at) { return Forward<&M::xRead>(f, to, n, at); };
    methods.xWrite = Write;
    methods.xTruncate = [](sqlite3_file* file, sqlite3_int64 size) { return Forward<&M::xTruncate>(file, size); };
    methods.xSync = [](sqlite3_file* file, int flags) { return Forward<&M::xSync>(file, flags); };
    methods.xFileSize = [](sqlite3_file* file, sqlite3_int64* size) { return Forward<&M::xFileSize>(file, size); };
    methods.xLock = [](sqlite3_file* file, int lock) { return Forward<&M::xLock>(file, lock); };
    methods.xUnlock = [](sqlite3_file* file, int lock) { return Forward<&M::xUnlock>(file, lock); };
    methods.xCheckReservedLock = [](sqlite3_file* f, int* out) { return Forward<&M::xCheckReservedLock>(f, out); };
    methods.xFileControl = [](sqlite3_file* f, int op, void* arg) { return Forward<&M::xFileControl>(f, op, arg); };
    methods.xSectorSize = [](sqlite3_file* file) { return Forward<&M::xSectorSize>(file); };
    methods.xDeviceCharacteristics = [](sqlite3_file* f) { return Forward<&M::xDeviceCharacteristics>(f); };
    methods.xShmMap = MapShared;
    methods.xShmLock = [](sqlite3_file* f, int at, int n, int flags) { return Forward<&M::xShmLock>(f, at, n, flags); };
    methods.xShmBarrier = [](sqlite3_file* file) { RealOf(file)->pMethods->xShmBarrier(RealOf(file)); };
    methods.xShmUnmap = [](sqlite3_file* file, int erase) { return Forward<&M::xShmUnmap>(file, erase); };
    return methods;
}

int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* given) {
    static const sqlite3_io_methods methods = Methods();
    file->pMethods = nullptr;
    if (fault.load() == FaultyDisk::Fault::ReadOnly) {
        const bool isDatabase = (flags & SQLITE_OPEN_MAIN_DB) != 0;
        hasLog = access(isDatabase ? sqlite3_filename_wal(name) : name, F_OK) == 0;
        if (!isDatabase && !hasLog) {
            return SQLITE_CANTOPEN;
        }
        flags = (flags & ~(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)) | SQLITE_OPEN_READONLY;
    }
    RealOf(file)->pMethods = nullptr;
    const int result = real->xOpen(real, name, RealOf(file), flags, given);
    if (RealOf(file)->pMethods != nullptr) {
        file->pMethods = &methods;
    }
    return result;
}

}  // namespace

FaultyDisk::FaultyDisk() {
    real = sqlite3_vfs_find(nullptr);
    faulty = *real;
    faulty.pNext = nullptr;
    faulty.zName = "faulty";
    faulty.szOsFile = int(sizeof(sqlite3_file)) + real->szOsFile;
    faulty.xOpen = Open;
    sqlite3_vfs_register(&faulty, 1);
}

FaultyDisk::~FaultyDisk() {
    Set(Fault::None);
    sqlite3_vfs_register(real, 1);
    sqlite3_vfs_unregister(&faulty);
}

void FaultyDisk::Set(Fault wanted) {
    fault.store(wanted);
}

}  // namespace Morquil::Testing
