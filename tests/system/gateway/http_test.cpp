// The server itself: limits, and requests that are wrong.
#include <gtest/gtest.h>

#include "tests/system/gateway/running_gateway.h"

namespace Morquil::Testing {
namespace {

TEST(GatewayHttp, AnswersSeveralRequestsOfAConnectionInTheirOrder) {
    const RunningGateway gateway;
    HttpClient client(gateway.Port());
    client.SendRaw(
        "GET /healthz HTTP/1.1\r\nHost: localhost\r\n\r\nGET /api/v1/devices HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(client.Receive().AsJson()["status"], "ok");
    EXPECT_TRUE(client.Receive().AsJson().contains("devices"));
}

TEST(GatewayHttp, TakesARequestByteByByte) {
    const RunningGateway gateway;
    HttpClient client(gateway.Port());
    for (const char c : std::string_view("GET /healthz HTTP/1.1\r\nHost: localhost\r\n\r\n")) {
        ASSERT_TRUE(client.SendRaw(std::string(1, c)));
    }
    EXPECT_EQ(client.Receive().status, 200);
}

TEST(GatewayHttp, AnswersHeadWithoutABody) {
    const RunningGateway gateway;
    HttpClient client(gateway.Port());
    client.Request("HEAD", "/api/v1/properties");
    EXPECT_EQ(client.Line(), "HTTP/1.1 200 OK");
    while (!client.Line()->empty()) {
    }
    EXPECT_EQ(client.Ask("GET", "/healthz").status, 200);
}

TEST(GatewayHttp, EveryAnswerHasARequestIdAndForbidsWhatItDoesNotNeed) {
    const RunningGateway gateway;
    for (const char* const path : {"/healthz", "/api/v1/devices", "/nothing", "/api/v1/nothing"}) {
        const HttpAnswer answer = gateway.Get(path);
        EXPECT_EQ(answer.headers.at("x-request-id").size(), 16U) << path;
        EXPECT_EQ(answer.headers.at("x-content-type-options"), "nosniff") << path;
        EXPECT_TRUE(answer.headers.at("content-security-policy").starts_with("default-src 'none'")) << path;
    }
}

TEST(GatewayHttp, SaysWhatIsWrongWithARequest) {
    const RunningGateway gateway({"127.250.250.1"});
    const auto status = [&](const std::string& method, const std::string& path, const std::string& body = {},
                            const std::string& headers = {}) {
        return gateway.Send(method, path, body, headers).status;
    };
    EXPECT_EQ(status("GET", "/api/v1/nothing"), 404);
    EXPECT_EQ(status("DELETE", "/api/v1/devices"), 405);
    EXPECT_EQ(gateway.Send("DELETE", "/api/v1/devices", {}).headers.at("allow"), "GET, POST");
    EXPECT_EQ(status("GET", "/api/v1/%zz"), 400);
    EXPECT_EQ(status("POST", "/api/v1/devices", "a=b", "Content-Type: application/x-www-form-urlencoded\r\n"), 415);
    EXPECT_EQ(status("POST", "/api/v1/devices", "{}", "Origin: http://evil.example\r\n"), 403);
    EXPECT_EQ(status("GET", "/healthz", {}, "Host: evil.example\r\n"), 421);
    EXPECT_EQ(status("PUT", "/api/v1/devices/dev-1/properties/proc-amp.gain?deadline=99h", "{}"), 400);
    EXPECT_EQ(status("PUT", "/api/v1/devices/dev-1/properties/proc-amp.gain?wait=long", "{}"), 400);
    EXPECT_EQ(status("POST", "/api/v1/devices", std::string(100'000, '[')), 400);
}

TEST(GatewayHttp, RefusesWhatIsTooLargeAndClosesTheConnection) {
    const RunningGateway gateway({}, [](Gateway::GatewaySettings& settings) {
        settings.config.server.bodyBytes = 2'000;
        settings.config.server.headerBytes = 2'000;
    });
    HttpClient body(gateway.Port());
    EXPECT_EQ(body.Ask("POST", "/api/v1/devices", std::string(3'000, 'x')).status, 413);
    HttpClient head(gateway.Port());
    head.SendRaw("GET / HTTP/1.1\r\nX: " + std::string(5'000, 'x'));
    EXPECT_EQ(head.Receive().status, 431);
}

TEST(GatewayHttp, ClosesAConnectionThatSendsNoRequest) {
    const RunningGateway gateway;
    HttpClient client(gateway.Port());
    client.SendRaw("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03");
    EXPECT_EQ(client.Receive().status, 400);
    EXPECT_TRUE(client.SeesClose());
}

TEST(GatewayHttp, GivesUpARequestThatDoesNotArriveInTime) {
    const RunningGateway gateway(
        {}, [](Gateway::GatewaySettings& settings) { settings.config.server.requestTime = std::chrono::seconds(1); });
    HttpClient half(gateway.Port());
    half.SendRaw("GET /healthz HTTP/1.1\r\nHo");
    EXPECT_EQ(half.Receive().status, 408);
    HttpClient silent(gateway.Port());
    EXPECT_TRUE(silent.SeesClose());
}

TEST(GatewayHttp, ClosesWhatIsBeyondItsConnections) {
    const RunningGateway gateway({},
                                 [](Gateway::GatewaySettings& settings) { settings.config.server.connections = 2; });
    HttpClient one(gateway.Port());
    HttpClient two(gateway.Port());
    EXPECT_EQ(one.Ask("GET", "/healthz").status, 200);
    EXPECT_EQ(two.Ask("GET", "/healthz").status, 200);
    HttpClient three(gateway.Port());
    EXPECT_TRUE(three.SeesClose());
    EXPECT_EQ(one.Ask("GET", "/healthz").status, 200);
}

TEST(GatewayHttp, ServesAFolderAndNothingOutsideIt) {
    const TemporaryFolder folder;
    folder.Make("index.html", "<p>panel</p>");
    folder.Make("app.js", "1");
    folder.Make(".secret", "x");
    const RunningGateway gateway({}, [&](Gateway::GatewaySettings& settings) { settings.panelFolder = folder.Path(); });
    EXPECT_EQ(gateway.Get("/").body, "<p>panel</p>");
    EXPECT_EQ(gateway.Get("/app.js").headers.at("content-type"), "text/javascript; charset=utf-8");
    for (const char* const path : {"/.secret", "/../x", "/%2e%2e/x", "/..%2fx", "/nothing.js"}) {
        EXPECT_EQ(gateway.Get(path).status, 404) << path;
    }
}

TEST(GatewayHttp, DrainsWithinTwoSecondsWhateverClientsDo) {
    auto gateway = std::make_unique<RunningGateway>();
    EventClient events(gateway->Port());
    HttpClient idle(gateway->Port());
    HttpClient half(gateway->Port());
    half.SendRaw("GET /");
    EXPECT_EQ(idle.Ask("GET", "/healthz").status, 200);
    const auto begin = std::chrono::steady_clock::now();
    gateway = nullptr;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
    EXPECT_TRUE(events.AwaitNamed("end"));
}

}  // namespace
}  // namespace Morquil::Testing
