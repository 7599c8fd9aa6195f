#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "MorquilDelivery.h"
#include "tests/worlds/simulation/trace.h"
#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// Knows which messages each receipt covers and what has become of them, from what passes on the wire, and fails the
/// trace when a notification says something else or does not come.
class ExpectedReceipts {
public:
    explicit ExpectedReceipts(Trace& trace) : trace_(trace) {}

    // What the host does.

    /// `thread`: whose changes it collects; 0: every thread's.
    void Opened(UINT64 receipt, QRN::Core::ThreadId thread);
    /// Returns: what the call has to answer.
    HRESULT Mark(UINT64 receipt);
    HRESULT Cancel(UINT64 receipt);
    /// A change is about to be queued.
    void Queued(const std::string& header);
    /// A change of a block that is never sent is about to be queued.
    void Kept();
    /// The last reference has been released: no one is notified any more.
    void Silence();
    bool HasLive() const { return !live_.empty(); }

    // What passes on the wire.

    void Sent(const std::string& block);
    void Answered(bool isPositive);
    void Reported(const std::string& header, const Lines& lines);

    // What the library notifies.

    void OnAnswered(UINT64 receipt, UINT acknowledged, UINT refused, UINT kept);
    void OnSettled(UINT64 receipt, UINT confirmed, UINT adjusted);
    void OnLost(UINT64 receipt, UINT acknowledged, UINT refused, UINT unanswered, UINT unsent);

    /// Every observer that had to be notified has been.
    void CheckQuiet(bool isConnected);

private:
    enum class Fate { Unsent, Unanswered, Refused, Acknowledged, Confirmed, Adjusted };
    using Number = std::size_t;

    struct Receipt {
        UINT Count(Fate fate) const;
        UINT CountAcknowledged() const;
        bool IsAnswered() const { return Count(Fate::Unsent) + Count(Fate::Unanswered) == 0; }
        bool IsSettled() const { return IsAnswered() && Count(Fate::Acknowledged) == 0; }

        QRN::Core::ThreadId thread = 0;
        bool isMarked = false;
        bool isAnswerNotified = false;
        bool hasKept = false;
        std::map<Number, Fate> messages;
    };
    /// A message that was queued while there was a receipt.
    struct Message {
        Number number = 0;
        std::string header;
        std::map<std::string, std::string> unreported;  ///< by key
        bool isAdjusted = false;
    };
    enum class Comparison { NoneReported, Same, Different };

    static Comparison Compare(const Message& message, const std::string& header, const Lines& report);
    static void RemoveReported(Message& message, const Lines& report);
    Receipt* FindNotified(UINT64 receipt, const char* event);
    void SetFate(const Message& message, Fate fate);
    void End(UINT64 receipt);
    std::optional<Number> TakeRepetition(const std::string& header, const Lines& report);
    void TakeDifferences(const std::string& header, const Lines& report, std::optional<Number> repeated);
    void Settle();

    Trace& trace_;
    bool isSilent_ = false;
    Number lastNumber_ = 0;
    std::map<UINT64, Receipt> live_;
    std::map<std::string, Message> waiting_;         ///< by header
    std::deque<std::optional<Message>> unanswered_;  ///< everything sent; what no receipt follows is nothing
    std::deque<Message> acknowledged_;               ///< and not wholly reported
};

}  // namespace Morquil::Testing::Worlds
