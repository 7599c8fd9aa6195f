#include "protocol/text/gathered_text.h"

#include <algorithm>

#include "protocol/text/format_text.h"
#include "protocol/text/message_sender.h"

namespace Morquil {

namespace {

constexpr std::size_t roomForAPiece = maximumPieceLength + 1;  // including its terminator

}  // namespace

void GatheredText::AppendPiece(const char* format, std::va_list arguments) {
    if (memory_.size() - length_ < roomForAPiece) {
        MakeRoomForAPiece();
    }
    const int length = FormatText(memory_.data() + length_, roomForAPiece, format, arguments);
    length_ += static_cast<std::size_t>(std::clamp(length, 0, maximumPieceLength));
}

void GatheredText::MakeRoomForAPiece() {
    memory_.resize(2 * (memory_.size() + roomForAPiece));
}

}  // namespace Morquil
