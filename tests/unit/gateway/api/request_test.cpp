#include "gateway/api/request.h"

#include <gtest/gtest.h>

#include "gateway/api/guard.h"
#include "gateway/api/routes.h"

namespace Morquil::Gateway {
namespace {

Request Read(const std::string& target) {
    Request request;
    request.target = target;
    EXPECT_TRUE(ReadTarget(request)) << target;
    return request;
}

TEST(Request, DecodesEachPartByItself) {
    const Request request = Read("/a%2Fb//c?x=1%262&y=a+b&z");
    EXPECT_EQ(request.segments, (std::vector<std::string>{"a/b", "c"}));
    EXPECT_EQ(request.Query("x"), "1&2");
    EXPECT_EQ(request.Query("y"), "a b");
    EXPECT_EQ(request.Query("z"), "");
    EXPECT_EQ(request.Query("w"), std::nullopt);
}

TEST(Request, RefusesMalformedTargets) {
    for (const char* const target : {"", "x", "http://h/", "/%", "/%4", "/%zz", "/%00", "/x?%0a=1"}) {
        Request request;
        request.target = target;
        EXPECT_FALSE(ReadTarget(request)) << target;
    }
}

std::string RouteOf(const std::string& method, const std::string& target) {
    Request request = Read(target);
    request.method = method;
    std::string methods;
    const Route* const route = FindRoute(request, methods);
    return route != nullptr ? std::string(route->path) : "none " + methods;
}

TEST(Routes, AreFoundByMethodAndPath) {
    EXPECT_EQ(RouteOf("GET", "/api/v1/devices/a"), "/api/v1/devices/{name}");
    EXPECT_EQ(RouteOf("PUT", "/api/v1/devices/a/properties/b"), "/api/v1/devices/{name}/properties/{property}");
    EXPECT_EQ(RouteOf("PUT", "/api/v1/devices"), "none GET, POST");
    EXPECT_EQ(RouteOf("GET", "/api/v1"), "none ");
    EXPECT_EQ(RouteOf("GET", "/api/v1/devices/a/b/c/d"), "none ");
}

int HostStatus(const std::string& host) {
    Request request;
    request.headers = {{"host", host}};
    ServerConfig server;
    server.hosts = {"gateway.example"};
    const auto refusal = CheckHost(request, server);
    return refusal ? refusal->status : 200;
}

TEST(Guard, KnowsItsOwnNamesOnly) {
    for (const char* const host : {"localhost", "localhost:9880", "127.0.0.1:9880", "[::1]:9880", "10.1.2.3",
                                   "gateway.example", "gateway.example:443"}) {
        EXPECT_EQ(HostStatus(host), 200) << host;
    }
    for (const char* const host : {"", "evil.example", "localhost.evil.example", "127.0.0.1.evil.example"}) {
        EXPECT_EQ(HostStatus(host), 421) << host;
    }
}

int OriginStatus(const std::string& method, const std::string& origin, const std::string& upgrade = {}) {
    Request request;
    request.method = method;
    request.headers = {{"host", "localhost:9880"}, {"origin", origin}, {"upgrade", upgrade}};
    const auto refusal = CheckOrigin(request);
    return refusal ? refusal->status : 200;
}

TEST(Guard, RefusesChangesAndSocketsOfPagesFromElsewhere) {
    EXPECT_EQ(OriginStatus("PUT", ""), 200);
    EXPECT_EQ(OriginStatus("PUT", "http://localhost:9880"), 200);
    EXPECT_EQ(OriginStatus("PUT", "https://localhost:9880"), 403);
    EXPECT_EQ(OriginStatus("PUT", "http://localhost"), 403);
    EXPECT_EQ(OriginStatus("PUT", "null"), 403);
    EXPECT_EQ(OriginStatus("GET", "http://evil.example"), 200);
    EXPECT_EQ(OriginStatus("GET", "http://evil.example", "websocket"), 403);
}

}  // namespace
}  // namespace Morquil::Gateway
