#pragma once

#include <string_view>

#include "protocol/text/gathered_text.h"
#include "protocol/text/message_sender.h"

namespace Morquil {

/// Collects the text of messages. `BeginMessage` empties it; a writer that does not call it appends.
class MessageToString final : public IMessageSender {
public:
    void BeginMessage() override { text_.Clear(); }
    [[gnu::format(printf, 2, 3)]] void SendFormatted(const char* format, ...) override;
    bool EndMessage() override { return true; }

    /// Valid until the next piece or message.
    std::string_view GetText() const { return text_.View(); }

private:
    GatheredText text_;
};

}  // namespace Morquil
