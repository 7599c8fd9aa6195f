#include "gateway/api/audit_rows.h"

#include <gmock/gmock.h>

namespace Morquil::Testing {
namespace {

using Gateway::Attempt;
using Gateway::AuditRows;
using Gateway::Json;
using Gateway::JsonResponse;
using Gateway::ProblemResponse;
using Gateway::Request;
using Gateway::Response;

Request RequestOf(const std::string& method, std::vector<std::string> segments, const Json& body) {
    Request request;
    request.method = method;
    for (const std::string& segment : segments) {
        request.path += "/" + segment;
    }
    request.segments = std::move(segments);
    request.body = body.dump();
    request.id = "r1";
    request.address = "10.0.0.7";
    request.identity.name = "anna";
    return request;
}

std::vector<Attempt> Rows(const Request& request, const Response& response) {
    return AuditRows(request, response, Gateway::Time{});
}

const std::vector<std::string> gain{"api", "v1", "devices", "cam-1", "properties", "proc-amp.gain"};
const std::vector<std::string> batch{"api", "v1", "devices", "cam-1", "properties"};

TEST(AuditRows, HoldWhoWantedWhatAndWhatBecameOfIt) {
    const auto rows = Rows(RequestOf("PUT", gain, {{"value", 12}}), JsonResponse(200, {{"outcome", "confirmed"}}));
    EXPECT_THAT(rows, testing::ElementsAre(Attempt{.who = "anna",
                                                   .address = "10.0.0.7",
                                                   .device = "cam-1",
                                                   .property = "proc-amp.gain",
                                                   .value = "12",
                                                   .outcome = "confirmed",
                                                   .status = 200,
                                                   .requestId = "r1"}));
}

TEST(AuditRows, NameTheKindOfAProblem) {
    const Request request = RequestOf("PUT", gain, {{"value", 99}});
    EXPECT_EQ(Rows(request, ProblemResponse(request, 422, "not-offered", "99")).at(0).outcome, "not-offered");
    EXPECT_EQ(Rows(request, ProblemResponse(request, 403, "forbidden", "")).at(0).status, 403);
}

TEST(AuditRows, HaveOneForEachPropertyOfABatch) {
    const Request request = RequestOf("PATCH", batch, {{"values", {{"a", 1}, {"b", "x"}}}});
    const auto rows = Rows(request, JsonResponse(409, {{"results",
                                                        {{"a", {{"outcome", "confirmed"}, {"status", 200}}},
                                                         {"b", {{"outcome", "refused"}, {"status", 409}}}}}}));
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].property, "a");
    EXPECT_EQ(rows[0].status, 200);
    EXPECT_EQ(rows[1].value, "\"x\"");
    EXPECT_EQ(rows[1].outcome, "refused");
    const auto refused = Rows(request, ProblemResponse(request, 412, "changed", ""));
    ASSERT_EQ(refused.size(), 2U);
    EXPECT_EQ(refused[1].outcome, "changed");
}

TEST(AuditRows, HideSecrets) {
    const auto rows = Rows(RequestOf("POST", {"api", "v1", "users"}, {{"name", "bert"}, {"password", "correct horse"}}),
                           Gateway::NoContent());
    EXPECT_EQ(Json::parse(rows.at(0).value),
              (Json{{"request", "POST /api/v1/users"}, {"body", {{"name", "bert"}, {"password", "(not recorded)"}}}}));
    EXPECT_EQ(rows.at(0).outcome, "done");
}

TEST(AuditRows, HaveNoneForARequestThatReads) {
    EXPECT_THAT(Rows(RequestOf("GET", gain, {}), JsonResponse(200, {})), testing::IsEmpty());
}

TEST(AuditRows, ShortenWhatIsHuge) {
    const auto rows = Rows(RequestOf("PUT", gain, {{"value", std::string(10000, 'x')}}), JsonResponse(422, {}));
    EXPECT_EQ(rows.at(0).value, "\"(too long)\"");
    EXPECT_EQ(rows.at(0).outcome, "refused");
}

TEST(AuditRows, SurviveABodyThatIsNoJson) {
    Request request = RequestOf("PATCH", batch, {});
    request.body = "{\"values\":";
    EXPECT_EQ(Rows(request, ProblemResponse(request, 400, "malformed-json", "")).at(0).outcome, "malformed-json");
}

}  // namespace
}  // namespace Morquil::Testing
