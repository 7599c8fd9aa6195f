// What the library passes on as it comes: reports of the device, and its own text.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "tests/system/cpp/echoing_device.h"
#include "tests/system/cpp/said.h"

namespace Morquil::Testing {
namespace {

using morquil::PropertySet;
using morquil::Report;
using morquil::ReportKind;
using morquil::ReportOrigin;

/// What arrives on the library's threads, for the test's.
template <class Entry>
class Entries {
public:
    void Add(const Entry& entry) {
        const std::lock_guard lock(mutex_);
        entries_.push_back(entry);
        added_.notify_all();
    }
    template <class Condition>
    bool Await(Condition isAwaited) {
        std::unique_lock lock(mutex_);
        return added_.wait_for(lock, std::chrono::seconds(20),
                               [&] { return std::any_of(entries_.begin(), entries_.end(), isAwaited); });
    }
    std::size_t Count() {
        const std::lock_guard lock(mutex_);
        return entries_.size();
    }

private:
    std::mutex mutex_;
    std::condition_variable added_;
    std::vector<Entry> entries_;
};

auto Is(PropertySet set, ReportKind kind, ReportOrigin origin) {
    return [=](const Report& report) { return report.set == set && report.kind == kind && report.origin == origin; };
}

TEST(CppReports, SayWhereAChangeWasMade) {
    ConnectedTo connected(Accept);
    Entries<Report> reports;
    const morquil::Subscription all = connected.host.OnReport([&](const Report& report) { reports.Add(report); });
    connected.host.VideoProcAmp().SetGain(1);
    EXPECT_TRUE(reports.Await(Is(PropertySet::VideoProcAmp, ReportKind::Settings, ReportOrigin::Echo)));
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_TRUE(reports.Await(Is(PropertySet::VideoProcAmp, ReportKind::Settings, ReportOrigin::Elsewhere)));
}

TEST(CppReports, IncludeWhatIsAvailable) {
    ConnectedTo connected(Accept);
    Entries<Report> reports;
    const morquil::Subscription all = connected.host.OnReport([&](const Report& report) { reports.Add(report); });
    connected.device.Send("VIDEO PROC AMP AVAILABILITY:\nGain min: -60\n\n");
    EXPECT_TRUE(reports.Await([](const Report& report) { return report.kind == ReportKind::Availability; }));
}

TEST(CppReports, EndWithTheirSubscription) {
    ConnectedTo connected(Accept);
    Entries<Report> reports;
    morquil::Subscription all = connected.host.OnReport([&](const Report& report) { reports.Add(report); });
    all.Cancel();
    EXPECT_TRUE(
        connected.host.Apply([&] { connected.host.VideoProcAmp().SetGain(1); }, std::chrono::seconds(60)).IsApplied());
    EXPECT_EQ(reports.Count(), 0U);
}

TEST(CppSilence, IsShortWhenTheDeviceHasJustSpoken) {
    const ConnectedTo connected(Accept);
    EXPECT_LT(connected.host.Silence(), std::chrono::seconds(60));
    connected.host.Disconnect();
    EXPECT_THROW(connected.host.Silence(), morquil::NotKnown);
}

/// The library prints to standard output again, whatever a test does.
struct CppLibraryOutput : testing::Test {
    ~CppLibraryOutput() override { morquil::RestoreLibraryOutput(); }
};

TEST_F(CppLibraryOutput, IsPassedOnLineByLine) {
    Entries<std::string> lines;
    morquil::SetLibraryOutput([&](const std::string& line) { lines.Add(line); });
    {
        const ConnectedTo connected(Accept);
        EXPECT_TRUE(lines.Await([](const std::string& line) { return line == "Model name: Scripted"; }));
    }
    morquil::SilenceLibrary();
    const std::size_t before = lines.Count();
    { const ConnectedTo connected(Accept); }
    EXPECT_EQ(lines.Count(), before);
}

TEST_F(CppLibraryOutput, MayBeChosenInItsOwnHandler) {
    Said<bool> called;
    morquil::SetLibraryOutput([&](const std::string&) {
        morquil::SilenceLibrary();
        called.Say(true);
    });
    const ConnectedTo connected(Accept);
    EXPECT_EQ(called.Await(), true);
}

}  // namespace
}  // namespace Morquil::Testing
