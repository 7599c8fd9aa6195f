// The document of the API against the server.
#include "gateway/api/open_api.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "gateway/api/routes.h"
#include "tests/system/gateway/distorted_device.h"
#include "tests/system/gateway/json_schema.h"
#include "tests/system/gateway/running_gateway.h"

namespace Morquil::Testing {
namespace {

using Gateway::ApiExample;

std::string MethodOf(std::string_view method) {
    std::string lower(method);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    return lower;
}

TEST(OpenApi, CoversEveryRouteWithAnExampleAndShapes) {
    const Json document = Gateway::OpenApiDocument();
    for (const Gateway::Route& route : Gateway::AllRoutes()) {
        const Json& operation = document["paths"][std::string(route.path)][MethodOf(route.method)];
        const auto hasExample = [&](const ApiExample& example) {
            return example.method == route.method && example.path == route.path;
        };
        const auto examples = Gateway::ApiExamples();
        EXPECT_TRUE(std::any_of(examples.begin(), examples.end(), hasExample)) << route.method << " " << route.path;
        EXPECT_EQ(operation.dump().find("schemas/Anything") != std::string::npos, route.path == "/api/v1/openapi.json")
            << route.path;
    }
}

void CollectReferences(const Json& json, std::set<std::string>& references) {
    if (json.is_object() && json.contains("$ref")) {
        references.insert(json["$ref"].get<std::string>());
    }
    if (json.is_structured()) {
        for (const Json& member : json) {
            CollectReferences(member, references);
        }
    }
}

TEST(OpenApi, IsWellFormed) {
    const Json document = Gateway::OpenApiDocument();
    EXPECT_EQ(document["openapi"], "3.1.0");
    std::set<std::string> ids;
    for (const auto& [path, operations] : document["paths"].items()) {
        for (const auto& [method, operation] : operations.items()) {
            EXPECT_TRUE(ids.insert(operation["operationId"].get<std::string>()).second) << operation["operationId"];
            EXPECT_FALSE(operation["summary"].get<std::string>().empty());
            const auto placeholders = std::count(path.begin(), path.end(), '{');
            EXPECT_GE(operation.value("parameters", Json::array()).size(), static_cast<std::size_t>(placeholders))
                << path;
            EXPECT_TRUE(method != "get" || !operation.contains("requestBody")) << path;
        }
    }
    std::set<std::string> references;
    CollectReferences(document, references);
    for (const std::string& reference : references) {
        EXPECT_TRUE(document.contains(Json::json_pointer(reference.substr(1)))) << reference;
    }
}

TEST(OpenApi, DescribesEveryPropertyAsTheTableDoes) {
    const Json values = Gateway::OpenApiSchemas()["Values"]["properties"];
    EXPECT_EQ(values.size(), Properties::AllProperties().size());
    EXPECT_EQ(values["proc-amp.gain"]["type"], "integer");
    EXPECT_EQ(values["input.signal-present"]["readOnly"], true);
    EXPECT_NE(values["output.video-mode"]["enum"].dump().find("1080i50"), std::string::npos);
}

/// `$NAME` replaced by what was kept under that name.
std::string Filled(std::string_view text, const std::map<std::string, std::string>& kept) {
    std::string filled(text);
    for (const auto& [name, value] : kept) {
        for (std::size_t at = filled.find("$" + name); at != std::string::npos; at = filled.find("$" + name)) {
            filled.replace(at, name.size() + 1, value);
        }
    }
    return filled;
}

TEST(OpenApi, EveryExampleIsAnsweredAsTheDocumentSays) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()}, [](Gateway::GatewaySettings& settings) {
        settings.config.devices.front().name = "converter-1";
    });
    ASSERT_TRUE(gateway.AwaitLink("converter-1", "connected").is_object());
    const Json document = gateway.Get("/api/v1/openapi.json").AsJson();
    // Once there is a user, requests have to say who sends them.
    const std::string token =
        gateway.Send("POST", "/api/v1/tokens", R"({"name": "test", "role": "admin"})").AsJson()["token"];
    const std::string bearer = "Authorization: Bearer " + token + "\r\n";
    std::map<std::string, std::string> kept;
    for (const ApiExample& example : Gateway::ApiExamples()) {
        const std::string body = Filled(example.body, kept);
        const HttpAnswer answer = gateway.Send(std::string(example.method), Filled(example.target, kept), body, bearer);
        ASSERT_EQ(answer.status, example.status) << example.name << ": " << answer.body;
        const Json& operation = document["paths"][std::string(example.path)][MethodOf(example.method)];
        const Json& response = operation["responses"][std::to_string(example.status)];
        if (!response.contains("content")) {
            EXPECT_EQ(answer.body, "") << example.name;
            continue;
        }
        const std::string type = response["content"].items().begin().key();
        const Json& schema = response["content"][type]["schema"];
        EXPECT_EQ(answer.headers.at("content-type"), type) << example.name;
        EXPECT_EQ(ShapeFault(document, schema, answer.AsJson()), "") << example.name << ": " << answer.body;
        if (!body.empty() && example.status < 300) {
            const Json& asked = operation["requestBody"]["content"]["application/json"]["schema"];
            EXPECT_EQ(ShapeFault(document, asked, Json::parse(body)), "") << example.name;
        }
        if (!example.keep.empty()) {
            const std::string pointer(example.keep);
            kept[pointer.substr(pointer.rfind('/') + 1)] =
                answer.AsJson()[Json::json_pointer(pointer)].get<std::string>();
        }
    }
}

}  // namespace
}  // namespace Morquil::Testing
