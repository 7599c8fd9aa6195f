#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace Morquil {

/// What has been received of a line that is not finished.
class LineBuffer {
public:
    static constexpr std::size_t capacity = 256;
    static constexpr std::size_t noColon = std::string_view::npos;

    bool IsEmpty() const { return length_ == 0; }
    bool IsFull() const { return length_ == capacity; }
    std::size_t Room() const { return capacity - length_; }
    std::string_view Text() const { return {Start(), length_}; }

    /// Whether everything in it came from `AppendRun`, which keeps the place of the first colon.
    bool IsPlain() const { return isPlain_; }
    std::size_t Colon() const { return colon_; }

    /// Appends a piece of `received` that fits. `colon` is the place of its first colon, or noColon.
    void AppendRun(std::string_view received, std::string_view run, std::size_t colon) {
        if (colon_ == noColon && colon != noColon) {
            colon_ = length_ + colon;
        }
        Copy(received, run);
        length_ += run.size();
    }
    /// Appends what fits of `bytes`, and returns the rest.
    std::string_view Append(std::string_view bytes) {
        const std::size_t size = std::min(bytes.size(), Room());
        std::memcpy(bytes_.data() + slack + length_, bytes.data(), size);
        length_ += size;
        isPlain_ = false;
        return bytes.substr(size);
    }

    void Clear() {
        length_ = 0;
        colon_ = noColon;
        isPlain_ = true;
    }

private:
    /// Copies of this length take two instructions; the length of a line's piece takes a guess of the processor's.
    static constexpr std::size_t slack = 32;

    const char* Start() const { return bytes_.data() + slack; }

    /// Copies more than the run where there is more on one of its sides: behind it, or in front of it while nothing
    /// else is kept.
    void Copy(std::string_view received, std::string_view run) {
        char* const to = bytes_.data() + slack + length_;
        const char* const end = run.data() + run.size();
        if (run.size() > slack) {  // NOLINT(bugprone-branch-clone): most runs are told apart here, and by nothing else
            std::memcpy(to, run.data(), run.size());
        } else if (static_cast<std::size_t>(received.data() + received.size() - run.data()) >= slack) {
            std::memcpy(to, run.data(), slack);
        } else if (length_ == 0 && static_cast<std::size_t>(end - received.data()) >= slack) {
            std::memcpy(to + run.size() - slack, end - slack, slack);
        } else {
            std::memcpy(to, run.data(), run.size());
        }
    }

    std::array<char, slack + capacity + slack> bytes_{};
    std::size_t length_ = 0;
    std::size_t colon_ = noColon;
    bool isPlain_ = true;
};

}  // namespace Morquil
