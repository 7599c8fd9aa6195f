// One client of the stream.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "gateway/stream/event.h"
#include "gateway/stream/view.h"

namespace Morquil::Gateway {

/// A piece of a stream, ready to be written.
struct StreamPiece {
    SharedText text;
    bool hasId = true;
};

/// Holds what a client has not read yet. What it holds is bounded: a client that reads too slowly loses events, is
/// notified of the gap, and gets the latest values of the devices concerned when it reads again.
/// Threads: the context's.
class Subscriber {
public:
    /// In bytes; together with what is being written at most 64 KiB.
    static constexpr std::size_t mostQueued = 48 * 1'024;
    static constexpr std::size_t mostAtOnce = 16 * 1'024;

    /// `wake` is called when there is something to take; `who` is the user or token, for `Hub::End`.
    Subscriber(View view, std::string who, std::function<void()> wake)
        : view_(std::move(view)), who_(std::move(who)), wake_(std::move(wake)) {}

    const View& Sees() const { return view_; }
    const std::string& WhoReads() const { return who_; }

    /// The client needs a snapshot of the device; until then its changes need not be sent.
    void Owe(const std::string& device) { owed_.insert(device); }
    bool Owes(const std::string& device) const { return owed_.count(device) != 0; }
    void Push(const Event& event, SharedText text);
    /// Only if nothing else is pending.
    void PushHeartbeat(SharedText text);
    /// The last event: nothing is taken after it.
    void End(SharedText text);
    /// The events since the client's last one are not available any more.
    void NoteGap(std::size_t missed) {
        hasGap_ = true;
        missed_ += missed;
    }

    void Wake() const {
        if (HasNews()) {
            wake_();
        }
    }
    bool HasNews() const { return hasGap_ || !queue_.empty() || !owed_.empty() || ended_ != nullptr; }
    /// The last event is pending; then it has been taken.
    bool IsEnding() const { return ended_ != nullptr; }
    bool HasEnded() const { return isOver_; }
    std::size_t QueuedBytes() const { return queuedBytes_; }
    std::size_t Missed() const { return missedInAll_; }

    /// What has to be written next, about `mostAtOnce` bytes. `makeSnapshot` makes the text of an owed device, or null
    /// if there is no such device any more; it is passed whether it is the last that is owed.
    std::vector<StreamPiece> Take(const std::function<SharedText(const std::string&, bool)>& makeSnapshot,
                                  const std::function<SharedText(std::size_t)>& makeGap);

private:
    struct Queued {
        SharedText text;
        std::string device;
    };
    void Overflow();

    View view_;
    std::string who_;
    std::function<void()> wake_;
    std::deque<Queued> queue_;
    std::size_t queuedBytes_ = 0;
    std::set<std::string> owed_;
    bool hasGap_ = false;
    std::size_t missed_ = 0;
    std::size_t missedInAll_ = 0;
    SharedText ended_;
    bool isOver_ = false;
};

}  // namespace Morquil::Gateway
