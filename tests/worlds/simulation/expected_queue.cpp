#include "tests/worlds/simulation/expected_queue.h"

#include <algorithm>
#include <utility>

#include "tests/worlds/simulation/spoken_keys.h"

namespace Morquil::Testing::Worlds {

namespace {

/// In the order of sending. The slots without a name are never sent.
constexpr std::array<std::string_view, 32> slotNames{"MORQUIL DEVICE",
                                                     "SUPPORTED CONVERSIONS",
                                                     "VIDEO INPUT",
                                                     "VIDEO INPUT AVAILABILITY",
                                                     "VIDEO OUTPUT",
                                                     "VIDEO OUTPUT AVAILABILITY",
                                                     "VIDEO PROC AMP",
                                                     "VIDEO PROC AMP AVAILABILITY",
                                                     "VIDEO ADJUST",
                                                     "VIDEO ADJUST AVAILABILITY",
                                                     "NOISE REDUCTION",
                                                     "NOISE REDUCTION AVAILABILITY",
                                                     "TEST PATTERN",
                                                     "TEST PATTERN AVAILABILITY",
                                                     "VIDEO ADVANCED",
                                                     "VIDEO ADVANCED AVAILABILITY",
                                                     "ANCILLARY DATA",
                                                     "ANCILLARY DATA AVAILABILITY",
                                                     "GENLOCK",
                                                     "GENLOCK AVAILABILITY",
                                                     "VARIABLE ASPECT RATIO",
                                                     "VARIABLE ASPECT RATIO AVAILABILITY",
                                                     "AUDIO",
                                                     "AUDIO AVAILABILITY",
                                                     "MODE3D",
                                                     "MODE3D AVAILABILITY",
                                                     "",
                                                     "",
                                                     "NETWORK CONFIG",
                                                     "DEVICE FILENAMES",
                                                     "PRESET",
                                                     "PRESET AVAILABILITY"};

/// The position of a key in its block.
std::size_t RankOf(std::string_view header, const std::string& key) {
    const auto& keys = SpokenKeys();
    const auto found = std::find_if(keys.begin(), keys.end(), [&](const SpokenKey& spoken) {
        return spoken.header == header && spoken.key == key;
    });
    return static_cast<std::size_t>(found - keys.begin());
}

/// The later value of a key replaces the earlier one. Keys keep the wire order.
void MergeLines(std::string_view header, Lines& waiting, const Lines& later) {
    for (const auto& line : later) {
        const std::size_t rank = RankOf(header, line.first);
        const auto place = std::find_if(waiting.begin(), waiting.end(), [&](const auto& waitingLine) {
            return RankOf(header, waitingLine.first) >= rank;
        });
        if (place != waiting.end() && place->first == line.first) {
            place->second = line.second;
        } else {
            waiting.insert(place, line);
        }
    }
}

}  // namespace

std::string TextOf(std::string_view header, const Lines& lines) {
    std::string text(header);
    text += ":\n";
    for (const auto& [key, value] : lines) {
        text.append(key).append(": ").append(value).append("\n");
    }
    return text + '\n';
}

void ExpectedQueue::Add(std::string_view header, const Lines& lines, bool isRemembered) {
    const auto slot =
        static_cast<std::size_t>(std::find(slotNames.begin(), slotNames.end(), header) - slotNames.begin());
    if (!slots_.at(slot)) {
        slots_[slot] = Waiting{{}, {}, isRemembered};
    }
    MergeLines(header, slots_[slot]->lines, lines);
    slots_[slot]->text = TextOf(header, slots_[slot]->lines);
}

std::optional<std::size_t> ExpectedQueue::NextSlot() const {
    for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
        if (slots_[slot] && !slotNames[slot].empty()) {
            return slot;
        }
    }
    return std::nullopt;
}

std::optional<std::string> ExpectedQueue::Next() const {
    const std::optional<std::size_t> slot = NextSlot();
    return slot ? std::optional(slots_[*slot]->text) : std::nullopt;
}

void ExpectedQueue::TakeNext() {
    const Waiting taken = *std::exchange(slots_[*NextSlot()], std::nullopt);
    if (taken.isRemembered) {
        sentTexts_.push_back(taken.text);
    }
    inFlight_ = acknowledgements_ == 0;
    acknowledgements_ -= inFlight_ ? 0 : 1;
}

bool ExpectedQueue::TakeEcho(const std::string& text) {
    const auto found = std::find(sentTexts_.begin(), sentTexts_.end(), text);
    if (found == sentTexts_.end()) {
        return false;
    }
    sentTexts_.erase(sentTexts_.begin(), std::next(found));
    return true;
}

}  // namespace Morquil::Testing::Worlds
