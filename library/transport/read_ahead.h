#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace Morquil {

/// Bytes taken from the system before they are asked for: a large read costs hardly more than a small one, and on some
/// systems each is a round trip to another process.
class ReadAhead {
public:
    /// Hands out up to `length` bytes, of what has been read ahead when there is any; `stay` leaves them there.
    /// Otherwise `read(buffer, length, flags)` is asked for more; it returns a number of bytes, or a result of 0 or
    /// less, which is then the result here. What the system is to do in a way of its own (`flags`) is not read ahead.
    template <class Read>
    int Take(char* buffer, int length, int flags, bool stay, Read read) {
        if (IsEmpty()) {
            untold_ = more_ = false;
            if (flags != 0 || !isEnabled_) {
                return read(buffer, length, flags);
            }
            const int count = read(bytes_.data(), static_cast<int>(bytes_.size()), 0);
            if (count <= 0) {
                return count;
            }
            begin_ = 0;
            end_ = static_cast<std::size_t>(count);
        }
        const std::size_t count = std::min(end_ - begin_, static_cast<std::size_t>(length));
        std::copy_n(bytes_.data() + begin_, count, buffer);
        begin_ += stay ? 0 : count;
        untold_ = more_ || !IsEmpty();
        return static_cast<int>(count);
    }

    /// Whether bytes wait, here or behind, that nobody has been told of since the last `Take`.
    bool IsUntold() const { return untold_; }

    /// They have been told of. `more`: the system has said that it has more, and says so once for each read.
    void Tell(bool more) {
        untold_ = false;
        more_ = more_ || more;
    }

    /// Whether more than what is asked for may be read. Not of a socket that others read, too.
    void Enable(bool enabled) { isEnabled_ = enabled; }

    /// What waits is to be told anew.
    void TellAgain() { untold_ = !IsEmpty(); }

    bool IsEmpty() const { return begin_ == end_; }

    void Clear() {
        begin_ = end_ = 0;
        untold_ = more_ = false;
    }

private:
    bool isEnabled_ = true;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool untold_ = false;
    bool more_ = false;
    std::array<char, 8192> bytes_;
};

}  // namespace Morquil
