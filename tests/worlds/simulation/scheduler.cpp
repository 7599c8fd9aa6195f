#include "tests/worlds/simulation/scheduler.h"

#include <algorithm>
#include <utility>

namespace Morquil::Testing::Worlds {

Scheduler& Scheduler::Instance() {
    // Never destroyed: statics of other files may still use locks when the program ends.
    static Scheduler& instance = *new Scheduler;
    return instance;
}

Scheduler::Scheduler() {
    threads_.push_back(std::make_unique<Thread>());
    running_ = threads_.front().get();
    running_->id = 1;
}

void Scheduler::Begin(Dice& dice, std::function<void()> onDeadlock) {
    dice_ = &dice;
    onDeadlock_ = std::move(onDeadlock);
}

void Scheduler::End() {
    if (LiveThreads() != 0) {
        onDeadlock_();
    }
    for (const std::unique_ptr<Thread>& thread : threads_) {
        if (thread->thread.joinable()) {
            thread->thread.join();
        }
    }
    threads_.resize(1);
    dice_ = nullptr;
    now_ = 0;
}

std::size_t Scheduler::LiveThreads() const {
    const auto live =
        std::count_if(threads_.begin(), threads_.end(), [](const auto& thread) { return !thread->ended; });
    return static_cast<std::size_t>(live) - 1;
}

QRN::Core::ThreadId Scheduler::Start(QRN::Core::ThreadFunction function, void* argument) {
    threads_.push_back(std::make_unique<Thread>());
    Thread& started = *threads_.back();
    started.id = threads_.size();
    started.thread = std::thread([this, &started, function, argument] { RunThread(started, function, argument); });
    return started.id;
}

void Scheduler::RunThread(Thread& thread, QRN::Core::ThreadFunction function, void* argument) {
    {
        std::unique_lock lock(mutex_);
        thread.turn.wait(lock, [&] { return running_ == &thread; });
    }
    thread.exitCode = function(argument);
    thread.ended = true;
    Thread& next = PickNext();
    const std::lock_guard lock(mutex_);
    running_ = &next;
    next.turn.notify_one();
}

void Scheduler::Block(const std::function<bool()>& ready, Time deadline) {
    if (ready()) {
        return;
    }
    Thread& self = *running_;
    self.ready = &ready;
    self.deadline = deadline;
    HandOver(PickNext());
    self.ready = nullptr;
}

void Scheduler::GiveWay() {
    if (dice_ != nullptr && threads_.size() > 1 && dice_->OneIn(4)) {
        HandOver(*PickRunnable());
    }
}

void Scheduler::LetOthersRun(Time until) {
    const std::function<bool()> isNever = [] { return false; };
    running_->isLast = true;
    Block(isNever, until);
    threads_.front()->isLast = false;
}

bool Scheduler::CanRun(const Thread& thread) const {
    return !thread.ended && (thread.ready == nullptr || thread.deadline <= now_ || (*thread.ready)());
}

/// A thread that can run now, or null; one that goes last only when it is the only one.
Scheduler::Thread* Scheduler::PickRunnable() {
    Thread* last = nullptr;
    std::vector<Thread*> runnable;
    for (const std::unique_ptr<Thread>& thread : threads_) {
        if (CanRun(*thread)) {
            thread->isLast ? static_cast<void>(last = thread.get()) : runnable.push_back(thread.get());
        }
    }
    if (runnable.empty()) {
        return last;
    }
    return runnable[runnable.size() > 1 ? dice_->Below(static_cast<std::uint32_t>(runnable.size())) : 0];
}

/// If no thread can run now, the clock advances to the first time at which one can.
Scheduler::Thread& Scheduler::PickNext() {
    for (;;) {
        if (Thread* const next = PickRunnable()) {
            return *next;
        }
        Time first = never;
        for (const std::unique_ptr<Thread>& thread : threads_) {
            first = thread->ended ? first : std::min(first, thread->deadline);
        }
        if (first == never) {
            onDeadlock_();
        }
        now_ = first;
    }
}

void Scheduler::HandOver(Thread& next) {
    std::unique_lock lock(mutex_);
    Thread& self = *running_;
    if (&next == &self) {
        return;
    }
    running_ = &next;
    next.turn.notify_one();
    self.turn.wait(lock, [&] { return running_ == &self; });
}

}  // namespace Morquil::Testing::Worlds
