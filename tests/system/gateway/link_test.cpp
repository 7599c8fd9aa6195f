// What is wrong with a device's link, and editing the fleet.
#include <gtest/gtest.h>

#include "tests/system/gateway/distorted_device.h"
#include "tests/system/gateway/running_gateway.h"

namespace Morquil::Testing {
namespace {

std::string ProbeOf(const RunningGateway& gateway, const std::string& address) {
    const HttpAnswer answer = gateway.Send("POST", "/api/v1/probe", Json{{"address", address}}.dump());
    return answer.status == 200 ? answer.AsJson()["state"].get<std::string>() : std::to_string(answer.status);
}

TEST(GatewayLink, AProbeJudgesAnAddressBeforeItIsSaved) {
    const RunningGateway gateway;
    const DistortedDevice well;
    const DistortedDevice locked([](const std::string& text) {
        std::string other = text;
        return other.replace(other.find("Remote lock: false"), 18, "Remote lock: true");
    });
    const DistortedDevice foreign([](const std::string&) { return "220 mail.example\r\n"; });
    const DistortedDevice silent(&DistortedDevice::Silence);
    EXPECT_EQ(ProbeOf(gateway, well.Address()), "connected");
    EXPECT_EQ(ProbeOf(gateway, locked.Address()), "remote-locked");
    EXPECT_EQ(ProbeOf(gateway, foreign.Address()), "wrong-protocol");
    EXPECT_EQ(ProbeOf(gateway, silent.Address()), "no-device");
    EXPECT_EQ(ProbeOf(gateway, "127.250.250.251"), "refused");
    EXPECT_EQ(ProbeOf(gateway, "no.such.name.invalid"), "unresolved");
    EXPECT_EQ(ProbeOf(gateway, "10.0.0.1:9800"), "422");
}

TEST(GatewayLink, TellsWhyADeviceCannotBeConnected) {
    const DistortedDevice foreign([](const std::string&) { return "220 mail.example\r\n"; });
    const RunningGateway gateway({"127.250.250.252", foreign.Address()});
    const Json refused = gateway.AwaitLink("dev-1", "refused");
    ASSERT_TRUE(refused.is_object());
    EXPECT_NE(refused["sentence"].get<std::string>().find("refuses connections"), std::string::npos);
    EXPECT_TRUE(gateway.AwaitLink("dev-2", "wrong-protocol").is_object());
}

bool AwaitLock(const RunningGateway& gateway, bool isLocked) {
    EventClient events(gateway.Port());
    return events
        .Await([&](const EventClient::Event& event) {
            return event.data.contains("summary") && event.data["summary"]["remoteLocked"] == isLocked;
        })
        .has_value();
}

TEST(GatewayLink, ALockedDeviceCannotBeSet) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()});
    gateway.AwaitLink("dev-1", "connected");
    device.UsePanel("set MORQUIL DEVICE Remote lock true");
    ASSERT_TRUE(AwaitLock(gateway, true));
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", 1).status, 423);
    EXPECT_EQ(gateway.Get("/api/v1/devices/dev-1").AsJson()["alarms"].size(), 1U);
    device.UsePanel("set MORQUIL DEVICE Remote lock false");
    ASSERT_TRUE(AwaitLock(gateway, false));
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", 1).status, 200);
}

TEST(GatewayLink, ADeviceThatWasLockedBeforeIsReportedAsLocked) {
    const DistortedDevice device([](const std::string& text) {
        std::string other = text;
        return other.replace(other.find("Remote lock: false"), 18, "Remote lock: true");
    });
    const RunningGateway gateway({device.Address()});
    EXPECT_TRUE(gateway.AwaitLink("dev-1", "remote-locked").is_object());
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", 1).status, 423);
}

TEST(GatewayLink, AHostThatHangsUpIsReconnected) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()});
    gateway.AwaitLink("dev-1", "connected");
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", 5).status, 200);
    device.HangUp();
    ASSERT_TRUE(gateway.AwaitLink("dev-1", "lost").is_object());
    ASSERT_TRUE(gateway.AwaitLink("dev-1", "connected").is_object());
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 5);
}

// ---- Editing
// -----------------------------------------------------------------------------------------------------------

std::string Names(const RunningGateway& gateway) {
    std::string names;
    const Json list = gateway.Get("/api/v1/devices").AsJson();
    for (const Json& device : list["devices"]) {
        names += device["name"].get<std::string>() + " ";
    }
    return names;
}

TEST(GatewayFleet, EditsOutliveARestart) {
    RunningGateway gateway({"127.250.250.1", "127.250.250.2"});
    const HttpAnswer added =
        gateway.Send("POST", "/api/v1/devices",
                     R"({"name": "new", "label": "New one", "address": "127.250.250.3", "room": "A", "tags": ["x"]})");
    EXPECT_EQ(added.status, 201);
    EXPECT_EQ(added.headers.at("location"), "/api/v1/devices/new");
    EXPECT_EQ(gateway.Send("PATCH", "/api/v1/devices/dev-1", R"({"name": "renamed"})").status, 200);
    EXPECT_EQ(gateway.Send("DELETE", "/api/v1/devices/dev-2", "").status, 204);
    EXPECT_EQ(Names(gateway), "new renamed ");
    gateway.Restart();
    EXPECT_EQ(Names(gateway), "new renamed ");
    EXPECT_EQ(gateway.Get("/api/v1/devices/new").AsJson()["label"], "New one");
}

TEST(GatewayFleet, ARenamedDeviceStaysConnected) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()});
    const Json before = gateway.AwaitLink("dev-1", "connected");
    EXPECT_EQ(gateway.Send("PATCH", "/api/v1/devices/dev-1", R"({"name": "other"})").status, 200);
    const Json after = gateway.Get("/api/v1/devices/other").AsJson()["link"];
    EXPECT_EQ(after["state"], "connected");
    EXPECT_EQ(after["since"], before["since"]);
    EXPECT_EQ(gateway.Get("/api/v1/devices/dev-1").status, 404);
    EXPECT_EQ(gateway.Set("other", "proc-amp.gain", 1).status, 200);
}

TEST(GatewayFleet, ADisabledDeviceIsDisconnectedUntilItIsEnabled) {
    DistortedDevice device;
    const RunningGateway gateway({device.Address()});
    gateway.AwaitLink("dev-1", "connected");
    EXPECT_EQ(gateway.Send("PATCH", "/api/v1/devices/dev-1", R"({"enabled": false})").status, 200);
    EXPECT_EQ(gateway.Get("/api/v1/devices/dev-1").AsJson()["link"]["state"], "disabled");
    EXPECT_EQ(gateway.Set("dev-1", "proc-amp.gain", 1).status, 503);
    EXPECT_EQ(gateway.Send("PATCH", "/api/v1/devices/dev-1", R"({"enabled": true})").status, 200);
    EXPECT_TRUE(gateway.AwaitLink("dev-1", "connected").is_object());
}

TEST(GatewayFleet, RefusesEntriesThatMakeNoSense) {
    const RunningGateway gateway({"127.250.250.1"});
    const auto add = [&](const std::string& body) { return gateway.Send("POST", "/api/v1/devices", body).status; };
    EXPECT_EQ(add(R"({"name": "dev-1", "address": "x"})"), 409);
    EXPECT_EQ(add(R"({"name": "A b", "address": "x"})"), 422);
    EXPECT_EQ(add(R"({"name": "a", "address": ""})"), 422);
    EXPECT_EQ(add(R"({"name": "a", "address": "x", "colour": 1})"), 422);
    EXPECT_EQ(add(R"({"name": "a", "address": "x", "tags": [1]})"), 422);
    EXPECT_EQ(add(R"([])"), 422);
    EXPECT_EQ(add(R"({"name")"), 400);
    EXPECT_EQ(Names(gateway), "dev-1 ");
}

TEST(GatewayFleet, StreamsShowADeviceThatIsAdded) {
    const RunningGateway gateway;
    EventClient events(gateway.Port());
    EXPECT_EQ(gateway.Send("POST", "/api/v1/devices", R"({"name": "new", "address": "127.250.250.3"})").status, 201);
    const auto snapshot = events.AwaitNamed("snapshot");
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->data["device"], "new");
    EXPECT_EQ(snapshot->data["live"], false);
}

}  // namespace
}  // namespace Morquil::Testing
