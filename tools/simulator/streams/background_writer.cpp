#include "simulator/streams/background_writer.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

#include "simulator/streams/blocking_output.h"

namespace Morquil::Simulator {

/// Shared with the thread, which may still be blocked when the program ends.
class BackgroundWriter::Queue {
public:
    Queue(Actions actions, std::size_t limit) : actions_(std::move(actions)), limit_(limit) {}

    bool Add(OutputPiece piece) {
        const std::lock_guard lock(mutex_);
        if (isFinishing_ || hasFailed_) {
            return false;
        }
        const bool fits = dropped_ == 0 && piece.text.size() <= limit_ - pendingBytes_;
        if (fits) {
            pendingBytes_ += piece.text.size();
            pieces_.push_back(std::move(piece));
        } else {
            ++dropped_;
        }
        changed_.notify_all();
        return fits;
    }

    bool Finish(TimePoint deadline) {
        std::unique_lock lock(mutex_);
        isFinishing_ = true;
        changed_.notify_all();
        changed_.wait_until(lock, deadline, [this] { return isDone_; });
        return isDone_ && !hasFailed_;
    }

    bool IsDone() {
        const std::lock_guard lock(mutex_);
        return isDone_;
    }

    /// The body of the thread.
    void WriteAll() {
        IgnoreBrokenPipes();
        std::optional<OutputPiece> piece = AwaitNext();
        while (piece && actions_.write(*piece)) {
            piece = AwaitNext();
        }
        const std::lock_guard lock(mutex_);
        hasFailed_ = piece.has_value();
        isDone_ = true;
        changed_.notify_all();
    }

private:
    /// Returns nothing once everything is written and no more will come.
    std::optional<OutputPiece> AwaitNext() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !pieces_.empty() || dropped_ > 0 || isFinishing_; });
        if (!pieces_.empty()) {
            OutputPiece piece = std::move(pieces_.front());
            pieces_.pop_front();
            pendingBytes_ -= piece.text.size();
            return piece;
        }
        return dropped_ > 0 ? std::optional(actions_.noteDropped(std::exchange(dropped_, 0))) : std::nullopt;
    }

    const Actions actions_;
    const std::size_t limit_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<OutputPiece> pieces_;
    std::size_t pendingBytes_ = 0;
    std::size_t dropped_ = 0;  // pieces dropped after those in the queue
    bool isFinishing_ = false;
    bool hasFailed_ = false;
    bool isDone_ = false;
};

BackgroundWriter::BackgroundWriter(Actions actions, std::size_t limit)
    : queue_(std::make_shared<Queue>(std::move(actions), limit)), thread_([queue = queue_] { queue->WriteAll(); }) {}

BackgroundWriter::~BackgroundWriter() {
    if (!isFinished_) {
        Finish(std::chrono::steady_clock::now() + patience);
    }
    if (queue_->IsDone()) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

bool BackgroundWriter::Write(OutputPiece piece) {
    return queue_->Add(std::move(piece));
}

bool BackgroundWriter::Finish(TimePoint deadline) {
    isFinished_ = true;
    return queue_->Finish(deadline);
}

}  // namespace Morquil::Simulator
