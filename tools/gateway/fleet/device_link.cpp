#include "gateway/fleet/device_link.h"

#include <algorithm>
#include <utility>

#include "gateway/fleet/probe.h"
#include "gateway/text/log.h"

namespace Morquil::Gateway {
namespace {

using namespace std::chrono_literals;

constexpr auto firstDelay = 250ms;
constexpr auto longestDelay = 3'000ms;
// Within it a device that has begun to send its state has to have sent all of it.
constexpr auto stateLimit = 30s;
// The library asks a silent device for a sign of life after nine seconds.
constexpr auto longestSilence = 18s;

Diagnosis Incomplete(const std::string& address) {
    return {LinkState::NoDevice,
            "the converter at " + address + " began to answer, but did not send its whole state; restart it"};
}

}  // namespace

/// One connection of the library. Its events are posted to the context's thread; once `owner` is null they have no
/// effect any more.
struct DeviceLink::Connection {
    explicit Connection(DeviceLink& link) : owner(&link) {}

    DeviceLink* owner;
    std::optional<morquil::Connecting> connecting = {};
    morquil::Subscription reports = {};
    std::shared_ptr<ReportBox> box = std::make_shared<ReportBox>();
    bool isConnected = false;
};

DeviceLink::DeviceLink(boost::asio::io_context& context, BlockingWork& worker, std::string name, LinkListener& listener)
    : context_(context),
      worker_(worker),
      name_(std::move(name)),
      listener_(listener),
      delay_(firstDelay),
      alarm_(context) {
    link_.state = LinkState::Disabled;
}

DeviceLink::~DeviceLink() {
    StopProbe();
    Close();
}

void DeviceLink::Start(std::string address) {
    address_ = std::move(address);
    delay_ = firstDelay;
    Become(LinkState::Connecting, "connecting to " + address_);
    Attempt();
}

void DeviceLink::Stop() {
    const bool wasConnected = Device() != nullptr;
    StopProbe();
    Close();
    lostSince_.reset();
    if (wasConnected) {
        listener_.OnLost();
    }
    Become(LinkState::Disabled, "disabled");
}

const morquil::Device* DeviceLink::Device() const {
    return connection_ != nullptr && connection_->isConnected ? &connection_->connecting->device : nullptr;
}

std::optional<std::chrono::milliseconds> DeviceLink::Silence() const {
    const morquil::Device* const device = Device();
    if (device == nullptr) {
        return std::nullopt;
    }
    try {
        return device->Silence();
    } catch (const morquil::NotKnown&) {
        return std::nullopt;  // it has just been disconnected, and that event is on its way
    }
}

void DeviceLink::CheckSilence() {
    if (const auto silence = Silence(); silence && *silence > longestSilence) {
        Close();
        Lose("it has not answered for " + std::to_string(silence->count() / 1'000) + " seconds");
    }
}

// The library would only say that there is no answer, and takes a thread for each address where nothing is.
void DeviceLink::Attempt() {
    probe_ = Probe::Start(context_, address_, [this](const Diagnosis& diagnosis) {
        probe_ = nullptr;
        OnDiagnosed(diagnosis);
    });
}

void DeviceLink::OnDiagnosed(const Diagnosis& diagnosis) {
    if (diagnosis.state == LinkState::Connected) {
        Connect();
    } else {
        Fail(diagnosis);
    }
}

void DeviceLink::Connect() {
    connection_ = std::make_shared<Connection>(*this);
    const std::weak_ptr<Connection> weak = connection_;
    const auto pass = [weak](auto handle) {
        const std::shared_ptr<Connection> connection = weak.lock();
        if (connection != nullptr && connection->owner != nullptr) {
            handle(*connection->owner);
        }
    };
    morquil::ConnectionHandlers handlers;
    handlers.connected = [pass] { pass([](DeviceLink& link) { link.OnConnected(); }); };
    handlers.disconnected = [pass](morquil::ConnectFailure reason) {
        pass([reason](DeviceLink& link) { link.OnDisconnected(reason); });
    };
    alarm_.In(stateLimit, [this] { Fail(Incomplete(address_)); });
    try {
        connection_->connecting = morquil::ConnectAsync(
            address_, std::move(handlers),
            [&context = context_](std::function<void()> event) { boost::asio::post(context, std::move(event)); });
    } catch (const morquil::Error& error) {
        Log(LogLevel::Error, "a connection cannot be started", {{"device", name_}, {"reason", error.what()}});
        Fail(Incomplete(address_));
    }
}

void DeviceLink::OnConnected() {
    alarm_.Cancel();
    delay_ = firstDelay;
    Connection& connection = *connection_;
    const morquil::Device device = connection.connecting->device;
    const std::weak_ptr<Connection> weak = connection_;
    const auto drain = [weak] {
        const std::shared_ptr<Connection> drained = weak.lock();
        if (drained != nullptr && drained->owner != nullptr) {
            drained->owner->Drain(*drained);
        }
    };
    connection.reports =
        device.OnReport([device, drain, box = connection.box, &context = context_](const morquil::Report& report) {
            if (box->Add(device, report)) {
                boost::asio::post(context, drain);
            }
        });
    connection.box->AddAll(device);
    connection.isConnected = true;
    if (lostSince_) {
        ++reconnects_;
        Log(LogLevel::Info, "device is back",
            {{"device", name_}, {"seconds", std::to_string(static_cast<long>(SecondsSince(*lostSince_)))}});
    } else {
        Log(LogLevel::Info, "device connected", {{"device", name_}, {"address", address_}});
    }
    lostSince_.reset();
    link_ = {LinkState::Connected, "connected", WallClock::now()};
    listener_.OnConnected();
    Drain(connection);
    listener_.OnLinkChanged();
}

void DeviceLink::Drain(Connection& connection) {
    BoxContent content = connection.box->Take();
    if (connection.isConnected && (!content.readings.empty() || !content.offers.empty())) {
        listener_.OnReports(std::move(content));
    }
}

void DeviceLink::OnDisconnected(morquil::ConnectFailure reason) {
    if (!connection_->isConnected) {
        Fail(reason == morquil::ConnectFailure::RemoteLock
                 ? Diagnosis{LinkState::RemoteLocked,
                             "the converter at " + address_ + " is locked against remote control"}
                 : Incomplete(address_));
        return;
    }
    // What was reported before the end is still on its way.
    Drain(*connection_);
    Close();
    Lose(reason == morquil::ConnectFailure::RemoteLock ? "it was locked against remote control"
                                                       : "the connection has ended");
}

void DeviceLink::Lose(const std::string& why) {
    Log(LogLevel::Warning, "device lost", {{"device", name_}, {"address", address_}, {"reason", why}});
    link_ = {LinkState::Lost, why + "; reconnecting", WallClock::now()};
    lostSince_ = link_.since;
    listener_.OnLost();
    listener_.OnLinkChanged();
    RetryLater();
}

void DeviceLink::Fail(Diagnosis diagnosis) {
    Close();
    const bool saysMore = diagnosis.state == LinkState::RemoteLocked || diagnosis.state == LinkState::WrongProtocol;
    const LinkState state = lostSince_ && !saysMore ? LinkState::Lost : diagnosis.state;
    if (state != link_.state) {
        Log(LogLevel::Warning, "device cannot be connected", {{"device", name_}, {"reason", diagnosis.sentence}});
    }
    Become(state, std::move(diagnosis.sentence));
    RetryLater();
}

void DeviceLink::StopProbe() {
    if (probe_ != nullptr) {
        std::exchange(probe_, nullptr)->Cancel();
    }
}

void DeviceLink::Close() {
    alarm_.Cancel();
    if (connection_ == nullptr) {
        return;
    }
    connection_->owner = nullptr;
    worker_.Run([connection = std::exchange(connection_, nullptr)] {
        connection->reports.Cancel();
        if (connection->connecting) {
            connection->connecting->events.Cancel();
            connection->connecting->device.Disconnect();
        }
    });
}

void DeviceLink::RetryLater() {
    const auto quarter = static_cast<int>(delay_.count() / 4);
    const auto pause =
        delay_ + std::chrono::milliseconds(std::uniform_int_distribution<int>(-quarter, quarter)(random_));
    delay_ = std::min<std::chrono::milliseconds>(2 * delay_, longestDelay);
    alarm_.In(pause, [this] { Attempt(); });
}

void DeviceLink::Become(LinkState state, std::string sentence) {
    if (link_.state == state && link_.sentence == sentence) {
        return;
    }
    // A loss lasts until the device is back, whatever is found out about it meanwhile.
    const bool isSame = link_.state == state;
    link_ = {state, std::move(sentence), isSame ? link_.since : WallClock::now()};
    listener_.OnLinkChanged();
}

}  // namespace Morquil::Gateway
