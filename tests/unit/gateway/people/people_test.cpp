#include "gateway/people/people.h"

#include <gmock/gmock.h>

#include <deque>
#include <map>

namespace Morquil::Testing {
namespace {

using namespace std::chrono_literals;
using Gateway::Identity;
using Gateway::PeopleProblem;
using Gateway::Role;
using Gateway::Scope;
using Gateway::SignInResult;
using Gateway::Token;
using Gateway::User;
using Gateway::UserChange;
using Outcome = SignInResult::Outcome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class People : public testing::Test {
protected:
    People() { Restart(); }

    Gateway::PeopleSettings Settings() {
        return {.background =
                    [this](auto work, auto done) {
                        if (isBusy_) {
                            return false;
                        }
                        work();
                        done_.push_back(std::move(done));
                        return true;
                    },
                .put = [this](auto collection, const auto& name,
                              const auto& text) { documents_[std::string(collection)][name] = text; },
                .erase = [this](auto collection, const auto& name) { documents_[std::string(collection)].erase(name); },
                .ended = [this](const std::string& credential) { ended_.push_back(credential); },
                .mayBeOpen = mayBeOpen_,
                .now = [this] { return now_; },
                .uptime = [this] { return uptime_; },
                .cost = Gateway::PasswordCost::Least};
    }
    void Restart() {
        people_ = std::make_unique<Gateway::People>(Settings());
        const auto toList = [this](const std::string& collection) {
            return Gateway::People::Documents(documents_[collection].begin(), documents_[collection].end());
        };
        EXPECT_THAT(people_->Load(toList("users"), toList("tokens")), IsEmpty());
    }
    void FinishBackground() {
        while (!done_.empty()) {
            const std::function<void()> done = std::move(done_.front());
            done_.pop_front();
            done();
        }
    }
    PeopleProblem Add(const std::string& name, UserChange change) {
        PeopleProblem result{};
        people_->AddUser(name, std::move(change), [&](PeopleProblem problem) { result = problem; });
        FinishBackground();
        return result;
    }
    PeopleProblem Change(const std::string& name, UserChange change) {
        PeopleProblem result{};
        people_->ChangeUser(name, std::move(change), [&](PeopleProblem problem) { result = problem; });
        FinishBackground();
        return result;
    }
    void AddAnna() { ASSERT_EQ(Add("anna", {.role = Role::Admin, .password = "correct horse"}), PeopleProblem::None); }
    SignInResult SignIn(const std::string& name, const std::string& password, const std::string& address = "10.0.0.1") {
        SignInResult result;
        people_->SignIn(name, password, address, [&](const SignInResult& given) { result = given; });
        FinishBackground();
        return result;
    }
    std::string MakeToken(Token wanted) {
        std::string secret;
        EXPECT_EQ(people_->AddToken(std::move(wanted), tokenId_, secret), PeopleProblem::None);
        return secret;
    }

    bool isBusy_ = false;
    bool mayBeOpen_ = true;
    std::deque<std::function<void()>> done_;
    std::map<std::string, std::map<std::string, std::string>> documents_;
    std::vector<std::string> ended_;
    Gateway::Time now_ = *Gateway::ParseTime("2026-03-01T12:00:00Z");
    std::chrono::steady_clock::time_point uptime_{1h};
    std::string tokenId_;
    std::unique_ptr<Gateway::People> people_;
};

TEST_F(People, AreOpenUntilThereIsAUser) {
    EXPECT_TRUE(people_->IsOpen());
    AddAnna();
    EXPECT_FALSE(people_->IsOpen());
    EXPECT_EQ(people_->RemoveUser("anna"), PeopleProblem::None);
    EXPECT_TRUE(people_->IsOpen());
}

TEST_F(People, AreNeverOpenWhereOthersCanSendRequests) {
    mayBeOpen_ = false;
    Restart();
    EXPECT_FALSE(people_->IsOpen());
    MakeToken({.name = "monitoring"});
    EXPECT_EQ(people_->RevokeToken(tokenId_), PeopleProblem::None);
    EXPECT_FALSE(people_->IsOpen());
    AddAnna();
    EXPECT_EQ(people_->RemoveUser("anna"), PeopleProblem::LastAdmin);
}

TEST_F(People, SignInWithTheirPasswordOnly) {
    AddAnna();
    const SignInResult result = SignIn("anna", "correct horse");
    ASSERT_EQ(result.outcome, Outcome::SignedIn);
    const std::optional<Identity> identity = people_->FromSession(result.session);
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->name, "anna");
    EXPECT_EQ(identity->role, Role::Admin);
    EXPECT_EQ(identity->kind, Identity::Kind::Password);
    EXPECT_EQ(SignIn("anna", "correct horses").outcome, Outcome::Wrong);
    EXPECT_EQ(SignIn("anna", "").outcome, Outcome::Wrong);
    EXPECT_EQ(SignIn("bert", "correct horse").outcome, Outcome::Wrong);
    EXPECT_EQ(SignIn("anna", std::string(5000, 'x')).outcome, Outcome::Wrong);
    EXPECT_FALSE(people_->FromSession(""));
    EXPECT_FALSE(people_->FromSession(result.session + "x"));
}

TEST_F(People, AreStoredWithoutTheirSecrets) {
    AddAnna();
    const std::string secret = MakeToken({.name = "monitoring"});
    const std::string session = SignIn("anna", "correct horse").session;
    EXPECT_THAT(secret, testing::MatchesRegex("mqt_[A-Za-z0-9_-]+"));
    EXPECT_EQ(secret.size(), 47U);
    EXPECT_THAT(people_->Users().at(0).passwordHash, StartsWith("$argon2id$"));
    for (const auto& [collection, documents] : documents_) {
        for (const auto& [name, text] : documents) {
            EXPECT_THAT(text, Not(testing::HasSubstr("correct horse")));
            EXPECT_THAT(text, Not(testing::HasSubstr(secret.substr(4))));
            EXPECT_THAT(text, Not(testing::HasSubstr(session)));
        }
    }
}

TEST_F(People, AreThereAfterARestartButSignedOut) {
    AddAnna();
    const std::string session = SignIn("anna", "correct horse").session;
    const std::string secret =
        MakeToken({.name = "monitoring", .role = Role::Operator, .scopes = {{"cam-*", "proc-amp"}}});
    const std::vector<User> users = people_->Users();
    const std::vector<Token> tokens = people_->Tokens();
    Restart();
    EXPECT_EQ(people_->Users(), users);
    EXPECT_EQ(people_->Tokens(), tokens);
    EXPECT_FALSE(people_->FromSession(session));
    EXPECT_EQ(people_->FromToken(secret)->scopes, (std::vector<Scope>{{"cam-*", "proc-amp"}}));
    EXPECT_EQ(SignIn("anna", "correct horse").outcome, Outcome::SignedIn);
}

TEST_F(People, ThatCannotBeReadAreNamed) {
    Gateway::People people(Settings());
    EXPECT_THAT(people.Load({{"a", "x"}, {"b", "{}"}, {"c", R"({"name":"c","role":"king","scopes":[],"password":""})"}},
                            {{"t", "[]"}}),
                ElementsAre("a", "b", "c", "t"));
}

TEST_F(People, ASessionEndsWhenItIsNotUsed) {
    AddAnna();
    const std::string session = SignIn("anna", "correct horse").session;
    uptime_ += 59min;
    EXPECT_TRUE(people_->FromSession(session));
    uptime_ += 59min;
    EXPECT_TRUE(people_->FromSession(session)) << "using it has kept it";
    const std::string credential = people_->FromSession(session)->credential;
    uptime_ += 60min;
    EXPECT_FALSE(people_->FromSession(session));
    people_->Tick();
    EXPECT_THAT(ended_, ElementsAre(credential));
}

TEST_F(People, ASessionEndsAfterItsLongestTime) {
    AddAnna();
    const std::string session = SignIn("anna", "correct horse").session;
    const std::string credential = people_->FromSession(session)->credential;
    for (int i = 0; i < 23; ++i) {
        uptime_ += 30min;
        people_->Touch(credential);
        people_->Tick();
        EXPECT_TRUE(people_->FromSession(session)) << i;
    }
    uptime_ += 30min;
    people_->Touch(credential);
    EXPECT_FALSE(people_->FromSession(session));
    people_->Tick();
    EXPECT_THAT(ended_, ElementsAre(credential));
}

TEST_F(People, SigningOutEndsOneSessionOrAll) {
    AddAnna();
    const std::string first = SignIn("anna", "correct horse").session;
    const std::string second = SignIn("anna", "correct horse").session;
    const std::string third = SignIn("anna", "correct horse").session;
    people_->SignOut(first);
    EXPECT_FALSE(people_->FromSession(first));
    EXPECT_TRUE(people_->FromSession(second));
    EXPECT_EQ(ended_.size(), 1U);
    people_->SignOutEverywhere("anna");
    EXPECT_FALSE(people_->FromSession(second));
    EXPECT_FALSE(people_->FromSession(third));
    EXPECT_EQ(ended_.size(), 3U);
}

TEST_F(People, AnyChangeOfAUserEndsTheSessions) {
    AddAnna();
    ASSERT_EQ(Add("bert", {.role = Role::Admin, .password = "battery staple"}), PeopleProblem::None);
    for (const UserChange& change : {UserChange{.role = Role::Operator}, UserChange{.scopes = {{Scope{"cam-1", "*"}}}},
                                     UserChange{.password = "another one"}}) {
        const std::string session = SignIn("bert", "battery staple").session;
        ASSERT_TRUE(people_->FromSession(session));
        ASSERT_EQ(Change("bert", change), PeopleProblem::None);
        EXPECT_FALSE(people_->FromSession(session));
    }
    EXPECT_EQ(SignIn("bert", "battery staple").outcome, Outcome::Wrong);
    const std::string session = SignIn("bert", "another one").session;
    EXPECT_EQ(people_->RemoveUser("bert"), PeopleProblem::None);
    EXPECT_FALSE(people_->FromSession(session));
    EXPECT_EQ(ended_.size(), 4U);
}

TEST_F(People, APasswordThatChangesWhileItIsCheckedDoesNotSignIn) {
    AddAnna();
    SignInResult result{.outcome = Outcome::SignedIn};
    people_->SignIn("anna", "correct horse", "10.0.0.1", [&](const SignInResult& given) { result = given; });
    const std::function<void()> done = std::move(done_.front());
    done_.clear();
    ASSERT_EQ(Change("anna", {.password = "another one"}), PeopleProblem::None);
    done();
    EXPECT_EQ(result.outcome, Outcome::Wrong);
}

TEST_F(People, AlwaysHaveAnAdmin) {
    EXPECT_EQ(Add("carl", {.role = Role::Viewer, .password = "12345678"}), PeopleProblem::LastAdmin);
    AddAnna();
    EXPECT_EQ(Add("carl", {.role = Role::Viewer, .password = "12345678"}), PeopleProblem::None);
    EXPECT_EQ(people_->RemoveUser("anna"), PeopleProblem::LastAdmin);
    EXPECT_EQ(Change("anna", {.role = Role::Engineer}), PeopleProblem::LastAdmin);
    EXPECT_EQ(Change("carl", {.role = Role::Admin}), PeopleProblem::None);
    EXPECT_EQ(people_->RemoveUser("anna"), PeopleProblem::None);
}

TEST_F(People, AreRefusedWithAReason) {
    AddAnna();
    EXPECT_EQ(Add("anna", {.password = "12345678"}), PeopleProblem::Exists);
    EXPECT_EQ(Add("", {.password = "12345678"}), PeopleProblem::BadName);
    EXPECT_EQ(Add("a b", {.password = "12345678"}), PeopleProblem::BadName);
    EXPECT_EQ(Add("a\nb", {.password = "12345678"}), PeopleProblem::BadName);
    EXPECT_EQ(Add(std::string(65, 'a'), {.password = "12345678"}), PeopleProblem::BadName);
    EXPECT_EQ(Add("dora", {}), PeopleProblem::BadPassword);
    EXPECT_EQ(Add("dora", {.password = "1234567"}), PeopleProblem::BadPassword);
    EXPECT_EQ(Change("dora", {}), PeopleProblem::NotFound);
    EXPECT_EQ(people_->RemoveUser("dora"), PeopleProblem::NotFound);
    isBusy_ = true;
    EXPECT_EQ(Add("dora", {.password = "12345678"}), PeopleProblem::Busy);
    EXPECT_EQ(SignIn("anna", "correct horse").outcome, Outcome::Busy);
}

TEST_F(People, ATokenIsGoodUntilItExpires) {
    const std::string secret = MakeToken({.name = "monitoring", .expires = now_ + 1h});
    const std::optional<Identity> identity = people_->FromToken(secret);
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->kind, Identity::Kind::Token);
    EXPECT_EQ(identity->credential, "token:" + tokenId_);
    people_->Tick();
    EXPECT_THAT(ended_, IsEmpty());
    now_ += 1h;
    EXPECT_FALSE(people_->FromToken(secret));
    people_->Tick();
    EXPECT_THAT(ended_, ElementsAre("token:" + tokenId_));
}

TEST_F(People, ARevokedTokenEndsAtOnce) {
    const std::string secret = MakeToken({.name = "monitoring"});
    const std::string other = MakeToken({.name = "monitoring"});
    EXPECT_EQ(people_->RevokeToken(tokenId_), PeopleProblem::None);
    EXPECT_THAT(ended_, ElementsAre("token:" + tokenId_));
    EXPECT_FALSE(people_->FromToken(other));
    EXPECT_TRUE(people_->FromToken(secret));
    EXPECT_EQ(people_->RevokeToken(tokenId_), PeopleProblem::NotFound);
    EXPECT_EQ(documents_["tokens"].size(), 1U);
    EXPECT_FALSE(people_->FromToken("mqt_"));
}

TEST_F(People, GuessingAUsersPasswordSoonHasToWait) {
    AddAnna();
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(SignIn("anna", "wrong guess", "10.0.0." + std::to_string(i)).outcome, Outcome::Wrong);
    }
    const SignInResult refused = SignIn("anna", "correct horse");
    EXPECT_EQ(refused.outcome, Outcome::TooMany);
    EXPECT_EQ(refused.retryAfter, 300s);
    uptime_ += 300s;
    EXPECT_EQ(SignIn("anna", "correct horse").outcome, Outcome::SignedIn);
}

TEST_F(People, GuessingFromAnAddressSoonHasToWaitWhateverTheUser) {
    AddAnna();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(SignIn("user-" + std::to_string(i), "wrong guess").outcome, Outcome::Wrong);
    }
    EXPECT_EQ(SignIn("anna", "correct horse").outcome, Outcome::TooMany);
    EXPECT_EQ(SignIn("anna", "correct horse", "10.0.0.2").outcome, Outcome::SignedIn);
}

TEST_F(People, SigningInIsNotCountedAsGuessing) {
    AddAnna();
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(SignIn("anna", "correct horse").outcome, Outcome::SignedIn);
    }
}

TEST_F(People, ManyNamesDoNotFillTheMemory) {
    Gateway::LoginLimit limit({.perUser = 1, .perAddress = 1, .mostNames = 10});
    const auto start = Gateway::LoginLimit::Clock::time_point{1h};
    for (int i = 0; i < 1000; ++i) {
        limit.Begin("user-" + std::to_string(i), "address-" + std::to_string(i), start + std::chrono::milliseconds(i));
    }
    EXPECT_EQ(limit.Begin("user-0", "address-0", start + 1s), 0s) << "forgotten";
    EXPECT_GT(limit.Begin("user-999", "address-999", start + 1s), 0s) << "remembered";
}

TEST_F(People, MayEndWhileAPasswordIsChecked) {
    AddAnna();
    bool isCalled = false;
    people_->SignIn("anna", "correct horse", "10.0.0.1", [&](const SignInResult&) { isCalled = true; });
    people_.reset();
    FinishBackground();
    EXPECT_FALSE(isCalled);
}

TEST(Passwords, AreHashedWithASaltOfTheirOwn) {
    const std::string first = Gateway::HashPassword("correct horse", Gateway::PasswordCost::Least);
    const std::string second = Gateway::HashPassword("correct horse", Gateway::PasswordCost::Least);
    EXPECT_NE(first, second);
    EXPECT_TRUE(Gateway::PasswordFits(first, "correct horse", Gateway::PasswordCost::Least));
    EXPECT_FALSE(Gateway::PasswordFits(first, "correct horsf", Gateway::PasswordCost::Least));
    EXPECT_FALSE(Gateway::PasswordFits("", "", Gateway::PasswordCost::Least));
    EXPECT_FALSE(Gateway::PasswordFits("not a hash", "x", Gateway::PasswordCost::Least));
}

}  // namespace
}  // namespace Morquil::Testing
