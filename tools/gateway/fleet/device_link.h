// Keeps one device connected.
#pragma once

#include <boost/asio/io_context.hpp>
#include <chrono>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "gateway/fleet/alarm.h"
#include "gateway/fleet/blocking_work.h"
#include "gateway/fleet/link.h"
#include "gateway/fleet/report_box.h"
#include "morquil.hpp"

namespace Morquil::Gateway {

class Probe;
struct Diagnosis;

/// Notified on the context's thread.
class LinkListener {
public:
    /// The device's complete state is in the reports that follow at once.
    virtual void OnConnected() = 0;
    virtual void OnReports(BoxContent content) = 0;
    /// The connection that had been established has ended.
    virtual void OnLost() = 0;
    /// The state or its sentence has changed.
    virtual void OnLinkChanged() = 0;

protected:
    ~LinkListener() = default;
};

/// Connects, and reconnects after every loss, with pauses that grow and vary. Has no thread of its own.
/// Threads: the context's.
class DeviceLink {
public:
    DeviceLink(boost::asio::io_context& context, BlockingWork& worker, std::string name, LinkListener& listener);
    DeviceLink(const DeviceLink&) = delete;
    DeviceLink& operator=(const DeviceLink&) = delete;
    ~DeviceLink();

    void Start(std::string address);
    /// Ends the connection; the state is then `Disabled`.
    void Stop();
    /// For the log.
    void Rename(std::string name) { name_ = std::move(name); }

    const Link& Now() const { return link_; }
    /// The device, while it is connected; null otherwise.
    const morquil::Device* Device() const;
    /// For how long the device has sent nothing; nothing while it is not connected.
    std::optional<std::chrono::milliseconds> Silence() const;
    unsigned Reconnects() const { return reconnects_; }

    /// To be called about once a second: notices that a device does not answer any more.
    void CheckSilence();

private:
    struct Connection;

    void Attempt();
    void OnDiagnosed(const Diagnosis& diagnosis);
    void Connect();
    void OnConnected();
    void OnDisconnected(morquil::ConnectFailure reason);
    void Lose(const std::string& why);
    void Fail(Diagnosis diagnosis);
    void Drain(Connection& connection);
    void Close();
    void StopProbe();
    void RetryLater();
    void Become(LinkState state, std::string sentence);

    boost::asio::io_context& context_;
    BlockingWork& worker_;
    std::string name_;
    LinkListener& listener_;
    std::string address_;
    Link link_;
    std::optional<WallTime> lostSince_;
    unsigned reconnects_ = 0;
    std::chrono::milliseconds delay_;
    std::shared_ptr<Connection> connection_;
    std::shared_ptr<Probe> probe_;
    Alarm alarm_;
    std::minstd_rand random_{std::random_device{}()};
};

}  // namespace Morquil::Gateway
