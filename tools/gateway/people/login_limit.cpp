#include "gateway/people/login_limit.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

using std::chrono::seconds;

std::string UserKey(const std::string& user) {
    return "user " + user;
}

std::string AddressKey(const std::string& address) {
    return "address " + address;
}

}  // namespace

seconds LoginLimit::Begin(const std::string& user, const std::string& address, Clock::time_point now) {
    const seconds wait =
        std::max(Wait(UserKey(user), limits_.perUser, now), Wait(AddressKey(address), limits_.perAddress, now));
    if (wait == seconds(0)) {
        Count(UserKey(user), now);
        Count(AddressKey(address), now);
    }
    return wait;
}

void LoginLimit::Succeed(const std::string& user, const std::string& address) {
    attempts_.erase(UserKey(user));
    const auto found = attempts_.find(AddressKey(address));
    if (found != attempts_.end() && !found->second.empty()) {
        found->second.pop_back();
    }
}

seconds LoginLimit::Wait(const std::string& key, std::size_t most, Clock::time_point now) {
    const auto found = attempts_.find(key);
    if (found == attempts_.end()) {
        return seconds(0);
    }
    Times& times = found->second;
    while (!times.empty() && times.front() + limits_.window <= now) {
        times.pop_front();
    }
    return times.size() < most ? seconds(0) : std::chrono::ceil<seconds>(times.front() + limits_.window - now);
}

void LoginLimit::Count(const std::string& key, Clock::time_point now) {
    attempts_[key].push_back(now);
    if (attempts_.size() > limits_.mostNames) {
        ForgetOldest();
    }
}

void LoginLimit::ForgetOldest() {
    const auto lastOf = [](const Times& times) { return times.empty() ? Clock::time_point::min() : times.back(); };
    attempts_.erase(std::min_element(attempts_.begin(), attempts_.end(), [&](const auto& left, const auto& right) {
        return lastOf(left.second) < lastOf(right.second);
    }));
}

}  // namespace Morquil::Gateway
