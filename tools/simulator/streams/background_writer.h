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

/// Writes pieces of text in their order on a thread of its own: a pipe that nobody reads holds up nothing but this
/// thread. What exceeds the limit is dropped, and so is everything after it until the thread has caught up.
class BackgroundWriter {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// How long a program waits for the last pieces at its end, as the destructor does unless `Finish` was called.
    static constexpr std::chrono::milliseconds patience{400};

    struct Actions {
        /// Writes a piece, and may block.
        /// Returns: whether it succeeded; after a failure nothing more is written.
        std::function<bool(const OutputPiece&)> write;
        /// What is written in place of dropped pieces.
        std::function<OutputPiece(std::size_t count)> noteDropped;
    };

    /// `limit` is the number of bytes that may be pending. `actions` may outlive the writer, with a thread that blocks.
    BackgroundWriter(Actions actions, std::size_t limit);
    ~BackgroundWriter();
    BackgroundWriter(const BackgroundWriter&) = delete;
    BackgroundWriter& operator=(const BackgroundWriter&) = delete;

    /// Never blocks.
    /// Returns: false when the piece was dropped.
    bool Write(OutputPiece piece);

    /// Waits until everything is written, at most until `deadline`. Later pieces are dropped.
    /// Returns:   whether every piece that was accepted has been written.
    bool Finish(TimePoint deadline);

private:
    class Queue;

    std::shared_ptr<Queue> queue_;
    std::thread thread_;
    bool isFinished_ = false;
};

}  // namespace Morquil::Simulator
