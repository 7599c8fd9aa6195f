#pragma once

#include <string>

#include "protocol/table/block.h"
#include "protocol/text/message_to_string.h"

namespace Morquil {

/// A block to be sent to a device. Made on the heap by its sender; the client owns it from the moment it is queued.
class TextProtocolMessageBase {
public:
    TextProtocolMessageBase() = default;
    TextProtocolMessageBase(const TextProtocolMessageBase&) = default;
    TextProtocolMessageBase& operator=(const TextProtocolMessageBase&) = default;
    virtual ~TextProtocolMessageBase() = default;

    /// Writes the whole block. Returns the sender's result for the complete message.
    virtual bool WriteTo(IMessageSender& sender) const = 0;

    /// Whether the client remembers the text, so that the device's answer is recognised as an echo.
    bool recordSentText = true;
};

/// A message that carries one change set directly.
template <class Set>
class TextProtocolMessage final : public TextProtocolMessageBase, public Set {
public:
    TextProtocolMessage() = default;
    explicit TextProtocolMessage(const Set& set) : Set(set) {}

    bool WriteTo(IMessageSender& sender) const override { return WriteBlock<Set>(sender, *this); }
};

/// The protocol text of a block with this content.
template <class Description>
std::string BlockText(const ChangeSetOf<Description>& set) {
    MessageToString collector;
    WriteBlock<Description>(collector, set);
    return std::string(collector.GetText());
}

/// The whole protocol text of a message; two messages are the same when their texts are.
inline std::string TextOf(const TextProtocolMessageBase& message) {
    MessageToString collector;
    message.WriteTo(collector);
    return std::string(collector.GetText());
}

}  // namespace Morquil
