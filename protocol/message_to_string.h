#pragma once

#include <string_view>

#include "protocol/gathered_text.h"
#include "protocol/message_sender.h"

namespace Morquil {

/// Collects the text of messages. `BeginMessage` empties it; a writer that does not call it appends.
class MessageToString final : public IMessageSender {
public:
    void BeginMessage() override { text_.Clear(); }
    void SendFormatted(const char* format, ...) override MORQUIL_PRINTF(2, 3);
    bool EndMessage() override { return true; }

    /// Until the next piece or message.
    std::string_view GetText() const { return text_.View(); }

private:
    GatheredText text_;
};

}  // namespace Morquil
