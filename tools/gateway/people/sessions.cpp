#include "gateway/people/sessions.h"

#include <algorithm>

#include "gateway/people/passwords.h"

namespace Morquil::Gateway {
namespace {

std::string CredentialOf(std::string_view secret) {
    return "session:" + HashSecret(secret);
}

}  // namespace

std::string Sessions::Begin(const std::string& user, Clock::time_point now) {
    if (sessions_.size() >= limits_.most) {
        sessions_.erase(std::min_element(sessions_.begin(), sessions_.end(), [](const auto& left, const auto& right) {
            return left.second.used < right.second.used;
        }));
    }
    const std::string secret = RandomSecret();
    sessions_.insert_or_assign(CredentialOf(secret), Session{user, now, now});
    return secret;
}

bool Sessions::IsOver(const Session& session, Clock::time_point now) const {
    return now >= session.used + limits_.idle || now >= session.begun + limits_.longest;
}

std::optional<Sessions::Found> Sessions::Use(std::string_view secret, Clock::time_point now) {
    const auto found = sessions_.find(CredentialOf(secret));
    if (found == sessions_.end() || IsOver(found->second, now)) {
        return std::nullopt;
    }
    found->second.used = now;
    return Found{found->second.user, found->first};
}

void Sessions::Touch(const std::string& credential, Clock::time_point now) {
    const auto found = sessions_.find(credential);
    if (found != sessions_.end() && !IsOver(found->second, now)) {
        found->second.used = now;
    }
}

template <class Condition>
std::vector<std::string> Sessions::EndIf(Condition condition) {
    std::vector<std::string> ended;
    std::erase_if(sessions_, [&](const auto& entry) {
        const bool isEnded = condition(entry.first, entry.second);
        if (isEnded) {
            ended.push_back(entry.first);
        }
        return isEnded;
    });
    return ended;
}

std::vector<std::string> Sessions::End(std::string_view secret) {
    const std::string wanted = CredentialOf(secret);
    return sessions_.erase(wanted) > 0 ? std::vector{wanted} : std::vector<std::string>();
}

std::vector<std::string> Sessions::EndOf(const std::string& user) {
    return EndIf([&](const std::string&, const Session& session) { return session.user == user; });
}

std::vector<std::string> Sessions::EndOld(Clock::time_point now) {
    return EndIf([&](const std::string&, const Session& session) { return IsOver(session, now); });
}

}  // namespace Morquil::Gateway
