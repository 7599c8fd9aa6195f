#include "simulator/faults/faulty_line.h"

#include <algorithm>
#include <utility>

#include "simulator/link/acknowledgements.h"

namespace Morquil::Simulator {

namespace {

constexpr std::string_view blockEnd = "\n\n";
constexpr std::size_t overlongLine = 5000;
constexpr std::size_t floodBurst = 16384;
constexpr std::chrono::milliseconds floodPause{1};
constexpr std::size_t longestRandomPiece = 32;

/// Removes the first block from `text` and returns it.
std::string_view TakeBlock(std::string_view& text) {
    const std::size_t end = text.find(blockEnd);
    const std::string_view block = end == std::string_view::npos ? text : text.substr(0, end + blockEnd.size());
    text.remove_prefix(block.size());
    return block;
}

bool IsAcknowledgement(std::string_view block) {
    return block == acknowledged || block == refused;
}

std::string WithLongLine(std::string_view block) {
    const std::size_t behindHeader = std::min(block.find('\n'), block.size() - 1) + 1;
    return std::string(block.substr(0, behindHeader)) + "Endless: " + std::string(overlongLine, 'x') + "\n" +
           std::string(block.substr(behindHeader));
}

std::string WithCarriageReturns(std::string_view text) {
    std::string result;
    for (const char byte : text) {
        if (byte == '\n') {
            result += '\r';
        }
        result += byte;
    }
    return result;
}

}  // namespace

std::string FaultyLine::FromHost(std::string_view bytes) {
    return fromHost_.Pass(bytes, faults_.refuseAll);
}

void FaultyLine::FromDevice(std::string_view text, Moment now) {
    const Moment due = now + faults_.latency;
    std::string distorted;
    while (!text.empty()) {
        const std::string_view block = TakeBlock(text);
        if (!std::exchange(preambleSent_, true)) {
            cutNextBlock_ = cutNextBlock_ || faults_.closeMidBlock;
            distorted += block;
        } else if (!faults_.silent && cutNextBlock_ && !IsAcknowledgement(block)) {
            Send(distorted + std::string(block.substr(0, block.size() / 2)), due);
            outbox_.AddHangUp(due);
            return;
        } else if (!faults_.silent) {
            distorted += Distort(block);
        }
    }
    Send(std::move(distorted), due);
}

std::string FaultyLine::Distort(std::string_view block) {
    const std::string garbage = faults_.garbage ? noise_.Garbage() : std::string();
    if (IsAcknowledgement(block)) {
        if (faults_.neverAcknowledge) {
            return {};
        }
        return garbage + std::string(faults_.refuseAll ? refused : block);
    }
    latestReport_ = block;
    return garbage + (faults_.longLines ? WithLongLine(block) : std::string(block));
}

void FaultyLine::Send(std::string text, Moment due) {
    if (faults_.crlf) {
        text = WithCarriageReturns(text);
    }
    const bool isTheEnd = faults_.dropAfter && sent_ + text.size() >= *faults_.dropAfter;
    if (isTheEnd) {
        text.resize(*faults_.dropAfter - std::min(sent_, *faults_.dropAfter));
    }
    sent_ += text.size();
    outbox_.Add(std::move(text), due);
    if (isTheEnd) {
        outbox_.AddHangUp(due);
    }
}

void FaultyLine::SendGarbage(Moment now) {
    Send(noise_.Garbage(), now + faults_.latency);
}

void FaultyLine::HangUp(Moment now) {
    outbox_.DropAfter(now);
    outbox_.AddHangUp(now);
}

void FaultyLine::Flood(Moment now) {
    std::string burst;
    while (burst.size() < floodBurst) {
        burst += latestReport_;
    }
    nextFlood_ = now + floodPause;
    FromDevice(burst, now - faults_.latency);
}

Delivery FaultyLine::Take(Moment now) {
    if (IsFlooding() && outbox_.IsEmpty() && now >= nextFlood_) {
        Flood(now);
    }
    const std::optional<Moment> due = outbox_.NextDue();
    // Only sent text uses up random numbers, so the result does not depend on how often `Take` is called.
    return due && *due <= now ? outbox_.Take(now, PieceSize()) : Delivery();
}

std::size_t FaultyLine::PieceSize() {
    switch (faults_.fragmentation) {
        case Fragmentation::Byte:
            return 1;
        case Fragmentation::Random:
            return noise_.UpTo(longestRandomPiece);
        case Fragmentation::None:
            break;
    }
    return Outbox::everything;
}

std::optional<FaultyLine::Moment> FaultyLine::NextDue() const {
    const std::optional<Moment> next = outbox_.NextDue();
    return !next && IsFlooding() ? nextFlood_ : next;
}

}  // namespace Morquil::Simulator
