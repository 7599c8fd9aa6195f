// Slows down guessing of passwords.
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <string>

namespace Morquil::Gateway {

/// How many wrong passwords are allowed, and in which time.
struct LoginLimits {
    std::size_t perUser = 10;  // from any address
    std::size_t perAddress = 20;
    std::chrono::seconds window{300};
    std::size_t mostNames = 4096;  // users and addresses to remember; beyond them the oldest is forgotten
};

/// Threads: one.
class LoginLimit {
public:
    using Clock = std::chrono::steady_clock;

    explicit LoginLimit(LoginLimits limits = {}) : limits_(limits) {}

    /// Counts an attempt to sign in before its outcome is known, so that many at once gain nothing.
    /// Returns: zero if it may go on, otherwise how long to wait; it is then not counted.
    std::chrono::seconds Begin(const std::string& user, const std::string& address, Clock::time_point now);
    /// The password was right: takes back the attempts of this user, and one of this address.
    void Succeed(const std::string& user, const std::string& address);

private:
    using Times = std::deque<Clock::time_point>;

    std::chrono::seconds Wait(const std::string& key, std::size_t most, Clock::time_point now);
    void Count(const std::string& key, Clock::time_point now);
    void ForgetOldest();

    LoginLimits limits_;
    std::map<std::string, Times> attempts_;  // "user NAME" and "address ADDRESS"
};

}  // namespace Morquil::Gateway
