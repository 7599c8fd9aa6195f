#include "tests/worlds/simulation/expected_receipts.h"

#include <algorithm>
#include <utility>

#include "tests/worlds/simulation/device_messages.h"

namespace Morquil::Testing::Worlds {

UINT ExpectedReceipts::Receipt::Count(Fate fate) const {
    return static_cast<UINT>(std::count_if(messages.begin(), messages.end(),
                                           [fate](const auto& message) { return message.second == fate; }));
}

UINT ExpectedReceipts::Receipt::CountAcknowledged() const {
    return Count(Fate::Acknowledged) + Count(Fate::Confirmed) + Count(Fate::Adjusted);
}

// ---- The host -------------------------------------------------------------------------------------------------------

void ExpectedReceipts::Opened(UINT64 receipt, QRN::Core::ThreadId thread) {
    trace_.Require(receipt != 0 && live_.count(receipt) == 0, "a receipt has the number of another");
    live_[receipt].thread = thread;
}

HRESULT ExpectedReceipts::Mark(UINT64 receipt) {
    const auto found = live_.find(receipt);
    return found != live_.end() && !std::exchange(found->second.isMarked, true) ? S_OK : S_FALSE;
}

HRESULT ExpectedReceipts::Cancel(UINT64 receipt) {
    const bool isLive = live_.count(receipt) != 0;
    End(receipt);
    return isLive ? S_OK : S_FALSE;
}

/// What is sent while there is no receipt is not followed.
void ExpectedReceipts::Queued(const std::string& header) {
    if (live_.empty()) {
        return;
    }
    Message& message = waiting_[header];
    if (message.number == 0) {
        message.number = ++lastNumber_;
        message.header = header;
    }
    for (auto& [number, receipt] : live_) {
        if (!receipt.isMarked && (receipt.thread == 0 || receipt.thread == Scheduler::Instance().Current())) {
            receipt.messages.emplace(message.number, Fate::Unsent);
        }
    }
}

void ExpectedReceipts::Kept() {
    for (auto& [number, receipt] : live_) {
        const bool collects = receipt.thread == 0 || receipt.thread == Scheduler::Instance().Current();
        receipt.hasKept |= !receipt.isMarked && collects;
    }
}

void ExpectedReceipts::Silence() {
    isSilent_ = true;
    live_.clear();
}

void ExpectedReceipts::End(UINT64 receipt) {
    live_.erase(receipt);
    if (live_.empty()) {
        waiting_.clear();
        acknowledged_.clear();
        for (std::optional<Message>& message : unanswered_) {
            message.reset();
        }
    }
}

// ---- The wire -------------------------------------------------------------------------------------------------------

void ExpectedReceipts::SetFate(const Message& message, Fate fate) {
    for (auto& [number, receipt] : live_) {
        if (const auto found = receipt.messages.find(message.number); found != receipt.messages.end()) {
            found->second = fate;
        }
    }
}

void ExpectedReceipts::Sent(const std::string& block) {
    std::optional<Message>& sent = unanswered_.emplace_back();
    const auto found = waiting_.find(block.substr(0, block.find(':')));
    if (found == waiting_.end()) {
        return;
    }
    sent = std::move(found->second);
    waiting_.erase(found);
    for (const auto& [key, value] : BlockMessage(block).lines) {
        sent->unreported[key] = value;
    }
    SetFate(*sent, Fate::Unanswered);
}

/// A device answers in the order in which it receives.
void ExpectedReceipts::Answered(bool isPositive) {
    if (unanswered_.empty()) {
        return;
    }
    const std::optional<Message> message = std::move(unanswered_.front());
    unanswered_.pop_front();
    if (message) {
        SetFate(*message, isPositive ? Fate::Acknowledged : Fate::Refused);
        if (isPositive) {
            acknowledged_.push_back(*message);
        }
    }
    Settle();
}

void ExpectedReceipts::Reported(const std::string& header, const Lines& lines) {
    TakeDifferences(header, lines, TakeRepetition(header, lines));
    Settle();
}

ExpectedReceipts::Comparison ExpectedReceipts::Compare(const Message& message, const std::string& header,
                                                       const Lines& report) {
    Comparison result = Comparison::NoneReported;
    for (const auto& [key, value] : report) {
        const auto found = message.unreported.find(key);
        if (message.header != header || found == message.unreported.end()) {
            continue;
        }
        if (found->second != value) {
            return Comparison::Different;
        }
        result = Comparison::Same;
    }
    return result;
}

void ExpectedReceipts::RemoveReported(Message& message, const Lines& report) {
    for (const auto& [key, value] : report) {
        message.unreported.erase(key);
    }
}

std::optional<ExpectedReceipts::Number> ExpectedReceipts::TakeRepetition(const std::string& header,
                                                                         const Lines& report) {
    std::deque<Message*> sent;
    for (Message& message : acknowledged_) {
        sent.push_back(&message);
    }
    for (std::optional<Message>& message : unanswered_) {
        message ? sent.push_back(&*message) : static_cast<void>(0);
    }
    for (Message* const message : sent) {
        if (Compare(*message, header, report) == Comparison::Same) {
            RemoveReported(*message, report);
            return message->number;
        }
    }
    return std::nullopt;
}

/// A value other than the acknowledged one: the device has adjusted it, or it has been superseded.
void ExpectedReceipts::TakeDifferences(const std::string& header, const Lines& report, std::optional<Number> repeated) {
    for (Message& message : acknowledged_) {
        if (repeated && message.number == *repeated) {
            return;
        }
        if (Compare(message, header, report) == Comparison::Different) {
            message.isAdjusted = true;
            RemoveReported(message, report);
            if (!repeated) {
                return;
            }
        }
    }
}

void ExpectedReceipts::Settle() {
    for (const Message& message : acknowledged_) {
        if (message.unreported.empty()) {
            SetFate(message, message.isAdjusted ? Fate::Adjusted : Fate::Confirmed);
        }
    }
    std::erase_if(acknowledged_, [](const Message& message) { return message.unreported.empty(); });
}

// ---- The library ----------------------------------------------------------------------------------------------------

ExpectedReceipts::Receipt* ExpectedReceipts::FindNotified(UINT64 receipt, const char* event) {
    trace_.Note("receipt " + std::to_string(receipt) + " is notified: " + event);
    trace_.Require(!isSilent_, "a receipt is notified after the last release");
    const auto found = live_.find(receipt);
    trace_.Require(found != live_.end(), "a receipt is notified after its end");
    return found != live_.end() ? &found->second : nullptr;
}

void ExpectedReceipts::OnAnswered(UINT64 receipt, UINT acknowledged, UINT refused, UINT kept) {
    if (Receipt* const expected = FindNotified(receipt, "answered")) {
        trace_.Require(expected->isMarked && expected->IsAnswered(), "a receipt is answered too early");
        trace_.Require(!std::exchange(expected->isAnswerNotified, true), "a receipt is answered twice");
        trace_.Require(acknowledged == expected->CountAcknowledged() && refused == expected->Count(Fate::Refused) &&
                           kept == (expected->hasKept ? 1U : 0U),
                       "the answers are counted wrong");
    }
}

void ExpectedReceipts::OnSettled(UINT64 receipt, UINT confirmed, UINT adjusted) {
    trace_.Note(std::to_string(confirmed) + " confirmed, " + std::to_string(adjusted) + " adjusted");
    if (const Receipt* const expected = FindNotified(receipt, "settled")) {
        trace_.Require(expected->isAnswerNotified && expected->IsSettled(), "a receipt is settled too early");
        trace_.Require(confirmed == expected->Count(Fate::Confirmed) && adjusted == expected->Count(Fate::Adjusted),
                       "the reports are counted wrong");
    }
    End(receipt);
}

void ExpectedReceipts::OnLost(UINT64 receipt, UINT acknowledged, UINT refused, UINT unanswered, UINT unsent) {
    trace_.Note(std::to_string(unanswered) + " unanswered, " + std::to_string(unsent) + " unsent");
    if (const Receipt* const expected = FindNotified(receipt, "lost")) {
        trace_.Require(acknowledged == expected->CountAcknowledged() && refused == expected->Count(Fate::Refused) &&
                           unanswered == expected->Count(Fate::Unanswered) && unsent == expected->Count(Fate::Unsent),
                       "the losses are counted wrong");
    }
    End(receipt);
}

void ExpectedReceipts::CheckQuiet(bool isConnected) {
    trace_.Require(isConnected || live_.empty(), "a receipt outlives its connection");
    for (const auto& [number, receipt] : live_) {
        const bool hasNews = receipt.isAnswerNotified ? receipt.IsSettled() : receipt.isMarked && receipt.IsAnswered();
        trace_.Require(!hasNews, "receipt " + std::to_string(number) + " is not notified");
    }
}

}  // namespace Morquil::Testing::Worlds
