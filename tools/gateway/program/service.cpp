#include "gateway/program/service.h"

#include <systemd/sd-daemon.h>
#include <time.h>

namespace Morquil::Gateway {
namespace {

std::string MonotonicMicroseconds() {
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::to_string(static_cast<long long>(now.tv_sec) * 1'000'000 + now.tv_nsec / 1'000);
}

void Notify(const std::string& state) {
    // Its result only says whether there is a manager.
    ::sd_notify(0, state.c_str());
}

}  // namespace

void Service::Ready(const std::string& status) {
    Notify("READY=1\nSTATUS=" + status);
    Beat();
}

void Service::Reloading() {
    Notify("RELOADING=1\nMONOTONIC_USEC=" + MonotonicMicroseconds());
}

void Service::Reloaded(const std::string& status) {
    Notify("READY=1\nSTATUS=" + status);
}

void Service::Stopping() {
    beat_.Cancel();
    Notify("STOPPING=1");
}

void Service::Beat() {
    std::uint64_t microseconds = 0;
    if (::sd_watchdog_enabled(0, &microseconds) <= 0) {
        return;
    }
    Notify("WATCHDOG=1");
    // Late by twice the interval is still in time.
    beat_.In(std::chrono::microseconds(microseconds / 3), [this] { Beat(); });
}

}  // namespace Morquil::Gateway
