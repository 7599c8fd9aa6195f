// Decides which thread runs: one at a time, on a clock that stands still while any of them has something to do.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "core/thread.h"
#include "tests/worlds/simulation/dice.h"

namespace Morquil::Testing::Worlds {

/// Milliseconds on the simulated clock.
using Time = std::int64_t;
inline constexpr Time never = std::numeric_limits<Time>::max();

/// Runs the threads of one world at a time. A thread runs until it blocks or yields; the world's dice choose the next,
/// so a world runs the same way for the same dice. The thread that begins a world is its driver.
///
/// Only the thread whose turn it is touches the world, so that nothing in it needs a lock.
class Scheduler {
public:
    /// The instance that the simulated core uses.
    static Scheduler& Instance();

    /// Begins a world. `onDeadlock` is called when no thread can ever continue, or one outlives the world; it must not
    /// return.
    void Begin(Dice& dice, std::function<void()> onDeadlock);
    /// Ends the world, whose threads must all have ended. The next begins at time 0.
    void End();

    Time Now() const { return now_; }
    QRN::Core::ThreadId Current() const { return running_->id; }
    bool IsDriver() const { return running_ == threads_.front().get(); }

    QRN::Core::ThreadId Start(QRN::Core::ThreadFunction function, void* argument);
    /// The thread that was started last; 0 if none was started in this world.
    QRN::Core::ThreadId LastStarted() const { return threads_.size() > 1 ? threads_.back()->id : 0; }
    bool HasEnded(QRN::Core::ThreadId thread) const { return Of(thread).ended; }
    std::uint32_t ExitCode(QRN::Core::ThreadId thread) const { return Of(thread).exitCode; }
    /// How many threads besides the driver have not ended.
    std::size_t LiveThreads() const;

    /// Blocks the calling thread until `ready()` or until the clock reads `deadline`. Other threads may call `ready`,
    /// too.
    void Block(const std::function<bool()>& ready, Time deadline = never);
    /// Lets another thread run first, if one can and the dice say so.
    void GiveWay();
    /// The driver waits until no other thread has anything to do before the clock reads `until`.
    void LetOthersRun(Time until);

private:
    struct Thread {
        QRN::Core::ThreadId id = 0;
        std::thread thread;
        std::condition_variable turn;
        const std::function<bool()>* ready = nullptr;  ///< what it waits for, or null
        Time deadline = never;
        bool isLast = false;  ///< continues only when no other thread can at this time
        bool ended = false;
        std::uint32_t exitCode = 0;
    };

    Scheduler();
    Thread& Of(QRN::Core::ThreadId thread) const { return *threads_[thread - 1]; }
    bool CanRun(const Thread& thread) const;
    Thread& PickNext();
    Thread* PickRunnable();
    void HandOver(Thread& next);
    void RunThread(Thread& thread, QRN::Core::ThreadFunction function, void* argument);

    std::mutex mutex_;
    Thread* running_ = nullptr;
    std::vector<std::unique_ptr<Thread>> threads_;
    Dice* dice_ = nullptr;
    std::function<void()> onDeadlock_;
    Time now_ = 0;
};

}  // namespace Morquil::Testing::Worlds
