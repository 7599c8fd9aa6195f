#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>

namespace Morquil {

/// Protocol text assembled piece by piece. Each piece is formatted in place; the memory is reused for the next text.
class GatheredText {
public:
    void Clear() { length_ = 0; }
    /// Appends one piece, cut after `maximumPieceLength` characters.
    /// Throws: std::bad_alloc.
    [[gnu::format(printf, 2, 0)]] void AppendPiece(const char* format, std::va_list arguments);
    /// Valid until the next change.
    std::string_view View() const { return {memory_.data(), length_}; }

private:
    void MakeRoomForAPiece();

    std::string memory_;
    std::size_t length_ = 0;
};

}  // namespace Morquil
