// Users, sessions and tokens of a running gateway.
#include <gtest/gtest.h>

#include "tests/system/gateway/running_gateway.h"

namespace Morquil::Testing {
namespace {

class GatewayPeople : public testing::Test {
protected:
    void AddAnna() {
        ASSERT_EQ(gateway.Send("POST", "/api/v1/users", R"({"name":"anna","role":"admin","password":"correct horse"})")
                      .status,
                  201);
        anna = Cookie("anna", "correct horse");
    }
    /// Signs in. Returns: the header with the session.
    std::string Cookie(const std::string& user, const std::string& password) const {
        const HttpAnswer answer = SignIn(user, password);
        EXPECT_EQ(answer.status, 204) << answer.body;
        const std::string cookie = answer.headers.count("set-cookie") != 0 ? answer.headers.at("set-cookie") : "";
        EXPECT_NE(cookie.find("; HttpOnly; SameSite=Strict"), std::string::npos) << cookie;
        return "Cookie: " + cookie.substr(0, cookie.find(';')) + "\r\n";
    }
    HttpAnswer SignIn(const std::string& user, const std::string& password) const {
        return gateway.Send("POST", "/api/v1/login", Json{{"user", user}, {"password", password}}.dump());
    }
    int Status(const std::string& method, const std::string& path, const std::string& headers,
               const std::string& body = {}) const {
        return gateway.Send(method, path, body, headers).status;
    }
    /// Returns: the answer to the request for a token.
    Json MakeToken(const std::string& wanted) const {
        return gateway.Send("POST", "/api/v1/tokens", wanted, anna).AsJson();
    }
    static std::string Bearer(const Json& token) {
        return "Authorization: Bearer " + token["token"].get<std::string>() + "\r\n";
    }

    RunningGateway gateway;
    std::string anna;
};

TEST_F(GatewayPeople, NobodyHasToSignInUntilThereIsAUser) {
    EXPECT_EQ(gateway.Get("/api/v1/me").AsJson()["authentication"], "open");
    AddAnna();
    EXPECT_EQ(gateway.Get("/api/v1/devices").status, 401);
    EXPECT_EQ(gateway.Get("/metrics").status, 401);
    EXPECT_EQ(EventClient(gateway.Port()).Status(), 401);
    EXPECT_EQ(gateway.Get("/healthz").status, 200);
    EXPECT_EQ(Status("GET", "/api/v1/devices", anna), 200);
    const Json me = gateway.Send("GET", "/api/v1/me", {}, anna).AsJson();
    EXPECT_EQ(me["user"], "anna");
    EXPECT_EQ(me["role"], "admin");
    EXPECT_EQ(me["authentication"], "password");
}

TEST_F(GatewayPeople, AWrongPasswordDoesNotSignIn) {
    AddAnna();
    EXPECT_EQ(SignIn("anna", "correct house").status, 401);
    EXPECT_EQ(SignIn("bert", "correct horse").status, 401);
    EXPECT_EQ(gateway.Send("POST", "/api/v1/login", "{}").status, 400);
}

TEST_F(GatewayPeople, ARoleAllowsWhatItAllows) {
    AddAnna();
    ASSERT_EQ(Status("POST", "/api/v1/users", anna, R"({"name":"vera","role":"viewer","password":"12345678"})"), 201);
    const std::string vera = Cookie("vera", "12345678");
    EXPECT_EQ(Status("GET", "/api/v1/devices", vera), 200);
    EXPECT_EQ(Status("GET", "/api/v1/users", vera), 403);
    EXPECT_EQ(Status("GET", "/api/v1/audit", vera), 403);
    EXPECT_EQ(Status("POST", "/api/v1/devices", vera, "{}"), 403);
    EXPECT_EQ(Status("DELETE", "/api/v1/users/anna", anna), 409) << "the last admin";
    EXPECT_EQ(Status("DELETE", "/api/v1/users/vera", anna), 204);
    EXPECT_EQ(Status("GET", "/api/v1/devices", vera), 401);
}

TEST_F(GatewayPeople, SigningOutEndsTheSession) {
    AddAnna();
    EXPECT_EQ(Status("POST", "/api/v1/logout", anna, "{}"), 204);
    EXPECT_EQ(Status("GET", "/api/v1/me", anna), 401);
}

TEST_F(GatewayPeople, UsersAndTokensAreThereAfterARestart) {
    AddAnna();
    const Json token = MakeToken(R"({"name":"monitoring","role":"viewer"})");
    gateway.Restart();
    EXPECT_EQ(gateway.Get("/api/v1/me").status, 401);
    EXPECT_EQ(Status("GET", "/metrics", Bearer(token)), 200);
    EXPECT_EQ(Status("GET", "/api/v1/users", Cookie("anna", "correct horse")), 200);
}

TEST_F(GatewayPeople, ARevokedTokenEndsItsStream) {
    AddAnna();
    const Json token = MakeToken(R"({"name":"wall","role":"viewer"})");
    EventClient stream(gateway.Port(), {}, Bearer(token));
    ASSERT_EQ(stream.Status(), 200);
    ASSERT_EQ(Status("DELETE", "/api/v1/tokens/" + token["id"].get<std::string>(), anna), 204);
    EXPECT_TRUE(stream.AwaitNamed("end"));
    EXPECT_FALSE(stream.Next()) << "the connection has been closed";
    EXPECT_EQ(Status("GET", "/api/v1/me", Bearer(token)), 401);
}

TEST_F(GatewayPeople, SecretsAreNeitherListedNorRecorded) {
    AddAnna();
    const std::string secret = MakeToken(R"({"name":"wall","role":"viewer"})")["token"];
    for (const char* path : {"/api/v1/users", "/api/v1/tokens", "/api/v1/audit"}) {
        const std::string body = gateway.Send("GET", path, {}, anna).body;
        EXPECT_EQ(body.find("correct horse"), std::string::npos) << path;
        EXPECT_EQ(body.find("argon2"), std::string::npos) << path;
        EXPECT_EQ(body.find(secret), std::string::npos) << path;
    }
}

TEST_F(GatewayPeople, WhatIsWrongIsRefusedByName) {
    const auto detailOf = [&](const std::string& path, const std::string& body) {
        const HttpAnswer answer = gateway.Send("POST", path, body);
        EXPECT_EQ(answer.status, 422) << body;
        return answer.AsJson()["detail"].get<std::string>();
    };
    EXPECT_EQ(detailOf("/api/v1/users", R"({"name":"x","role":"king"})"),
              "role: expected viewer, operator, engineer or admin");
    EXPECT_EQ(detailOf("/api/v1/users", R"({"nam":"x"})"), "there is no member 'nam'");
    EXPECT_EQ(detailOf("/api/v1/users", R"({"name":"x","scopes":"all"})"),
              R"(scopes: expected a list of at most 64 of {"devices": PATTERN, "properties": PATTERN})");
    EXPECT_EQ(detailOf("/api/v1/users", R"({"name":"x","role":"admin","password":"short"})"),
              "A password has 8 to 1024 bytes");
    EXPECT_EQ(detailOf("/api/v1/tokens", R"({"name":"x","role":"viewer","expires":"soon"})"),
              "expires: expected a time such as 2027-01-31T12:00:00Z, or null");
}

}  // namespace
}  // namespace Morquil::Testing
