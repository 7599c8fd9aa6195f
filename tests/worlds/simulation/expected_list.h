#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

namespace Morquil::Testing::Worlds {

/// Which observers, by number, are in a list, and which has to be called next. Nothing is ever forgotten, so that a
/// round continues whatever is added and removed meanwhile.
class ExpectedList {
public:
    /// One round of calls, which begins at the front. It calls no observer twice, not even one that is removed and
    /// added again.
    class Round {
    public:
        bool IsOn() const { return isOn_; }
        void Begin() {
            next_ = 0;
            called_.clear();
            isOn_ = true;
        }
        void Cancel() { isOn_ = false; }

    private:
        friend class ExpectedList;
        bool HasCalled(std::size_t observer) const {
            return std::find(called_.begin(), called_.end(), observer) != called_.end();
        }

        std::size_t next_ = 0;
        std::vector<std::size_t> called_;
        bool isOn_ = false;
    };

    bool Has(std::size_t observer) const {
        for (const Entry& entry : entries_) {
            if (entry.observer == observer && !entry.removed) {
                return true;
            }
        }
        return false;
    }
    bool IsEmpty() const {
        Round all;
        all.Begin();
        return !Next(all);
    }
    void Add(std::size_t observer) { entries_.push_back({observer}); }
    void Remove(std::size_t observer) {
        for (Entry& entry : entries_) {
            entry.removed |= entry.observer == observer;
        }
    }

    /// The observer that `round` has to call next; none when it is over.
    std::optional<std::size_t> Next(Round& round) const {
        while (round.isOn_ && round.next_ < entries_.size() &&
               (entries_[round.next_].removed || round.HasCalled(entries_[round.next_].observer))) {
            ++round.next_;
        }
        return round.isOn_ && round.next_ < entries_.size() ? std::optional(entries_[round.next_].observer)
                                                            : std::nullopt;
    }
    void Called(Round& round) const { round.called_.push_back(entries_[round.next_++].observer); }

private:
    struct Entry {
        std::size_t observer;
        bool removed = false;
    };

    std::vector<Entry> entries_;
};

}  // namespace Morquil::Testing::Worlds
