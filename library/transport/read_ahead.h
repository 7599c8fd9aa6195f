#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace Morquil {

/// A buffer of bytes read from the system before the caller requests them. A large read costs hardly more than a small
/// one, and on some systems each read is a round trip to another process.
class ReadAhead {
public:
    /// Copies up to `length` buffered bytes to `buffer` and, unless `stay` is set, removes them. When nothing is
    /// buffered it calls `read(buffer, length, flags)`, which returns a number of bytes, or 0 or less; the latter is
    /// then the result here too. With `flags` it does not read ahead.
    template <class Read>
    int Take(char* buffer, int length, int flags, bool stay, Read read) {
        if (IsEmpty()) {
            unreported_ = more_ = false;
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
        unreported_ = more_ || !IsEmpty();
        return static_cast<int>(count);
    }

    /// Whether bytes, here or in the system, are available that have not been reported since the last `Take`.
    bool HasUnreported() const { return unreported_; }

    /// Marks the available bytes as reported. `more`: the system has reported that it has more, which it does once for
    /// each read.
    void MarkReported(bool more) {
        unreported_ = false;
        more_ = more_ || more;
    }

    /// Sets whether more than the requested bytes may be read. Disable it for a socket that others read as well.
    void Enable(bool enabled) { isEnabled_ = enabled; }

    /// Marks the buffered bytes as not reported yet.
    void ReportAgain() { unreported_ = !IsEmpty(); }

    bool IsEmpty() const { return begin_ == end_; }

    void Clear() {
        begin_ = end_ = 0;
        unreported_ = more_ = false;
    }

private:
    bool isEnabled_ = true;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool unreported_ = false;
    bool more_ = false;
    std::array<char, 8192> bytes_;
};

}  // namespace Morquil
