#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace Morquil {

/// The received part of an unfinished line.
class LineBuffer {
public:
    static constexpr std::size_t capacity = 256;

    bool IsEmpty() const { return length_ == 0; }
    bool IsFull() const { return length_ == capacity; }
    std::string_view Text() const { return {bytes_.data(), length_}; }

    /// Appends as much of `bytes` as fits and returns the rest.
    std::string_view Append(std::string_view bytes) {
        const std::size_t size = bytes.copy(bytes_.data() + length_, capacity - length_);
        length_ += size;
        return bytes.substr(size);
    }
    void Clear() { length_ = 0; }

private:
    std::array<char, capacity> bytes_{};
    std::size_t length_ = 0;
};

}  // namespace Morquil
