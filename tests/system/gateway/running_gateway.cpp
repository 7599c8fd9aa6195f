#include "tests/system/gateway/running_gateway.h"

#include <gtest/gtest.h>

#include <future>

#include "morquil.hpp"

namespace Morquil::Testing {

RunningGateway::RunningGateway(const std::vector<std::string>& addresses, const Adjust& adjust) {
    morquil::SilenceLibrary();
    settings_.config.server.port = 0;
    settings_.folder = folder_.Path();
    for (const std::string& address : addresses) {
        Gateway::DeviceEntry entry;
        entry.name = "dev-" + std::to_string(settings_.config.devices.size() + 1);
        entry.address = address;
        settings_.config.devices.push_back(entry);
    }
    if (adjust) {
        adjust(settings_);
    }
    Start();
}

RunningGateway::~RunningGateway() {
    Stop();
}

void RunningGateway::Restart() {
    Stop();
    Start();
}

void RunningGateway::Reload() {
    std::promise<void> reloaded;
    gateway_->RequestReload([&] { reloaded.set_value(); });
    reloaded.get_future().wait();
}

void RunningGateway::Start() {
    gateway_ = std::make_unique<Gateway::Gateway>(settings_);
    EXPECT_EQ(gateway_->Start(), "");
    port_ = gateway_->Port();
    thread_ = std::thread([this] { gateway_->Run(); });
}

void RunningGateway::Stop() {
    gateway_->RequestStop();
    thread_.join();
    gateway_ = nullptr;
}

Json RunningGateway::AwaitLink(const std::string& device, const std::string& state) const {
    EventClient events(port_, "?devices=" + device);
    const auto event = events.AwaitLink(state);
    return event ? event->data["link"] : Json();
}

}  // namespace Morquil::Testing
