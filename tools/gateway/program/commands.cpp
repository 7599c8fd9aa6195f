#include "gateway/program/commands.h"

#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <future>
#include <iostream>

#include "gateway/people/people.h"
#include "gateway/store/store.h"

namespace Morquil::Gateway {
namespace {

constexpr int failed = 1;

int Fail(const std::string& why) {
    std::fprintf(stderr, "morquil-gateway: %s\n", why.c_str());
    return failed;
}

/// The people in a database, whose changes are written when `Save` is called.
class StoredPeople {
public:
    explicit StoredPeople(const std::string& database)
        : store_({.path = database, .post = [](const std::function<void()>& function) { function(); }}) {}

    /// Returns: why they cannot be read; empty if they can.
    std::string Load() {
        const auto users = store_.Load(std::string(usersCollection));
        const auto tokens = store_.Load(std::string(tokensCollection));
        if (!users || !tokens) {
            return "the database cannot be read: " + store_.Condition().sentence;
        }
        people_.Load(*users, *tokens);
        return {};
    }

    /// Returns: why they cannot be written; empty if they are.
    std::string Save() {
        std::promise<bool> written;
        store_.Flush([&](bool isWritten) { written.set_value(isWritten); });
        return written.get_future().get() ? std::string()
                                          : "the database cannot be written: " + store_.Condition().sentence;
    }

    People& All() { return people_; }

private:
    PeopleSettings Settings() {
        PeopleSettings settings;
        settings.background = [](const std::function<void()>& work, const std::function<void()>& done) {
            work();
            done();
            return true;
        };
        settings.put = [this](std::string_view collection, const std::string& name, const std::string& text) {
            store_.Put(std::string(collection), name, text);
        };
        settings.erase = [this](std::string_view collection, const std::string& name) {
            store_.Erase(std::string(collection), name);
        };
        settings.ended = [](const std::string&) {};
        return settings;
    }

    Store store_;
    People people_{Settings()};
};

/// From a terminal it is not shown.
std::string ReadPassword() {
    termios shown = {};
    const bool isTerminal = ::isatty(STDIN_FILENO) == 1 && ::tcgetattr(STDIN_FILENO, &shown) == 0;
    if (isTerminal) {
        std::fprintf(stderr, "Password: ");
        termios hidden = shown;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    std::string password;
    std::getline(std::cin, password);
    if (isTerminal) {
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown);
        std::fprintf(stderr, "\n");
    }
    return password;
}

}  // namespace

int VerifyAudit(const std::string& database) {
    const Verification found = VerifyDatabase(database);
    if (!found.isIntact) {
        return Fail(database + ": " + found.problem);
    }
    std::printf("%llu rows of the audit are intact; the last is %lld, with the hash %s\n",
                static_cast<unsigned long long>(found.rows), static_cast<long long>(found.last), found.head.c_str());
    return 0;
}

int BackUpDatabase(const std::string& database, const std::string& file) {
    Store store({.path = database, .post = [](const std::function<void()>& function) { function(); }});
    std::promise<std::string> done;
    store.Backup(file, [&](const std::string& problem) { done.set_value(problem); });
    const std::string problem = done.get_future().get();
    return problem.empty() ? 0 : Fail(problem);
}

int AddUser(const std::string& database, const std::string& name, Role role) {
    StoredPeople people(database);
    if (const std::string problem = people.Load(); !problem.empty()) {
        return Fail(problem);
    }
    PeopleProblem refusal = PeopleProblem::None;
    people.All().AddUser(name, {role, std::vector{Scope{}}, ReadPassword()},
                         [&](PeopleProblem problem) { refusal = problem; });
    if (refusal != PeopleProblem::None) {
        return Fail(name + ": " + std::string(SentenceOf(refusal)));
    }
    const std::string problem = people.Save();
    return problem.empty() ? 0 : Fail(problem);
}

int AddToken(const std::string& database, const std::string& name, Role role, unsigned days) {
    StoredPeople people(database);
    if (const std::string problem = people.Load(); !problem.empty()) {
        return Fail(problem);
    }
    Token token;
    token.name = name;
    token.role = role;
    if (days != 0) {
        token.expires = Now() + std::chrono::hours(24) * days;
    }
    std::string id;
    std::string secret;
    const PeopleProblem refusal = people.All().AddToken(token, id, secret);
    if (refusal != PeopleProblem::None) {
        return Fail(name + ": " + std::string(SentenceOf(refusal)));
    }
    if (const std::string problem = people.Save(); !problem.empty()) {
        return Fail(problem);
    }
    std::printf("%s\n", secret.c_str());
    return 0;
}

}  // namespace Morquil::Gateway
