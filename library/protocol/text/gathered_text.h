#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>

namespace Morquil {

/// Protocol text that is put together piece by piece. Every piece is formatted where it stays; the memory is kept for
/// the next text.
class GatheredText {
public:
    void Clear() { length_ = 0; }
    /// Appends one piece, cut where every piece is cut.
    /// Throws: std::bad_alloc.
    [[gnu::format(printf, 2, 0)]] void AppendPiece(const char* format, std::va_list arguments);
    /// Until the next change.
    std::string_view View() const { return {memory_.data(), length_}; }

private:
    void MakeRoomForAPiece();

    std::string memory_;
    std::size_t length_ = 0;
};

}  // namespace Morquil
