#pragma once

#include "protocol/text/message_sender.h"

namespace Morquil {

/// Discards a message's text and notes whether any piece was too long to be sent whole.
class CutDetector final : public IMessageSender {
public:
    void BeginMessage() override {}
    [[gnu::format(printf, 2, 3)]] void SendFormatted(const char* format, ...) override;
    bool EndMessage() override { return true; }

    bool HasCut() const { return hasCut_; }

private:
    bool hasCut_ = false;
};

/// Makes absent what would not fit into a line: its line feed would be cut off, and what follows would be lost as well.
/// Only a decimal can be that long, and only one that this library has not written.
template <class Set>
void ClearWhatWouldBeCut(Set& set) {
    const auto clearRow = [&](const auto& row) {
        CutDetector detector;
        row.Write(detector, set);
        if (detector.HasCut()) {
            row.ForEachMember([&](auto member) { set.*member = {}; });
        }
    };
    Set::block.rows.ForEach(clearRow);
}

}  // namespace Morquil
