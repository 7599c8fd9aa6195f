#include "gateway/store/worker.h"

#include <utility>

namespace Morquil::Gateway {

Worker::Worker(std::size_t most) : most_(most), thread_([this] { RunAll(); }) {}

Worker::~Worker() {
    {
        const Held held(mutex_);
        isEnding_ = true;
    }
    wakeup_.WakeAll();
    thread_.join();
}

bool Worker::Run(std::function<void()> work) {
    {
        const Held held(mutex_);
        if (isEnding_ || waiting_.size() >= most_) {
            return false;
        }
        waiting_.push_back(std::move(work));
    }
    wakeup_.WakeAll();
    return true;
}

std::function<void()> Worker::Next() {
    const Held held(mutex_);
    while (waiting_.empty() && !isEnding_) {
        wakeup_.Wait(mutex_);
    }
    if (isEnding_) {
        return {};
    }
    std::function<void()> work = std::move(waiting_.front());
    waiting_.pop_front();
    return work;
}

void Worker::RunAll() {
    while (const std::function<void()> work = Next()) {
        work();
    }
}

}  // namespace Morquil::Gateway
