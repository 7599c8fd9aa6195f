#pragma once

namespace Morquil {

/// The length of the longest piece of protocol text; a longer one is cut.
inline constexpr int maximumPieceLength = 255;

/// Accepts protocol text piece by piece: the client sends it, a collector keeps it.
class IMessageSender {
public:
    virtual ~IMessageSender() = default;
    /// Called before a message is written. Five writers never call it; their text is appended to what is already there.
    virtual void BeginMessage() = 0;
    /// One piece of text; supports plain %s, %d, %u, %x and %f. Cut after 255 characters.
    [[gnu::format(printf, 2, 3)]] virtual void SendFormatted(const char* format, ...) = 0;
    /// Called when the message is complete. Returns whether its whole text was accepted.
    virtual bool EndMessage() = 0;

protected:
    IMessageSender() = default;
    IMessageSender(const IMessageSender&) = default;
    IMessageSender& operator=(const IMessageSender&) = default;
};

}  // namespace Morquil
