#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace Morquil::Simulator {

/// Text for one of several streams.
struct OutputPiece {
    std::string text;
    int stream = 0;
};

/// Writes pieces of text in order on a thread of its own, so a pipe without a reader blocks only this thread. A piece
/// beyond the limit is dropped, as is everything after it until the thread has caught up.
class BackgroundWriter {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// How long a program waits for the last pieces when it ends. The destructor waits this long unless `Finish` was
    /// called.
    static constexpr std::chrono::milliseconds patience{400};

    struct Actions {
        /// Writes a piece, and may block.
        /// Returns: whether it succeeded. After a failure nothing more is written.
        std::function<bool(const OutputPiece&)> write;
        /// Returns the piece to write in place of dropped pieces.
        std::function<OutputPiece(std::size_t count)> noteDropped;
    };

    /// `limit` is the maximum number of pending bytes. `actions` may outlive the writer if its thread is blocked.
    BackgroundWriter(Actions actions, std::size_t limit);
    ~BackgroundWriter();
    BackgroundWriter(const BackgroundWriter&) = delete;
    BackgroundWriter& operator=(const BackgroundWriter&) = delete;

    /// Never blocks.
    /// Returns: false if the piece was dropped.
    bool Write(OutputPiece piece);

    /// Waits until everything is written, but not beyond `deadline`. Later pieces are dropped.
    /// Returns: whether every accepted piece has been written.
    bool Finish(TimePoint deadline);

private:
    class Queue;

    std::shared_ptr<Queue> queue_;
    std::thread thread_;
    bool isFinished_ = false;
};

}  // namespace Morquil::Simulator
