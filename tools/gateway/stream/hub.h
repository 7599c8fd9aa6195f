// Passes what happens in the fleet to the clients of the stream.
#pragma once

#include <deque>
#include <memory>
#include <set>
#include <string>

#include "gateway/fleet/alarm.h"
#include "gateway/stream/subscriber.h"

namespace Morquil::Gateway {

class Fleet;

/// Numbers events, keeps the latest ones for clients that come back, and wakes clients: at once while it is calm, at
/// intervals under load, so that each client gets several events at a time.
/// Threads: the context's.
class Hub final : public FleetListener {
public:
    explicit Hub(boost::asio::io_context& context);

    /// The fleet that is shown. Its listener is this object, so that it can only be known later.
    void Show(const Fleet& fleet) { fleet_ = &fleet; }

    /// `lastId`: the id of the last event that a returning client has seen; empty for a new one.
    void Add(const std::shared_ptr<Subscriber>& subscriber, std::string_view lastId);
    void Remove(const std::shared_ptr<Subscriber>& subscriber) { subscribers_.erase(subscriber); }
    std::vector<StreamPiece> TakeFor(Subscriber& subscriber);

    /// Ends the streams of a user or token; of all for an empty text.
    void End(std::string_view who, std::string_view why);

    /// An event that concerns no device, such as a run of a salvo.
    void Publish(std::string name, Json body);

    /// Who reads streams: the credentials of the clients.
    std::set<std::string> Readers() const;
    std::size_t Clients() const { return subscribers_.size(); }
    std::size_t QueuedBytes() const;
    /// Of the client that is furthest back.
    std::size_t LongestQueue() const;
    /// How many gaps clients were notified of.
    std::uint64_t Gaps() const { return gaps_; }

    void OnChanges(const FleetDevice& device, std::span<const ValueChange> changes) override;
    void OnLink(const FleetDevice& device) override;
    void OnOffers(const FleetDevice& device, std::span<const Property* const> properties) override;
    void OnEdited() override;

private:
    void PublishChanges(const FleetDevice& device, std::span<const ValueChange> changes);
    void Publish(Event event);
    void Keep(Event event, std::size_t size);
    SharedText TextFor(const Event& event, const View& view) const;
    SharedText SnapshotFor(const View& view, const std::string& device, bool isLast) const;
    bool Resume(Subscriber& subscriber, std::string_view lastId) const;
    std::string IdOf(std::uint64_t number) const { return boot_ + "-" + std::to_string(number); }
    void FlushSoon();
    void Flush();
    void BeatLater();

    boost::asio::io_context& context_;
    const Fleet* fleet_ = nullptr;
    std::string boot_;
    std::uint64_t lastNumber_ = 0;
    std::uint64_t gaps_ = 0;
    std::set<std::shared_ptr<Subscriber>> subscribers_;
    std::set<std::string> knownDevices_;
    struct Kept {
        Event event;
        std::size_t size;
    };
    std::deque<Kept> kept_;
    std::size_t keptBytes_ = 0;
    bool isFlushing_ = false;
    std::chrono::steady_clock::time_point lastFlush_ = {};
    Alarm flush_;
    Alarm heartbeat_;
};

}  // namespace Morquil::Gateway
