// History, audit and metrics of a running gateway.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/system/gateway/distorted_device.h"
#include "tests/system/gateway/running_gateway.h"

namespace Morquil::Testing {
namespace {

class GatewayRecords : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(gateway.AwaitLink("dev-1", "connected").is_object()); }

    /// Asks until there are so many rows, for at most 30 s.
    Json AwaitRows(const std::string& path, std::size_t count) const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        Json rows;
        do {
            rows = gateway.Get(path).AsJson()["rows"];
        } while (rows.size() < count && std::chrono::steady_clock::now() < end);
        return rows;
    }

    DistortedDevice device;
    RunningGateway gateway{{device.Address()}};
};

TEST_F(GatewayRecords, HistoryShowsAChangeWithItsValuesAndOrigin) {
    ASSERT_EQ(gateway.Set("dev-1", "proc-amp.gain", 12).status, 200);
    const Json rows = AwaitRows("/api/v1/history?device=dev-1&property=proc-amp.gain", 1);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0]["old"], 0);
    EXPECT_EQ(rows[0]["new"], 12);
    EXPECT_EQ(rows[0]["origin"], "gateway");
    EXPECT_EQ(gateway.Get("/api/v1/history?device=dev-2").AsJson()["rows"].size(), 0U);
}

TEST_F(GatewayRecords, AuditShowsWhatWasRefusedToo) {
    const std::string requestId = gateway.Set("dev-1", "proc-amp.gain", 99).headers.at("x-request-id");
    ASSERT_EQ(gateway.Set("dev-1", "proc-amp.gain", 7).status, 200);
    const Json rows = AwaitRows("/api/v1/audit?device=dev-1", 2);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["outcome"], "confirmed");
    EXPECT_EQ(rows[0]["value"], 7);
    EXPECT_EQ(rows[1]["outcome"], "not-offered");
    EXPECT_EQ(rows[1]["status"], 422);
    EXPECT_EQ(rows[1]["value"], 99);
    EXPECT_EQ(rows[1]["requestId"], requestId);
    EXPECT_EQ(rows[1]["address"], "127.0.0.1");
    EXPECT_EQ(rows[1]["hash"].get<std::string>().size(), 64U);
}

TEST_F(GatewayRecords, AuditShowsEveryPropertyOfABatch) {
    gateway.Send("PATCH", "/api/v1/devices/dev-1/properties",
                 R"({"values":{"proc-amp.gain":3,"device.panel-lock":true}})");
    const Json rows = AwaitRows("/api/v1/audit", 2);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["property"], "device.panel-lock");
    EXPECT_EQ(rows[0]["outcome"], "confirmed");
    EXPECT_EQ(rows[1]["property"], "proc-amp.gain");
    EXPECT_EQ(rows[1]["value"], 3);
}

TEST_F(GatewayRecords, AreThereAfterARestart) {
    ASSERT_EQ(gateway.Set("dev-1", "proc-amp.gain", 12).status, 200);
    gateway.Restart();
    EXPECT_EQ(gateway.Get("/api/v1/history?property=proc-amp.gain").AsJson()["rows"].size(), 1U);
    EXPECT_EQ(gateway.Get("/api/v1/audit").AsJson()["rows"].size(), 1U);
}

TEST_F(GatewayRecords, AreExportedAsCsvAndAsJsonLines) {
    for (int gain = 1; gain <= 3; ++gain) {
        ASSERT_EQ(gateway.Set("dev-1", "proc-amp.gain", gain).status, 200);
    }
    ASSERT_EQ(AwaitRows("/api/v1/history?property=proc-amp.gain", 3).size(), 3U);
    HttpClient client(gateway.Port());
    client.Request("GET", "/api/v1/history?property=proc-amp.gain&format=csv", {}, "Connection: close\r\n");
    std::string text;
    while (const std::optional<std::string> line = client.Line()) {
        text += *line + "\n";
    }
    EXPECT_NE(text.find("text/csv"), std::string::npos);
    EXPECT_NE(text.find("id,time,device,property,old,new,origin,who"), std::string::npos);
    EXPECT_NE(text.find("dev-1,proc-amp.gain,2,3,gateway,"), std::string::npos) << text;
}

TEST_F(GatewayRecords, AreRefusedForAQueryThatIsWrong) {
    for (const char* query :
         {"?limit=0", "?limit=x", "?limit=1001", "?from=yesterday", "?to=1", "?after=x", "?format=xml"}) {
        EXPECT_EQ(gateway.Get(std::string("/api/v1/history") + query).status, 400) << query;
    }
}

TEST_F(GatewayRecords, MetricsShowTheDeviceAndTheChanges) {
    ASSERT_EQ(gateway.Set("dev-1", "proc-amp.gain", 12).status, 200);
    const HttpAnswer answer = gateway.Get("/metrics");
    EXPECT_EQ(answer.status, 200);
    for (const char* line :
         {"morquil_link_up{device=\"dev-1\"} 1\n", "morquil_changes_total{outcome=\"confirmed\"} 1\n",
          "morquil_change_confirm_seconds_count 1\n", "morquil_database_writing 1\n"}) {
        EXPECT_NE(answer.body.find(line), std::string::npos) << line;
    }
}

}  // namespace
}  // namespace Morquil::Testing
