#include "transport/piece_printer.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace Morquil {

void PiecePrinter::Print(std::string_view piece) {
    const bool isReady = droppedBytes_ == 0 || PrintNotice();
    droppedBytes_ += piece.size() - (isReady ? WritePiece(piece) : 0);
}

/// Returns: whether the whole notice has been written.
bool PiecePrinter::PrintNotice() {
    constexpr std::string_view before = "[MorquilAPI: ";
    constexpr std::string_view after = " bytes of output were dropped here]\n";
    std::array<char, 1 + before.size() + 20 + after.size()> text;
    char* end = text.data();
    if (isInLine_) {
        *end++ = '\n';
    }
    end = std::copy(before.begin(), before.end(), end);
    end = std::to_chars(end, text.data() + text.size(), droppedBytes_).ptr;
    end = std::copy(after.begin(), after.end(), end);
    const std::string_view notice(text.data(), static_cast<std::size_t>(end - text.data()));
    if (WritePiece(notice) < notice.size()) {
        return false;
    }
    droppedBytes_ = 0;
    return true;
}

std::size_t PiecePrinter::WritePiece(std::string_view piece) {
    std::size_t written = 0;
    while (written < piece.size()) {
        const std::string_view part = piece.substr(written, largestWrite);
        const std::size_t count = write_(part);
        if (count > 0) {
            isInLine_ = part[count - 1] != '\n';
        }
        written += count;
        if (count < part.size()) {
            break;
        }
    }
    return written;
}

}  // namespace Morquil
