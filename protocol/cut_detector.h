#pragma once

#include "protocol/message_sender.h"

namespace Morquil {

/// Takes a message's text to nowhere and notes whether any piece was too long to go out whole.
class CutDetector final : public IMessageSender {
public:
    void BeginMessage() override {}
    void SendFormatted(const char* format, ...) override MORQUIL_PRINTF(2, 3);
    bool EndMessage() override { return true; }

    bool HasCut() const { return hasCut_; }

private:
    bool hasCut_ = false;
};

}  // namespace Morquil
