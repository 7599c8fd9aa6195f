#pragma once

#include <string>

#include "protocol/message_sender.h"

namespace Morquil {

/// Collects the text of messages. `BeginMessage` empties it; a writer that does not call it appends.
class MessageToString final : public IMessageSender {
public:
    void BeginMessage() override { text_.clear(); }
    void SendFormatted(const char* format, ...) override MORQUIL_PRINTF(2, 3);
    bool EndMessage() override { return true; }

    const std::string& GetText() const { return text_; }

private:
    std::string text_;
};

}  // namespace Morquil
