// Reading and setting values over HTTP.
#include <gtest/gtest.h>

#include "tests/system/gateway/distorted_device.h"
#include "tests/system/gateway/running_gateway.h"

namespace Morquil::Testing {
namespace {

const std::string gainPath = "/api/v1/devices/dev-1/properties/proc-amp.gain";

class GatewayValues : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(gateway.AwaitLink("dev-1", "connected").is_object()); }

    DistortedDevice device;
    RunningGateway gateway{{device.Address()}};
};

TEST_F(GatewayValues, ListsDevicesWithTheirLinks) {
    const Json list = gateway.Get("/api/v1/devices").AsJson();
    ASSERT_EQ(list["devices"].size(), 1U);
    const Json& first = list["devices"][0];
    EXPECT_EQ(first["name"], "dev-1");
    EXPECT_EQ(first["link"]["state"], "connected");
    EXPECT_EQ(first["summary"]["input"], "1080i50");
    EXPECT_EQ(first["summary"]["signalPresent"], true);
    EXPECT_EQ(first["model"], "Morquil Simulator");
    EXPECT_GE(first["link"]["age"], 0);
}

TEST_F(GatewayValues, ReadsAValueWithItsAgeAndWhatMayBeSet) {
    const Json state = gateway.Get(gainPath).AsJson();
    EXPECT_EQ(state["value"], 0);
    EXPECT_EQ(state["live"], true);
    EXPECT_EQ(state["offer"], (Json{{"min", -60}, {"max", 60}}));
    EXPECT_EQ(state["access"], "read/write");
    EXPECT_GE(state["age"], 0);
}

TEST_F(GatewayValues, ADeviceHasAllItsValues) {
    const Json properties = gateway.Get("/api/v1/devices/dev-1").AsJson()["properties"];
    for (const Properties::Property& property : Properties::AllProperties()) {
        EXPECT_EQ(properties.contains(property.name), property.IsReadable()) << property.name;
    }
}

TEST_F(GatewayValues, AnswersASetWhenTheDeviceHasConfirmedIt) {
    const HttpAnswer answer = gateway.Set("dev-1", "proc-amp.gain", 12);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.AsJson()["outcome"], "confirmed");
    EXPECT_EQ(answer.AsJson()["value"], 12);
    EXPECT_EQ(answer.AsJson()["old"], 0);
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 12);
    EXPECT_EQ(gateway.Get(gainPath).AsJson()["origin"], "gateway");
}

TEST_F(GatewayValues, AcceptsWordsTextsAndBooleans) {
    EXPECT_EQ(gateway.Set("dev-1", "output.video-mode", "1080p50").status, 200);
    EXPECT_EQ(gateway.Set("dev-1", "device.panel-lock", true).status, 200);
    EXPECT_EQ(gateway.Set("dev-1", "network.name", "Rack 3").status, 200);
    EXPECT_EQ(gateway.ValueOf("dev-1", "output.video-mode"), "1080p50");
    EXPECT_EQ(gateway.ValueOf("dev-1", "device.panel-lock"), true);
    EXPECT_EQ(gateway.ValueOf("dev-1", "network.name"), "Rack 3");
}

TEST_F(GatewayValues, RefusesWhatIsNotOfferedAndNamesTheNearest) {
    const HttpAnswer number = gateway.Set("dev-1", "proc-amp.gain", 99);
    EXPECT_EQ(number.status, 422);
    EXPECT_EQ(number.headers.at("content-type"), "application/problem+json");
    EXPECT_EQ(number.AsJson()["nearest"], Json::array({60}));
    EXPECT_EQ(number.AsJson()["offer"], (Json{{"min", -60}, {"max", 60}}));
    EXPECT_EQ(number.AsJson()["type"], "/problems/not-offered");
    EXPECT_EQ(number.AsJson()["instance"], number.headers.at("x-request-id"));
    const HttpAnswer word = gateway.Set("dev-1", "output.video-mode", "1080i51");
    EXPECT_EQ(word.status, 422);
    EXPECT_EQ(word.AsJson()["nearest"][0], "1080i50");
    EXPECT_EQ(gateway.Set("dev-1", "device.name", "x").AsJson()["outcome"], "read-only");
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", Json::array()).status, 422);
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 0);
}

TEST_F(GatewayValues, SuggestsNamesThatItKnows) {
    const HttpAnswer property = gateway.Set("dev-1", "proc-amp.gian", 1);
    EXPECT_EQ(property.status, 404);
    EXPECT_EQ(property.AsJson()["suggestion"], "proc-amp.gain");
    const HttpAnswer other = gateway.Set("dev-2", "proc-amp.gain", 1);
    EXPECT_EQ(other.status, 404);
    EXPECT_EQ(other.AsJson()["suggestion"], "dev-1");
}

TEST_F(GatewayValues, AnswersAtOnceWhenAChangeIsOnlyToBeQueued) {
    const HttpAnswer answer = gateway.Set("dev-1", "proc-amp.gain", 7, "?wait=queued");
    EXPECT_EQ(answer.status, 202);
    EXPECT_EQ(answer.AsJson()["outcome"], "queued");
    EventClient events(gateway.Port(), "?properties=proc-amp.gain");
    EXPECT_TRUE(events.Await([](const EventClient::Event& event) {
        const Json& data = event.data;
        return (data.contains("values") && data["values"]["proc-amp.gain"] == 7) ||
               (data.contains("changes") && data["changes"]["proc-amp.gain"]["value"] == 7);
    }));
}

TEST_F(GatewayValues, SetsSeveralValuesWithAResultForEach) {
    const HttpAnswer answer = gateway.Send("PATCH", "/api/v1/devices/dev-1/properties",
                                           R"({"values": {"proc-amp.gain": 5, "color.red": 6}})");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.AsJson()["results"]["proc-amp.gain"]["outcome"], "confirmed");
    EXPECT_EQ(answer.AsJson()["results"]["color.red"]["value"], 6);
}

TEST_F(GatewayValues, SendsNothingOfABatchWithAValueThatIsNotOffered) {
    const HttpAnswer answer = gateway.Send("PATCH", "/api/v1/devices/dev-1/properties",
                                           R"({"values": {"color.red": 6, "proc-amp.gain": 99}})");
    EXPECT_EQ(answer.status, 422);
    EXPECT_EQ(answer.AsJson()["results"]["proc-amp.gain"]["nearest"], Json::array({60}));
    EXPECT_EQ(answer.AsJson()["results"]["color.red"]["outcome"], "not-sent");
    EXPECT_EQ(gateway.ValueOf("dev-1", "color.red"), 0);
}

TEST_F(GatewayValues, ABatchMayHoldValuesThatAModeInItMakesAcceptable) {
    const HttpAnswer answer =
        gateway.Send("PATCH", "/api/v1/devices/dev-1/properties",
                     R"({"values": {"output.video-mode": "720p50", "reference.line-offset": 1}})");
    EXPECT_EQ(answer.status, 200) << answer.body;
}

TEST_F(GatewayValues, SetsOnlyTheRevisionThatTheClientHasSeen) {
    const HttpAnswer seen = gateway.Get("/api/v1/devices/dev-1");
    const std::string tag = seen.headers.at("etag");
    const std::string body = R"({"value": 3})";
    EXPECT_EQ(gateway.Send("PUT", gainPath, body, "If-Match: " + tag + "\r\n").status, 200);
    const HttpAnswer late = gateway.Send("PUT", gainPath, R"({"value": 4})", "If-Match: " + tag + "\r\n");
    EXPECT_EQ(late.status, 412);
    EXPECT_GT(late.AsJson()["revision"], seen.AsJson()["revision"]);
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 3);
}

TEST_F(GatewayValues, SaysThatNothingHasChanged) {
    HttpClient client(gateway.Port());
    const std::string tag = client.Ask("GET", gainPath).headers.at("etag");
    EXPECT_EQ(client.Ask("GET", gainPath, {}, "If-None-Match: " + tag + "\r\n").status, 304);
    gateway.Set("dev-1", "proc-amp.gain", 8);
    EXPECT_EQ(client.Ask("GET", gainPath, {}, "If-None-Match: " + tag + "\r\n").status, 200);
}

TEST_F(GatewayValues, ShowsNoValueAsLiveAfterALoss) {
    device.HangUp();
    gateway.AwaitLink("dev-1", "lost");
    // The device is back in a moment; what is read before that must not be taken for live.
    const Json state = gateway.Get(gainPath).AsJson();
    EXPECT_EQ(state["live"], !state["value"].is_null());
    EXPECT_EQ(state.contains("last"), !state["live"].get<bool>());
}

TEST_F(GatewayValues, ASecondOperatorSeesTheFirstOnesChange) {
    EventClient events(gateway.Port(), "?devices=dev-1&properties=proc-amp.gain");
    ASSERT_TRUE(events.AwaitNamed("snapshot"));
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", 1).status, 200);
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", 2).AsJson()["old"], 1);
    EXPECT_EQ(events.AwaitNamed("change")->data["changes"]["proc-amp.gain"]["value"], 1);
    EXPECT_EQ(events.AwaitNamed("change")->data["changes"]["proc-amp.gain"]["old"], 1);
}

// ---- Devices that do not do what is asked
// -----------------------------------------------------------------------------

TEST(GatewayFaults, ARefusedChangeIsAConflict) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()});
    gateway.AwaitLink("dev-1", "connected");
    device.Misbehave(&DistortedDevice::Refuse);
    const HttpAnswer answer = gateway.Set("dev-1", "proc-amp.gain", 12);
    EXPECT_EQ(answer.status, 409);
    EXPECT_EQ(answer.AsJson()["outcome"], "refused");
    EXPECT_EQ(answer.AsJson()["value"], 0);
}

TEST(GatewayFaults, AnAdjustedChangeIsAConflictWithTheDevicesOwnValue) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()});
    gateway.AwaitLink("dev-1", "connected");
    device.Misbehave([](const std::string& text) {
        std::string other = text;
        const std::size_t at = other.find("Gain: 12\n");
        return at == std::string::npos ? text : other.replace(at, 9, "Gain: 10\n");
    });
    const HttpAnswer answer = gateway.Set("dev-1", "proc-amp.gain", 12);
    EXPECT_EQ(answer.status, 409);
    EXPECT_EQ(answer.AsJson()["outcome"], "adjusted");
    EXPECT_EQ(answer.AsJson()["value"], 10);
    EXPECT_EQ(answer.AsJson()["nearest"], Json::array({10}));
}

TEST(GatewayFaults, ADeviceThatHangsIsUnconfirmedAtTheDeadline) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()});
    gateway.AwaitLink("dev-1", "connected");
    device.Misbehave(&DistortedDevice::Silence);
    const HttpAnswer answer = gateway.Set("dev-1", "proc-amp.gain", 12, "?deadline=200ms");
    EXPECT_EQ(answer.status, 504);
    EXPECT_EQ(answer.AsJson()["outcome"], "unconfirmed");
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 0);
}

TEST(GatewayFaults, ALostConnectionAnswersWhatWaitsForIt) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()});
    gateway.AwaitLink("dev-1", "connected");
    device.Misbehave(&DistortedDevice::Silence);
    HttpClient client(gateway.Port());
    client.Request("PUT", gainPath + "?deadline=30s", R"({"value": 1})");
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", 2, "?deadline=50ms").status, 504);
    device.HangUp();
    const HttpAnswer answer = client.Receive();
    EXPECT_EQ(answer.status, 503);
    EXPECT_EQ(answer.AsJson()["outcome"], "not-connected");
}

TEST(GatewayFaults, ADeviceThatIsNotConnectedCannotBeSet) {
    const RunningGateway gateway({"127.250.250.250"});
    const HttpAnswer answer = gateway.Set("dev-1", "proc-amp.gain", 1);
    EXPECT_EQ(answer.status, 503);
    EXPECT_TRUE(answer.headers.count("retry-after"));
    EXPECT_EQ(gateway.Get(gainPath).AsJson()["live"], false);
}

}  // namespace
}  // namespace Morquil::Testing
