#include <algorithm>

#include "core/own_module.h"
#include "transport/writer_thread.h"

namespace Morquil {
namespace {

constexpr DWORD idleMs = 100;

class Hold {
public:
    explicit Hold(SRWLOCK& lock) : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
    ~Hold() { ReleaseSRWLockExclusive(&lock_); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

private:
    SRWLOCK& lock_;
};

}  // namespace

std::size_t WriterThread::HandOver(std::string_view piece) {
    const Hold lock(lock_);
    if (length_ != 0 || piece.empty() || !(isRunning_ || Start())) {
        return 0;
    }
    piece.copy(piece_.data(), piece_.size());
    length_ = piece.size();
    WakeAllConditionVariable(&changed_);
    const ULONGLONG deadline = GetTickCount64() + patienceMs;
    while (length_ != 0) {
        const ULONGLONG now = GetTickCount64();
        if (now >= deadline) {
            return piece.size();
        }
        SleepConditionVariableSRW(&changed_, &lock_, static_cast<DWORD>(deadline - now), 0);
    }
    return written_;
}

bool WriterThread::Start() {
    const HMODULE module = QRN::Core::HoldOwnModule();
    const HANDLE thread = CreateThread(nullptr, 0, &Main, this, 0, nullptr);
    if (thread == nullptr) {
        FreeLibrary(module);
        return false;
    }
    CloseHandle(thread);
    isRunning_ = true;
    return true;
}

DWORD WINAPI WriterThread::Main(void* writer) {
    static_cast<WriterThread*>(writer)->Run();
    QRN::Core::EndThreadOfOwnModule(0);
}

void WriterThread::Run() {
    const Hold lock(lock_);
    while (AwaitPiece()) {
        ReleaseSRWLockExclusive(&lock_);
        const std::size_t written = write_({piece_.data(), length_});
        AcquireSRWLockExclusive(&lock_);
        written_ = written;
        length_ = 0;
        WakeAllConditionVariable(&changed_);
    }
    isRunning_ = false;
}

/// Returns: false when there is nothing left to write.
bool WriterThread::AwaitPiece() {
    bool isIdle = false;
    while (length_ == 0 && !isIdle) {
        isIdle = SleepConditionVariableSRW(&changed_, &lock_, idleMs, 0) == FALSE;
    }
    return length_ != 0;
}

}  // namespace Morquil
