// One device of the fleet: its entry, its link, its values, and the changes that are in progress.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <span>

#include "gateway/config/device_entry.h"
#include "gateway/fleet/device_link.h"
#include "gateway/fleet/mirror.h"

namespace Morquil::Gateway {

class FleetDevice;

/// Notified on the context's thread.
class FleetListener {
public:
    virtual void OnChanges(const FleetDevice& device, std::span<const ValueChange> changes) = 0;
    /// The link has changed, and perhaps everything else with it.
    virtual void OnLink(const FleetDevice& device) = 0;
    /// What the device accepts for these properties may have changed.
    virtual void OnOffers(const FleetDevice& device, std::span<const Property* const> properties) = 0;
    /// Devices were added, removed, renamed or edited.
    virtual void OnEdited() = 0;

protected:
    ~FleetListener() = default;
};

enum class Verdict {
    Confirmed,    // the device reports what was set
    Adjusted,     // the device has accepted the change, and reports another value
    Refused,      // the device has refused it
    NotSent,      // it is of a kind that is never sent
    Unconfirmed,  // the device had not confirmed it in time; it may still do so
    Lost,         // the connection ended before that
    TooMany       // too many changes of this device are in progress
};

/// What became of one change.
struct Settled {
    Verdict verdict = Verdict::Lost;
    std::optional<Value> before = {};
    std::optional<Value> now = {};
};

/// Threads: the context's.
class FleetDevice final : private LinkListener {
public:
    using OnSettled = std::function<void(Settled)>;
    static constexpr std::size_t mostChangesInProgress = 1'024;

    FleetDevice(boost::asio::io_context& context, BlockingWork& worker, DeviceEntry entry, FleetListener& listener);
    FleetDevice(const FleetDevice&) = delete;
    FleetDevice& operator=(const FleetDevice&) = delete;
    ~FleetDevice();

    const DeviceEntry& Entry() const { return entry_; }
    /// Connects anew only if the address or `enabled` differs.
    void Change(DeviceEntry entry);

    const Link& Now() const { return link_.Now(); }
    const DeviceLink& Connection() const { return link_; }
    bool IsLive() const { return link_.Device() != nullptr; }
    const Mirror& Values() const { return mirror_; }
    const std::optional<WallTime>& LastReport() const;
    /// Grows with every change of the entry, the link or a value; also over restarts of the gateway.
    std::uint64_t Revision() const { return revision_; }
    const std::optional<ValueChange>& LatestChange() const { return latestChange_; }
    Properties::Offer Offered(const Property& property) const;

    /// Sends a value that has been checked, and calls `done` once: when the device has settled it, or at the limit.
    void Set(const Property& property, const Value& value, Who who, std::chrono::milliseconds limit, OnSettled done);

    void Tick();

private:
    struct Pending;
    using PendingList = std::list<Pending>;

    void OnConnected() override;
    void OnReports(BoxContent content) override;
    void OnLost() override;
    void OnLinkChanged() override;

    void Send(Pending& pending, const morquil::Device& device);
    LastChange Attribute(const Reading& reading, const std::optional<Value>& known) const;
    void OnOutcome(std::uint64_t number, const morquil::Outcome& outcome);
    void OnLimit(std::uint64_t number);
    PendingList::iterator FindPending(std::uint64_t number);
    void NotifyOffers(const std::vector<morquil::PropertySet>& sets, std::span<const ValueChange> changes);

    boost::asio::io_context& context_;
    DeviceEntry entry_;
    FleetListener& listener_;
    Mirror mirror_;
    std::uint64_t revision_;
    mutable std::optional<WallTime> lastReport_;
    std::optional<ValueChange> latestChange_;
    PendingList pending_;
    std::uint64_t lastNumber_ = 0;
    std::shared_ptr<FleetDevice*> self_;  // for outcomes that arrive late
    DeviceLink link_;
};

}  // namespace Morquil::Gateway
