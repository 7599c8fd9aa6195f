#include "gateway/metrics/metrics.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <regex>

#include "tests/kit/temporary_folder.h"

namespace Morquil::Testing {
namespace {

using Gateway::Metrics;
using testing::HasSubstr;
using testing::Not;

/// One of every figure.
void Fill(Metrics& metrics) {
    metrics.SetLink("cam-1", true, 0.25, 1);
    metrics.SetLink("cam-2", false, -1, 0);
    metrics.CountChange("confirmed", false);
    metrics.CountChange("refused", true);
    metrics.ObserveConfirm(0.003);
    metrics.SetStreams({.clients = 3, .queuedBytes = 1000, .longestQueue = 700, .gaps = 2});
    metrics.SetDatabase({.bytes = 65536, .pending = 5, .lost = 1, .isWriting = true});
}

TEST(TheMetrics, ShowEveryFigure) {
    Metrics metrics;
    Fill(metrics);
    const std::string text = metrics.Text();
    for (const char* line :
         {"morquil_link_up{device=\"cam-1\"} 1", "morquil_link_up{device=\"cam-2\"} 0",
          "morquil_data_age_seconds{device=\"cam-1\"} 0.25", "morquil_reconnects_total{device=\"cam-1\"} 1",
          "morquil_changes_total{outcome=\"confirmed\"} 1", "morquil_changes_total{outcome=\"refused\"} 1",
          "morquil_changes_failed_total 1", "morquil_change_confirm_seconds_bucket{le=\"0.0025\"} 0",
          "morquil_change_confirm_seconds_bucket{le=\"0.005\"} 1", "morquil_change_confirm_seconds_count 1",
          "morquil_stream_clients 3", "morquil_stream_queued_bytes 1000", "morquil_stream_longest_queue_bytes 700",
          "morquil_stream_gaps_total 2", "morquil_database_bytes 65536", "morquil_database_pending_rows 5",
          "morquil_database_writing 1", "morquil_database_lost_rows_total 1"}) {
        EXPECT_THAT(text, HasSubstr(std::string(line) + "\n"));
    }
}

TEST(TheMetrics, HaveNoAgeForADeviceThatHasReportedNothing) {
    Metrics metrics;
    Fill(metrics);
    EXPECT_THAT(metrics.Text(), Not(HasSubstr("morquil_data_age_seconds{device=\"cam-2\"}")));
}

TEST(TheMetrics, ForgetARemovedDevice) {
    Metrics metrics;
    Fill(metrics);
    metrics.ForgetOthers();
    EXPECT_THAT(metrics.Text(), HasSubstr("cam-1"));
    metrics.SetLink("cam-2", false, -1, 0);
    metrics.ForgetOthers();
    EXPECT_THAT(metrics.Text(), Not(HasSubstr("cam-1")));
    EXPECT_THAT(metrics.Text(), HasSubstr("cam-2"));
    metrics.SetLink("cam-1", true, 1, 0);
    EXPECT_THAT(metrics.Text(), HasSubstr("morquil_reconnects_total{device=\"cam-1\"} 0\n"));
}

TEST(TheMetrics, CountTotalsThatAreCountedElsewhere) {
    Metrics metrics;
    metrics.SetStreams({.gaps = 2});
    metrics.SetStreams({.gaps = 5});
    metrics.SetStreams({.gaps = 5});
    EXPECT_THAT(metrics.Text(), HasSubstr("morquil_stream_gaps_total 5\n"));
}

TEST(TheMetrics, HaveNothingThatPrometheusFinds) {
    if (std::system("command -v promtool > /dev/null") != 0) {
        GTEST_SKIP() << "promtool is missing: scripts/install-dependencies.sh metrics";
    }
    Metrics metrics;
    Fill(metrics);
    const TemporaryFolder folder;
    const std::string path = folder.Make("metrics", metrics.Text());
    EXPECT_EQ(std::system(("promtool check metrics < " + path + " 2>&1").c_str()), 0);
}

TEST(TheDashboardAndTheAlertRules, UseOnlyFiguresThatExist) {
    Metrics metrics;
    Fill(metrics);
    const std::string text = metrics.Text();
    const std::regex figure("morquil_[a-z_]+");
    for (const char* file : {"/dashboard.json", "/alerts.yml"}) {
        const std::string content = ContentOf(MORQUIL_SOURCES "/packaging/gateway/monitoring" + std::string(file));
        ASSERT_TRUE(std::regex_search(content, figure)) << file;
        for (std::sregex_iterator found(content.begin(), content.end(), figure), end; found != end; ++found) {
            EXPECT_THAT(text, testing::ContainsRegex("\n" + found->str() + "[{ ]")) << file;
        }
    }
}

TEST(TheAlertRules, FireWhenTheyShould) {
    if (std::system("command -v promtool > /dev/null") != 0) {
        GTEST_SKIP() << "promtool is missing: scripts/install-dependencies.sh metrics";
    }
    const std::string folder = MORQUIL_SOURCES "/packaging/gateway/monitoring";
    EXPECT_EQ(std::system(("promtool check rules " + folder + "/alerts.yml").c_str()), 0);
    EXPECT_EQ(std::system(("promtool test rules " + folder + "/alerts-test.yml").c_str()), 0);
}

}  // namespace
}  // namespace Morquil::Testing
