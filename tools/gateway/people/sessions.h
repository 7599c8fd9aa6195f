// Login sessions, in memory only.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Gateway {

struct SessionLimits {
    std::chrono::minutes idle;
    std::chrono::minutes longest;
    std::size_t most = 10000;  // the one that was used the longest time ago ends first
};

/// Threads: one.
class Sessions {
public:
    using Clock = std::chrono::steady_clock;

    explicit Sessions(SessionLimits limits) : limits_(limits) {}

    /// Returns: the secret for the cookie. It is not kept.
    std::string Begin(const std::string& user, Clock::time_point now);

    struct Found {
        std::string user;
        std::string credential;  // "session:" and the hash of the secret
    };
    /// Counts as use. Nothing if there is no such session, or if it is over.
    std::optional<Found> Use(std::string_view secret, Clock::time_point now);
    /// The same for an open stream, by its credential.
    void Touch(const std::string& credential, Clock::time_point now);

    /// End sessions. Returns: their credentials.
    std::vector<std::string> End(std::string_view secret);
    std::vector<std::string> EndOf(const std::string& user);
    std::vector<std::string> EndOld(Clock::time_point now);

private:
    struct Session {
        std::string user;
        Clock::time_point begun;
        Clock::time_point used;
    };

    bool IsOver(const Session& session, Clock::time_point now) const;
    template <class Condition>
    std::vector<std::string> EndIf(Condition condition);

    SessionLimits limits_;
    std::map<std::string, Session> sessions_;  // by credential
};

}  // namespace Morquil::Gateway
