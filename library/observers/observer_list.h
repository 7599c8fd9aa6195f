#pragma once

#include <algorithm>
#include <cstdint>
#include <list>
#include <new>
#include <utility>

#include "MorquilAPI.h"
#include "core/callback_scope.h"
#include "core/condition.h"
#include "core/intrusive_list.h"
#include "core/lock.h"
#include "core/lockable.h"
#include "core/thread_safety.h"

namespace Morquil {

/// The observers of one kind in the order of addition, each once. Every entry holds one reference.
///
/// Observers are called in rounds, and no lock is held during a call. A thread outside any callback waits for the
/// rounds in progress before it changes the list. A thread inside a callback could wait forever, so it changes the list
/// at once: entries that it removes are not called any more, and entries that it appends are. An observer is called
/// once in a round, however often it is removed and appended meanwhile. A removed observer is released after its call
/// has returned, and outside the list's lock.
template <class Observer>
class ObserverList {
    struct Entry {
        Observer* observer;       // null once it has been removed and released
        const Observer* name;     // the same pointer, kept after the release for comparison only
        std::uint64_t lastRound;  // the last round that called it
        bool removed = false;
        unsigned calls = 0;
    };

public:
    ObserverList() = default;
    ObserverList(const ObserverList&) = delete;
    ObserverList& operator=(const ObserverList&) = delete;
    ~ObserverList() {
        for (const Entry& entry : entries_) {
            entry.observer->Release();
        }
    }

    /// Returns: S_OK; S_FALSE when `observer` is already in the list; E_POINTER for null; E_OUTOFMEMORY; E_ACCESSDENIED
    ///          when the lock cannot be acquired.
    HRESULT Add(Observer* observer) {
        if (observer == nullptr) {
            return E_POINTER;
        }
        if (Holds(observer)) {
            return S_FALSE;
        }
        observer->AddRef();
        const HRESULT result = Append(observer);
        if (result != S_OK) {
            observer->Release();
        }
        return result;
    }

    /// Returns: S_OK; S_FALSE when `observer` is not in the list; E_ACCESSDENIED when the lock cannot be acquired.
    HRESULT Remove(Observer* observer) {
        Observer* released = nullptr;
        const HRESULT result = Unlink(observer, released);
        if (released != nullptr) {
            released->Release();
        }
        return result;
    }

    /// Whether the list has no observers.
    bool IsEmpty() {
        QRN::Core::Lock lock(lock_);
        return entries_.empty();
    }

    /// Ends each round in progress after its current call.
    void CancelRounds() {
        QRN::Core::Lock lock(lock_);
        MarkCancelled();
    }

    /// Ends each round in progress after its current call, and prevents all later calls.
    void Silence() {
        QRN::Core::Lock lock(lock_);
        silenced_ = true;
        MarkCancelled();
    }

    /// One round of calls. Changes and other rounds wait until it is destroyed, so rounds run in the order in which
    /// they began. A round that begins inside a callback cannot wait: it cancels the others.
    class Round {
    public:
        explicit Round(ObserverList& list) : list_(list) { list_.Begin(*this); }
        ~Round() { list_.End(*this); }
        Round(const Round&) = delete;
        Round& operator=(const Round&) = delete;

        /// Calls `call(observer)` for every observer, front to back, until the round is cancelled.
        template <class Call>
        void CallEach(Call call) {
            const QRN::Core::CallbackScope inCallback;
            while (Observer* const observer = list_.Next(*this)) {
                call(*observer);
            }
        }

        Round* previous = nullptr;  ///< the list's own links
        Round* next = nullptr;

    private:
        friend class ObserverList;
        ObserverList& list_;
        // Guarded by the list's lock. The list itself knows that lock by another name, so clang cannot check this.
        Entry* current_ = nullptr;
        std::uint64_t number_ = 0;
        bool cancelled_ = false;
    };

private:
    /// The observer of a removed entry that the caller must release, or null while a call is still using it.
    static Observer* TakeIfUnused(Entry& entry) {
        return entry.removed && entry.calls == 0 ? std::exchange(entry.observer, nullptr) : nullptr;
    }

    HRESULT Append(Observer* observer) {
        std::uint32_t error = 0;
        QRN::Core::Lock lock(lock_, error);
        if (error != 0) {
            return E_ACCESSDENIED;  // GCOVR_EXCL_LINE: the contract's result for a failure that no system reports
        }
        AwaitTurn();
        if (Find(observer) != entries_.end()) {
            return S_FALSE;
        }
        try {
            entries_.push_back(Entry{observer, observer, TakeLastRound(observer)});
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
        return S_OK;
    }

    bool Holds(Observer* observer) {
        QRN::Core::Lock lock(lock_);
        AwaitTurn();
        return Find(observer) != entries_.end();
    }

    /// Returns the last round that has already called `observer` under an entry that has been removed since, or 0.
    /// Erases such entries, unless a call is still using them.
    std::uint64_t TakeLastRound(const Observer* observer) REQUIRES(lock_) {
        std::uint64_t last = 0;
        for (const Entry& entry : entries_) {
            last = entry.name == observer ? std::max(last, entry.lastRound) : last;
        }
        entries_.remove_if([observer](const Entry& entry) { return entry.name == observer && entry.calls == 0; });
        return last;
    }

    HRESULT Unlink(Observer* observer, Observer*& released) {
        std::uint32_t error = 0;
        QRN::Core::Lock lock(lock_, error);
        if (error != 0) {
            return E_ACCESSDENIED;  // GCOVR_EXCL_LINE: the contract's result for a failure that no system reports
        }
        AwaitTurn();
        const auto found = Find(observer);
        if (found == entries_.end()) {
            return S_FALSE;
        }
        found->removed = true;
        released = TakeIfUnused(*found);
        if (rounds_.First() == nullptr) {
            entries_.erase(found);
        }
        return S_OK;
    }

    auto Find(Observer* observer) REQUIRES(lock_) {
        return std::find_if(entries_.begin(), entries_.end(),
                            [&](const Entry& entry) { return entry.observer == observer && !entry.removed; });
    }

    /// Waits until no round is in progress, unless the thread is inside a callback.
    void AwaitTurn() REQUIRES(lock_) {
        if (QRN::Core::CallbackScope::OnThisThread()) {
            return;
        }
        ++waitingChanges_;
        while (rounds_.First() != nullptr) {
            roundsEnded_.Wait(lock_);
        }
        --waitingChanges_;
        roundsEnded_.WakeAll();
    }

    void Begin(Round& round) {
        QRN::Core::Lock lock(lock_);
        if (QRN::Core::CallbackScope::OnThisThread()) {
            MarkCancelled();
        } else {
            // Waiting changes go first; otherwise a flood of rounds would block them forever.
            while (rounds_.First() != nullptr || waitingChanges_ != 0) {
                roundsEnded_.Wait(lock_);
            }
        }
        round.cancelled_ = silenced_;
        round.number_ = ++lastRound_;
        rounds_.Add(round);
    }

    void End(Round& round) {
        QRN::Core::Lock lock(lock_);
        rounds_.Remove(round);
        if (rounds_.First() == nullptr) {
            entries_.remove_if([](const Entry& entry) { return entry.removed; });
        }
        roundsEnded_.WakeAll();
    }

    /// Ends the current call of `round` and begins the next. Returns the next observer, or null at the end.
    Observer* Next(Round& round) {
        Observer* released = nullptr;
        Observer* next = nullptr;
        {
            QRN::Core::Lock lock(lock_);
            auto place = entries_.begin();
            if (round.current_ != nullptr) {
                place = std::next(PlaceOf(*round.current_));
                --round.current_->calls;
                released = TakeIfUnused(*round.current_);
            }
            place = std::find_if(place, entries_.end(), [&round](const Entry& entry) {
                return !entry.removed && entry.lastRound != round.number_;
            });
            round.current_ = round.cancelled_ || place == entries_.end() ? nullptr : &*place;
            if (round.current_ != nullptr) {
                ++round.current_->calls;
                round.current_->lastRound = round.number_;
                next = round.current_->observer;
            }
        }
        if (released != nullptr) {
            released->Release();
        }
        return next;
    }

    auto PlaceOf(const Entry& sought) REQUIRES(lock_) {
        return std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return &entry == &sought; });
    }

    void MarkCancelled() REQUIRES(lock_) {
        for (Round* round = rounds_.First(); round != nullptr; round = round->next) {
            round->cancelled_ = true;
        }
    }

    QRN::Core::Lockable lock_;
    QRN::Core::Condition roundsEnded_;
    std::list<Entry> entries_ GUARDED_BY(lock_);
    QRN::Core::IntrusiveList<Round> rounds_ GUARDED_BY(lock_);
    unsigned waitingChanges_ GUARDED_BY(lock_) = 0;
    std::uint64_t lastRound_ GUARDED_BY(lock_) = 0;
    bool silenced_ GUARDED_BY(lock_) = false;
};

}  // namespace Morquil
