// How the fuzzer's bytes encode a stream and the pieces in which it arrives.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Morquil::Fuzz {

/// A stream, then optionally a byte 0xFF, options, and the sizes of the pieces in which the stream arrives. Any text is
/// a valid input, so files of recorded text can be seeds: without sizes it arrives byte by byte.
class FeedInput {
public:
    explicit FeedInput(std::string_view input) : stream_(input.substr(0, input.rfind(mark))) {
        if (stream_.size() < input.size()) {
            const std::string_view tail = input.substr(stream_.size() + 1);
            options_ = tail.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(tail.front());
            sizes_ = tail.substr(std::min<std::size_t>(tail.size(), 1));
        }
    }

    std::string_view Stream() const { return stream_; }

    /// Whether the stream is also played back as a settings file.
    bool IsSettingsFile() const { return (options_ & 1) != 0; }
    /// Whether the client stops listening in the middle, and after how many events.
    bool StopsListening() const { return (options_ & 2) != 0; }
    std::uint64_t EventsBeforeStop() const { return options_ >> 2; }

    /// Calls `take` with each piece. A size of 0 is an empty piece; the piece after it is one byte.
    template <class Take>
    void ForEachPiece(Take take) const {
        std::string_view rest = stream_;
        for (std::size_t turn = 0; !rest.empty(); ++turn) {
            std::size_t size = sizes_.empty() ? 1 : static_cast<std::uint8_t>(sizes_[turn % sizes_.size()]);
            if (size == 0) {
                take(rest.substr(0, 0));
                size = 1;
            }
            take(rest.substr(0, size));
            rest.remove_prefix(std::min(size, rest.size()));
        }
    }

private:
    static constexpr char mark = '\xFF';

    std::string_view stream_;
    std::uint8_t options_ = 0;
    std::string_view sizes_;
};

}  // namespace Morquil::Fuzz
