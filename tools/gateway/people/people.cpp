#include "gateway/people/people.h"

#include <algorithm>
#include <utility>

#include "gateway/people/documents.h"

namespace Morquil::Gateway {
namespace {

constexpr std::size_t mostUsers = 1000;
constexpr std::size_t mostTokens = 1000;
constexpr std::size_t longestName = 64;
constexpr std::string_view tokenPrefix = "mqt_";

// In logs, in URLs and on the panel, names must not look like anything else.
bool IsName(const std::string& name) {
    const auto isGood = [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
               (letter >= '0' && letter <= '9') || letter == '.' || letter == '_' || letter == '-' || letter == '@';
    };
    return !name.empty() && name.size() <= longestName && std::all_of(name.begin(), name.end(), isGood);
}

bool IsPassword(const std::string& password) {
    return password.size() >= shortestPassword && password.size() <= longestPassword;
}

std::string CredentialOf(const Token& token) {
    return "token:" + token.id;
}

}  // namespace

std::string_view SentenceOf(PeopleProblem problem) {
    switch (problem) {
        case PeopleProblem::None:
            break;
        case PeopleProblem::NotFound:
            return "There is none of this name";
        case PeopleProblem::Exists:
            return "There is one of this name already";
        case PeopleProblem::BadName:
            return "A name has 1 to 64 letters and digits of ASCII, and . _ - @";
        case PeopleProblem::BadPassword:
            return "A password has 8 to 1024 bytes";
        case PeopleProblem::LastAdmin:
            return "At least one user must be an admin";
        case PeopleProblem::Busy:
            return "Too many passwords are being checked: try again in a few seconds";
        case PeopleProblem::NoRoom:
            return "There are 1000 already";
    }
    return "";
}

People::People(PeopleSettings settings)
    : settings_(std::move(settings)), sessions_({settings_.sessionIdle, settings_.sessionLongest}) {}

People::~People() {
    *isAlive_ = false;
}

std::vector<std::string> People::Load(const Documents& users, const Documents& tokens) {
    std::vector<std::string> unreadable;
    for (const auto& [name, text] : users) {
        if (std::optional<User> user = ReadUser(text)) {
            users_.insert_or_assign(name, *std::move(user));
        } else {
            unreadable.push_back(name);
        }
    }
    for (const auto& [id, text] : tokens) {
        if (std::optional<Token> token = ReadToken(text)) {
            tokenHashes_[token->hash] = id;
            tokens_.insert_or_assign(id, *std::move(token));
        } else {
            unreadable.push_back(id);
        }
    }
    return unreadable;
}

bool People::IsOpen() const {
    return settings_.mayBeOpen && users_.empty();
}

// ---- Requests ----

void People::SignIn(const std::string& name, std::string password, const std::string& address,
                    std::function<void(SignInResult)> done) {
    const std::chrono::seconds wait = limit_.Begin(name, address, settings_.uptime());
    if (wait > std::chrono::seconds(0)) {
        done({.outcome = SignInResult::Outcome::TooMany, .retryAfter = wait});
        return;
    }
    const auto user = users_.find(name);
    const std::string hash = user != users_.end() ? user->second.passwordHash : std::string();
    const auto fits = std::make_shared<bool>(false);
    const bool isAccepted = settings_.background(
        [=, cost = settings_.cost, password = std::move(password)] {
            *fits = password.size() <= longestPassword && PasswordFits(hash, password, cost);
        },
        [=, this, isAlive = isAlive_] {
            if (*isAlive) {
                done(FinishSignIn(name, address, hash, *fits));
            }
        });
    if (!isAccepted) {
        done({.outcome = SignInResult::Outcome::Busy});
    }
}

// The user may have been removed, or have another password, since `hash` was read.
SignInResult People::FinishSignIn(const std::string& name, const std::string& address, const std::string& hash,
                                  bool fits) {
    const auto user = users_.find(name);
    if (!fits || user == users_.end() || user->second.passwordHash != hash) {
        return {.outcome = SignInResult::Outcome::Wrong};
    }
    limit_.Succeed(name, address);
    return {.outcome = SignInResult::Outcome::SignedIn, .session = sessions_.Begin(name, settings_.uptime())};
}

std::optional<Identity> People::FromSession(std::string_view session) {
    const std::optional<Sessions::Found> found = sessions_.Use(session, settings_.uptime());
    if (!found) {
        return std::nullopt;
    }
    const User& user = users_.at(found->user);
    return Identity{Identity::Kind::Password, user.name, user.role, user.scopes, found->credential};
}

std::optional<Identity> People::FromToken(std::string_view token) const {
    const auto id = tokenHashes_.find(HashSecret(token));
    if (id == tokenHashes_.end()) {
        return std::nullopt;
    }
    const Token& found = tokens_.at(id->second);
    if (found.expires && settings_.now() >= *found.expires) {
        return std::nullopt;
    }
    return Identity{Identity::Kind::Token, found.name, found.role, found.scopes, CredentialOf(found)};
}

void People::Touch(const std::string& credential) {
    sessions_.Touch(credential, settings_.uptime());
}

void People::SignOut(std::string_view session) {
    NotifyEnded(sessions_.End(session));
}

void People::SignOutEverywhere(const std::string& name) {
    NotifyEnded(sessions_.EndOf(name));
}

void People::Tick() {
    NotifyEnded(sessions_.EndOld(settings_.uptime()));
    const Time now = settings_.now();
    for (const auto& [id, token] : tokens_) {
        if (token.expires && now >= *token.expires) {
            settings_.ended(CredentialOf(token));
        }
    }
}

void People::NotifyEnded(const std::vector<std::string>& credentials) const {
    for (const std::string& credential : credentials) {
        settings_.ended(credential);
    }
}

// ---- Users ----

std::vector<User> People::Users() const {
    std::vector<User> users;
    for (const auto& [name, user] : users_) {
        users.push_back(user);
    }
    return users;
}

bool People::Hash(const std::string& password, std::function<void(const std::string& hash)> then) {
    const auto hash = std::make_shared<std::string>();
    return settings_.background([=, cost = settings_.cost] { *hash = HashPassword(password, cost); },
                                [=, isAlive = isAlive_, then = std::move(then)] {
                                    if (*isAlive) {
                                        then(*hash);
                                    }
                                });
}

bool People::IsLastAdmin(const std::string& name) const {
    return std::none_of(users_.begin(), users_.end(),
                        [&](const auto& entry) { return entry.first != name && entry.second.role == Role::Admin; });
}

PeopleProblem People::CheckNew(const std::string& name, const UserChange& change) const {
    if (!IsName(name)) {
        return PeopleProblem::BadName;
    }
    if (users_.contains(name)) {
        return PeopleProblem::Exists;
    }
    if (!change.password || !IsPassword(*change.password)) {
        return PeopleProblem::BadPassword;
    }
    if (change.role.value_or(Role::Viewer) != Role::Admin && IsLastAdmin(name)) {
        return PeopleProblem::LastAdmin;
    }
    return users_.size() < mostUsers ? PeopleProblem::None : PeopleProblem::NoRoom;
}

PeopleProblem People::CheckChange(const std::string& name, const UserChange& change) const {
    if (!users_.contains(name)) {
        return PeopleProblem::NotFound;
    }
    if (change.password && !IsPassword(*change.password)) {
        return PeopleProblem::BadPassword;
    }
    const bool losesAdmin = change.role && *change.role != Role::Admin;
    return losesAdmin && IsLastAdmin(name) ? PeopleProblem::LastAdmin : PeopleProblem::None;
}

void People::AddUser(const std::string& name, UserChange change, std::function<void(PeopleProblem)> done) {
    const PeopleProblem problem = CheckNew(name, change);
    if (problem != PeopleProblem::None) {
        done(problem);
        return;
    }
    const std::string password = *change.password;
    const bool isAccepted = Hash(password, [this, name, change = std::move(change), done](const std::string& hash) {
        const PeopleProblem late = hash.empty() ? PeopleProblem::Busy : CheckNew(name, change);
        if (late == PeopleProblem::None) {
            Keep({name, change.role.value_or(Role::Viewer), change.scopes.value_or(std::vector{Scope{}}), hash});
        }
        done(late);
    });
    if (!isAccepted) {
        done(PeopleProblem::Busy);
    }
}

void People::ChangeUser(const std::string& name, UserChange change, std::function<void(PeopleProblem)> done) {
    const PeopleProblem problem = CheckChange(name, change);
    if (problem != PeopleProblem::None || !change.password) {
        if (problem == PeopleProblem::None) {
            Apply(name, change, users_.at(name).passwordHash);
        }
        done(problem);
        return;
    }
    const std::string password = *change.password;
    const bool isAccepted = Hash(password, [this, name, change = std::move(change), done](const std::string& hash) {
        const PeopleProblem late = hash.empty() ? PeopleProblem::Busy : CheckChange(name, change);
        if (late == PeopleProblem::None) {
            Apply(name, change, hash);
        }
        done(late);
    });
    if (!isAccepted) {
        done(PeopleProblem::Busy);
    }
}

void People::Apply(const std::string& name, const UserChange& change, const std::string& passwordHash) {
    const User& before = users_.at(name);
    Keep({name, change.role.value_or(before.role), change.scopes.value_or(before.scopes), passwordHash});
    SignOutEverywhere(name);
}

void People::Keep(const User& user) {
    users_.insert_or_assign(user.name, user);
    settings_.put(usersCollection, user.name, ToDocument(user));
}

PeopleProblem People::RemoveUser(const std::string& name) {
    if (!users_.contains(name)) {
        return PeopleProblem::NotFound;
    }
    const bool opensAgain = users_.size() == 1 && settings_.mayBeOpen;
    if (IsLastAdmin(name) && !opensAgain) {
        return PeopleProblem::LastAdmin;
    }
    users_.erase(name);
    settings_.erase(usersCollection, name);
    SignOutEverywhere(name);
    return PeopleProblem::None;
}

// ---- Tokens ----

std::vector<Token> People::Tokens() const {
    std::vector<Token> tokens;
    for (const auto& [id, token] : tokens_) {
        tokens.push_back(token);
    }
    return tokens;
}

PeopleProblem People::AddToken(Token wanted, std::string& id, std::string& secret) {
    if (!IsName(wanted.name)) {
        return PeopleProblem::BadName;
    }
    if (tokens_.size() >= mostTokens) {
        return PeopleProblem::NoRoom;
    }
    secret = std::string(tokenPrefix) + RandomSecret();
    id = RandomName();
    wanted.id = id;
    wanted.created = settings_.now();
    wanted.hash = HashSecret(secret);
    tokenHashes_[wanted.hash] = id;
    settings_.put(tokensCollection, id, ToDocument(wanted));
    tokens_.insert_or_assign(id, std::move(wanted));
    return PeopleProblem::None;
}

PeopleProblem People::RevokeToken(const std::string& id) {
    const auto found = tokens_.find(id);
    if (found == tokens_.end()) {
        return PeopleProblem::NotFound;
    }
    const std::string credential = CredentialOf(found->second);
    tokenHashes_.erase(found->second.hash);
    tokens_.erase(found);
    settings_.erase(tokensCollection, id);
    settings_.ended(credential);
    return PeopleProblem::None;
}

}  // namespace Morquil::Gateway
