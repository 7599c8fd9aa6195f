#pragma once

namespace Morquil {

/// One piece of protocol text is at most this long; what is longer is cut.
inline constexpr int maximumPieceLength = 255;

/// Takes protocol text piece by piece: the client sends it, a collector keeps it.
class IMessageSender {
public:
    virtual ~IMessageSender() = default;
    /// A message is about to be written. Five writers never call it; their text joins what is already there.
    virtual void BeginMessage() = 0;
    /// One piece of text; understands plain %s, %d, %u, %x and %f. Cut after 255 characters.
    [[gnu::format(printf, 2, 3)]] virtual void SendFormatted(const char* format, ...) = 0;
    /// The message is complete. Returns the result of the whole writing: true when the text was taken.
    virtual bool EndMessage() = 0;

protected:
    IMessageSender() = default;
    IMessageSender(const IMessageSender&) = default;
    IMessageSender& operator=(const IMessageSender&) = default;
};

}  // namespace Morquil
