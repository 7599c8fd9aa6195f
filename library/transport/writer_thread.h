#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace Morquil {

/// Writes pieces on a separate thread, which may have to wait for a reader. The thread starts when there is a piece,
/// keeps the module that contains its code mapped, and ends when there has been no piece for a while. A `WriterThread`
/// is never destroyed.
class WriterThread {
public:
    /// Returns: the number of bytes of `piece` written.
    using Write = std::size_t (*)(std::string_view piece);

    static constexpr std::size_t largestPiece = 4096;
    /// How long a caller waits for its piece to be written. An active reader takes a piece in microseconds.
    static constexpr DWORD patienceMs = 200;

    explicit constexpr WriterThread(Write write) : write_(write) {}

    /// Passes `piece`, of up to `largestPiece` bytes, to the thread to be written.
    /// Threads: one at a time.
    /// Returns: the number of bytes written. All of them if the thread is still waiting for a reader; 0 if it is still
    ///          waiting with the previous piece.
    std::size_t HandOver(std::string_view piece);

private:
    static DWORD WINAPI Main(void* writer);
    bool Start();
    void Run();
    bool AwaitPiece();

    const Write write_;
    SRWLOCK lock_ = SRWLOCK_INIT;
    CONDITION_VARIABLE changed_ = CONDITION_VARIABLE_INIT;
    // Guarded by `lock_`. The piece belongs to the thread while its length is not 0.
    bool isRunning_ = false;
    std::size_t length_ = 0;
    std::size_t written_ = 0;
    std::array<char, largestPiece> piece_{};
};

}  // namespace Morquil
