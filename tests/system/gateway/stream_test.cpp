// Server-sent events and the WebSocket.
#include <gtest/gtest.h>

#include <future>

#include "tests/system/gateway/distorted_device.h"
#include "tests/system/gateway/running_gateway.h"
#include "tests/system/gateway/web_socket_client.h"

namespace Morquil::Testing {
namespace {

using Event = EventClient::Event;

class GatewayStream : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(gateway.AwaitLink("dev-1", "connected").is_object());
        ASSERT_TRUE(gateway.AwaitLink("dev-2", "connected").is_object());
    }

    DistortedDevice first;
    DistortedDevice second;
    RunningGateway gateway{{first.Address(), second.Address()}};
};

TEST_F(GatewayStream, BeginsWithASnapshotOfEachDevice) {
    EventClient events(gateway.Port());
    EXPECT_EQ(events.Status(), 200);
    const auto one = events.Next();
    const auto other = events.Next();
    ASSERT_TRUE(one && other);
    EXPECT_EQ(one->name, "snapshot");
    EXPECT_EQ(one->data["device"], "dev-1");
    EXPECT_EQ(one->data["live"], true);
    EXPECT_EQ(one->data["values"]["proc-amp.gain"], 0);
    EXPECT_EQ(one->id, "");
    EXPECT_EQ(other->data["device"], "dev-2");
    EXPECT_NE(other->id, "");
}

TEST_F(GatewayStream, CarriesAChangeAtTheFrontPanel) {
    EventClient events(gateway.Port(), "?properties=proc-amp");
    events.AwaitNamed("snapshot");
    events.AwaitNamed("snapshot");
    first.UsePanel("set VIDEO PROC AMP Gain 12");
    const auto change = events.AwaitNamed("change");
    ASSERT_TRUE(change);
    EXPECT_EQ(change->data["device"], "dev-1");
    EXPECT_EQ(change->data["changes"],
              (Json{{"proc-amp.gain", {{"value", 12}, {"old", 0}, {"origin", "elsewhere"}, {"who", ""}}}}));
}

TEST_F(GatewayStream, IsFilteredByDeviceAndProperty) {
    EventClient events(gateway.Port(), "?devices=dev-2&properties=color.*,proc-amp.hue");
    const auto snapshot = events.Next();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->data["device"], "dev-2");
    EXPECT_EQ(snapshot->data["values"].size(), 4U);
    EXPECT_EQ(gateway.Set("dev-1", "color.red", 1).status, 200);
    EXPECT_EQ(gateway.Set("dev-2", "proc-amp.gain", 2).status, 200);
    EXPECT_EQ(gateway.Set("dev-2", "color.red", 3).status, 200);
    const auto change = events.AwaitNamed("change");
    ASSERT_TRUE(change);
    EXPECT_EQ(change->data["changes"]["color.red"]["value"], 3);
}

TEST_F(GatewayStream, RefusesAPropertyThatDoesNotExist) {
    EXPECT_EQ(EventClient(gateway.Port(), "?properties=colour").Status(), 400);
}

TEST_F(GatewayStream, ContinuesAfterTheLastEventThatAClientHasSeen) {
    std::string seen;
    {
        EventClient events(gateway.Port(), "?properties=proc-amp.gain");
        events.Next();
        seen = events.Next()->id;
    }
    for (const int gain : {1, 2, 3}) {
        gateway.Set("dev-1", "proc-amp.gain", gain);
    }
    EventClient events(gateway.Port(), "?properties=proc-amp.gain", "Last-Event-ID: " + seen + "\r\n");
    for (const int gain : {1, 2, 3}) {
        const auto change = events.Next();
        ASSERT_TRUE(change);
        EXPECT_EQ(change->name, "change");
        EXPECT_EQ(change->data["changes"]["proc-amp.gain"]["value"], gain);
    }
}

TEST_F(GatewayStream, SaysThatItCannotContinueAndBeginsAnew) {
    for (const std::string id : {"00000000-1", "x", "-", "99999999999999999999999"}) {
        EventClient events(gateway.Port(), "?devices=dev-1", "Last-Event-ID: " + id + "\r\n");
        EXPECT_EQ(events.Next()->name, "gap") << id;
        EXPECT_EQ(events.Next()->name, "snapshot") << id;
    }
}

TEST_F(GatewayStream, ReportsALossAndTheReturn) {
    EventClient events(gateway.Port(), "?devices=dev-1");
    events.AwaitNamed("snapshot");
    first.HangUp();
    const auto lost = events.AwaitNamed("link");
    ASSERT_TRUE(lost);
    EXPECT_EQ(lost->data["link"]["state"], "lost");
    EXPECT_EQ(lost->data["summary"]["input"], nullptr);
    EXPECT_EQ(lost->data["alarms"].size(), 1U);
    EXPECT_TRUE(events.Await(
        [](const Event& event) { return event.name == "link" && event.data["link"]["state"] == "connected"; }));
}

TEST_F(GatewayStream, SendsHeartbeatsWhileNothingHappens) {
    EventClient events(gateway.Port(), "?devices=dev-1&properties=color.red");
    EXPECT_TRUE(events.AwaitNamed("heartbeat"));
}

TEST_F(GatewayStream, ReportsWhatIsOfferedNow) {
    EventClient events(gateway.Port(), "?devices=dev-1&properties=reference");
    events.AwaitNamed("snapshot");
    gateway.Set("dev-1", "output.video-mode", "720p50");
    const auto offers = events.AwaitNamed("offers");
    ASSERT_TRUE(offers);
    for (const Json& name : offers->data["properties"]) {
        EXPECT_TRUE(name.get<std::string>().starts_with("reference.")) << name;
    }
}

TEST_F(GatewayStream, ASlowClientGetsTheLatestValuesAndHarmsNobody) {
    HttpClient slow(gateway.Port());
    slow.Request("GET", "/api/v1/events?devices=dev-1");
    EventClient quick(gateway.Port(), "?devices=dev-1&properties=proc-amp.gain");
    quick.AwaitNamed("snapshot");
    auto reader = std::async(std::launch::async, [&] {
        return quick.Await([](const Event& event) {
            return event.data.contains("changes") && event.data["changes"]["proc-amp.gain"]["value"] == -7;
        });
    });
    // Each change of the mode also reports offers: more than a client's share and the system's buffers hold.
    int last = 0;
    for (int round = 0; round < 400; ++round) {
        last = round % 60;
        ASSERT_EQ(gateway.Set("dev-1", "proc-amp.gain", last).status, 200);
        gateway.Set("dev-1", "output.video-mode", round % 2 == 0 ? "720p50" : "1080p50", "?wait=queued");
    }
    ASSERT_EQ(gateway.Set("dev-1", "proc-amp.gain", -7).status, 200);
    EXPECT_TRUE(reader.get());
    bool hasGap = false;
    bool hasLatest = false;
    while (!hasGap || !hasLatest) {
        const std::optional<std::string> line = slow.Line();
        ASSERT_TRUE(line) << "gap: " << hasGap;
        hasGap = hasGap || *line == "event: gap";
        hasLatest = hasLatest || (hasGap && line->find("\"proc-amp.gain\":-7") != std::string::npos);
    }
}

TEST_F(GatewayStream, TheWebSocketCarriesTheSameEventsAndTakesCommands) {
    WebSocketClient socket(gateway.Port(), "/api/v1/stream?devices=dev-1&properties=proc-amp.gain");
    ASSERT_EQ(socket.Status(), 101);
    EXPECT_EQ(socket.Next()["event"], "snapshot");
    socket.Send(
        Json{{"id", 7}, {"op", "set"}, {"device", "dev-1"}, {"property", "proc-amp.gain"}, {"value", 9}}.dump());
    const Json answer = socket.Await([](const Json& message) { return message.contains("id") && message["id"] == 7; });
    EXPECT_EQ(answer["status"], 200);
    EXPECT_EQ(answer["body"]["outcome"], "confirmed");
    socket.Send("no JSON");
    EXPECT_EQ(socket.Await([](const Json& message) { return message.contains("status"); })["status"], 400);
    first.UsePanel("set VIDEO PROC AMP Gain 3");
    EXPECT_TRUE(socket
                    .Await([](const Json& message) {
                        return message.contains("changes") && message["changes"]["proc-amp.gain"]["value"] == 3;
                    })
                    .is_object());
}

TEST_F(GatewayStream, AWebSocketOfAForeignPageIsRefused) {
    EXPECT_EQ(WebSocketClient(gateway.Port(), "/api/v1/stream", "Origin: http://evil.example\r\n").Status(), 403);
    EXPECT_EQ(gateway.Get("/api/v1/stream").status, 400);
}

}  // namespace
}  // namespace Morquil::Testing
