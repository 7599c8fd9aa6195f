// Salvos of a running gateway, against a device.
#include <gtest/gtest.h>

#include "tests/system/gateway/distorted_device.h"
#include "tests/system/gateway/running_gateway.h"

namespace Morquil::Testing {
namespace {

class GatewaySalvos : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(gateway.AwaitLink("dev-1", "connected").is_object());
        ASSERT_EQ(gateway.Send("POST", "/api/v1/salvos", show).status, 201);
    }

    HttpAnswer Start(const std::string& options, const std::string& headers = {}) const {
        return gateway.Send("POST", "/api/v1/salvos/show/run", options, headers);
    }
    /// Asks until the run has ended, for at most 30 s.
    Json AwaitEnd(const std::string& id) const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        Json run;
        do {
            run = gateway.Get("/api/v1/runs/" + id).AsJson();
        } while (run["state"] == "running" && std::chrono::steady_clock::now() < end);
        return run;
    }

    const std::string show = R"({"name":"show","label":"Evening","steps":[
        {"device":"dev-1","property":"proc-amp.gain","value":12},
        {"device":"dev-1","property":"device.panel-lock","value":true}]})";
    DistortedDevice device;
    RunningGateway gateway{{device.Address()}};
};

TEST_F(GatewaySalvos, SetWhatTheyHoldAndCanBeRolledBack) {
    const HttpAnswer started = Start("{}");
    ASSERT_EQ(started.status, 202) << started.body;
    const std::string id = started.AsJson()["run"]["id"];
    const Json run = AwaitEnd(id);
    EXPECT_EQ(run["state"], "done") << run.dump();
    EXPECT_EQ(run["steps"][0]["outcome"], "confirmed");
    EXPECT_EQ(run["steps"][0]["old"], 0);
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 12);

    EXPECT_EQ(gateway.Send("POST", "/api/v1/runs/" + id + "/roll-back", "{}").status, 202);
    EXPECT_EQ(AwaitEnd(id)["state"], "rolled-back");
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 0);
    EXPECT_EQ(gateway.Send("POST", "/api/v1/runs/" + id + "/roll-back", "{}").status, 409);
}

TEST_F(GatewaySalvos, ADryRunShowsDifferencesOnly) {
    const Json run = Start(R"({"dryRun":true})").AsJson()["run"];
    EXPECT_EQ(run["state"], "done");
    EXPECT_EQ(run["steps"][0]["outcome"], "would-set");
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 0);
}

TEST_F(GatewaySalvos, SetNothingWhenAStepIsNotOffered) {
    ASSERT_EQ(gateway
                  .Send("PUT", "/api/v1/salvos/show", R"({"steps":[
        {"device":"dev-1","property":"proc-amp.gain","value":12},
        {"device":"dev-1","property":"proc-amp.hue","value":999}]})")
                  .status,
              200);
    const HttpAnswer refused = Start("{}");
    EXPECT_EQ(refused.status, 422);
    EXPECT_EQ(refused.AsJson()["steps"][1]["outcome"], "not-offered") << refused.body;
    EXPECT_EQ(gateway.ValueOf("dev-1", "proc-amp.gain"), 0);
}

TEST_F(GatewaySalvos, AnIdempotencyKeyStartsOneRun) {
    const std::string key = "Idempotency-Key: evening-1\r\n";
    const Json first = Start("{}", key).AsJson()["run"]["id"];
    EXPECT_EQ(Start("{}", key).AsJson()["run"]["id"], first);
    EXPECT_EQ(Start(R"({"dryRun":true})", key).status, 409);
}

TEST_F(GatewaySalvos, AreCapturedStoredAndRemoved) {
    const HttpAnswer captured =
        gateway.Send("POST", "/api/v1/salvos/capture", R"({"devices":["dev-1"],"properties":["proc-amp"]})");
    ASSERT_EQ(captured.status, 200);
    EXPECT_GT(captured.AsJson()["steps"].size(), 2U);
    gateway.Restart();
    EXPECT_EQ(gateway.Get("/api/v1/salvos").AsJson()["salvos"][0]["label"], "Evening");
    EXPECT_EQ(gateway.Send("DELETE", "/api/v1/salvos/show", {}).status, 204);
    EXPECT_EQ(gateway.Get("/api/v1/salvos/show").status, 404);
}

TEST_F(GatewaySalvos, AnUnknownDeviceOrRunIsNotFound) {
    EXPECT_EQ(gateway.Send("POST", "/api/v1/salvos/capture", R"({"devices":["dev-9"]})").status, 404);
    EXPECT_EQ(gateway.Get("/api/v1/runs/none").status, 404);
    EXPECT_EQ(gateway.Send("POST", "/api/v1/salvos", show).status, 409);
}

}  // namespace
}  // namespace Morquil::Testing
