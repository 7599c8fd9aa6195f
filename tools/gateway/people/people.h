// Users, tokens and login sessions: who somebody is, and until when.
//
// All of it is kept in memory; changes go to the store as documents. Sessions are not stored: a restart ends them.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gateway/people/login_limit.h"
#include "gateway/people/passwords.h"
#include "gateway/people/roles.h"
#include "gateway/people/scope.h"
#include "gateway/people/sessions.h"
#include "gateway/store/time.h"

namespace Morquil::Gateway {

/// Who sends a request.
struct Identity {
    enum class Kind { Open, Password, Token };

    Kind kind = Kind::Open;
    std::string name = {};  // of the user or token; empty while no one needs to sign in
    Role role = Role::Viewer;
    std::vector<Scope> scopes = {};
    /// What proved it, for `PeopleSettings::ended`; tells nothing about the secret itself.
    std::string credential = {};
};

struct User {
    std::string name = {};
    Role role = Role::Viewer;
    std::vector<Scope> scopes = {Scope{}};
    std::string passwordHash = {};

    bool operator==(const User&) const = default;
};

struct Token {
    std::string id = {};
    std::string name = {};
    Role role = Role::Viewer;
    std::vector<Scope> scopes = {Scope{}};
    Time created = {};
    std::optional<Time> expires = {};
    std::string hash = {};  // of the token; the token itself is shown once and not kept

    bool operator==(const Token&) const = default;
};

/// What to change of a user, or to make a new one from.
struct UserChange {
    std::optional<Role> role = {};
    std::optional<std::vector<Scope>> scopes = {};
    std::optional<std::string> password = {};
};

/// Why a request about people is refused.
enum class PeopleProblem { None, NotFound, Exists, BadName, BadPassword, LastAdmin, Busy, NoRoom };
/// A sentence for people.
std::string_view SentenceOf(PeopleProblem problem);

struct SignInResult {
    enum class Outcome { SignedIn, Wrong, TooMany, Busy };

    Outcome outcome = Outcome::Wrong;
    std::string session = {};              // the secret for the cookie
    std::chrono::seconds retryAfter = {};  // of TooMany
};

/// The collections of documents in the store.
inline constexpr std::string_view usersCollection = "users";
inline constexpr std::string_view tokensCollection = "tokens";

struct PeopleSettings {
    /// Runs the first function on another thread and the second one, later, on the caller's. Hashing a password takes
    /// about 100 ms and 64 MiB. Returns: false if too much waits already.
    std::function<bool(std::function<void()> work, std::function<void()> done)> background;
    std::function<void(std::string_view collection, const std::string& name, const std::string& text)> put;
    std::function<void(std::string_view collection, const std::string& name)> erase;
    /// A credential proves nothing any more: streams that it opened must end.
    std::function<void(const std::string& credential)> ended;
    /// Whether requests need no proof while there are no users: only where no other machine can send any.
    bool mayBeOpen = true;
    std::function<Time()> now = Now;
    std::function<std::chrono::steady_clock::time_point()> uptime = std::chrono::steady_clock::now;
    std::chrono::minutes sessionIdle{60};
    std::chrono::minutes sessionLongest{12 * 60};
    PasswordCost cost = PasswordCost::Usual;
};

/// Threads: one, the caller's.
class People {
public:
    explicit People(PeopleSettings settings);
    ~People();
    People(const People&) = delete;
    People& operator=(const People&) = delete;

    using Documents = std::vector<std::pair<std::string, std::string>>;
    /// Takes what the store has kept. Returns: the names of documents that cannot be read; they are left alone.
    std::vector<std::string> Load(const Documents& users, const Documents& tokens);

    /// Whether there is neither a user nor a token.
    bool IsEmpty() const { return users_.empty() && tokens_.empty(); }
    /// Whether a request without a session and a token may do everything: it may be open, and there are no users.
    bool IsOpen() const;

    // ---- Requests ----

    /// Checks a password in the background.
    void SignIn(const std::string& name, std::string password, const std::string& address,
                std::function<void(SignInResult)> done);
    /// Who has this session, which is used by asking. Nothing if it has ended.
    std::optional<Identity> FromSession(std::string_view session);
    /// Who has this token. Nothing if it is unknown, revoked or expired.
    std::optional<Identity> FromToken(std::string_view token) const;
    /// Keeps the session of an open stream in use.
    void Touch(const std::string& credential);
    void SignOut(std::string_view session);
    /// Ends all sessions of a user.
    void SignOutEverywhere(const std::string& name);
    /// Ends what has expired. Call it about twice a second.
    void Tick();

    // ---- Users and tokens ----

    std::vector<User> Users() const;
    /// Needs a role and a password. The first user must be an admin.
    void AddUser(const std::string& name, UserChange change, std::function<void(PeopleProblem)> done);
    /// A new password, a new role or new scopes end the user's sessions.
    void ChangeUser(const std::string& name, UserChange change, std::function<void(PeopleProblem)> done);
    PeopleProblem RemoveUser(const std::string& name);

    std::vector<Token> Tokens() const;
    /// The token's text ("mqt_...") is in `secret`, for the only time.
    PeopleProblem AddToken(Token wanted, std::string& id, std::string& secret);
    PeopleProblem RevokeToken(const std::string& id);

private:
    /// Hashes the password in the background, then calls `then` with the hash, unless all of this has ended meanwhile.
    bool Hash(const std::string& password, std::function<void(const std::string& hash)> then);
    PeopleProblem CheckNew(const std::string& name, const UserChange& change) const;
    PeopleProblem CheckChange(const std::string& name, const UserChange& change) const;
    bool IsLastAdmin(const std::string& name) const;
    void Keep(const User& user);
    void Apply(const std::string& name, const UserChange& change, const std::string& passwordHash);
    SignInResult FinishSignIn(const std::string& name, const std::string& address, const std::string& hash, bool fits);
    void NotifyEnded(const std::vector<std::string>& credentials) const;

    PeopleSettings settings_;
    std::map<std::string, User> users_;
    std::map<std::string, Token> tokens_;             // by id
    std::map<std::string, std::string> tokenHashes_;  // to ids
    Sessions sessions_;
    LoginLimit limit_;
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);  // seen by callbacks that come after the end
};

}  // namespace Morquil::Gateway
