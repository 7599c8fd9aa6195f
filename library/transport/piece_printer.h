#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Morquil {

/// Prints whole pieces or drops them. After a drop, a line with the number of dropped bytes is printed before the next
/// piece.
class PiecePrinter {
public:
    /// Writes as much of `text` as can be written at once.
    /// Returns: the number of bytes written.
    using Write = std::size_t (*)(std::string_view text);

    /// The largest write that a pipe accepts either whole or not at all.
    static constexpr std::size_t largestWrite = 4096;

    explicit constexpr PiecePrinter(Write write) : write_(write) {}

    void Print(std::string_view piece);

private:
    bool PrintNotice();
    std::size_t WritePiece(std::string_view piece);

    Write write_;
    std::uint64_t droppedBytes_ = 0;
    bool isInLine_ = false;
};

}  // namespace Morquil
