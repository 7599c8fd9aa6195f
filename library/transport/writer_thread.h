#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace Morquil {

/// Writes pieces on a thread of its own, which may have to wait for a reader. The thread starts when there is a piece,
/// keeps the module that its code is in mapped, and ends when there has been none for a while. Never destroyed.
class WriterThread {
public:
    /// Returns: how many bytes of `piece` it has written.
    using Write = std::size_t (*)(std::string_view piece);

    static constexpr std::size_t largestPiece = 4096;
    /// How long a caller waits for its piece. A reader that is there takes a piece in microseconds.
    static constexpr DWORD patienceMs = 200;

    explicit constexpr WriterThread(Write write) : write_(write) {}

    /// Has `piece` written, of up to `largestPiece` bytes.
    /// Threads: one at a time.
    /// Returns: how many bytes were written; all of them where the thread is still waiting for a reader; 0 while it is
    /// waiting with the piece before.
    std::size_t HandOver(std::string_view piece);

private:
    static DWORD WINAPI Main(void* writer);
    bool Start();
    void Run();
    bool AwaitPiece();

    const Write write_;
    SRWLOCK lock_ = SRWLOCK_INIT;
    CONDITION_VARIABLE changed_ = CONDITION_VARIABLE_INIT;
    // Guarded by the lock; the piece is the thread's as long as its length is not 0.
    bool isRunning_ = false;
    std::size_t length_ = 0;
    std::size_t written_ = 0;
    std::array<char, largestPiece> piece_{};
};

}  // namespace Morquil
