#include "tests/worlds/simulation/expected_reports.h"

#include <algorithm>
#include <map>
#include <utility>

#include "tests/worlds/simulation/expected_queue.h"

namespace Morquil::Testing::Worlds {
namespace {

/// The property sets of the blocks that these worlds change.
std::vector<_MorquilPropertySetId> SetsOf(const std::string& header) {
    static const std::map<std::string, std::vector<_MorquilPropertySetId>> sets{
        {"VIDEO PROC AMP", {morquilVideoProcAmpPropertySetId}},
        {"GENLOCK", {morquilReferencePropertySetId}},
        {"VIDEO ADJUST",
         {morquilColorCorrectionPropertySetId, morquilVideoClipPropertySetId, morquilAspectFillPropertySetId}}};
    const auto found = sets.find(header);
    return found != sets.end() ? found->second : std::vector<_MorquilPropertySetId>();
}

}  // namespace

HRESULT ExpectedReports::Add(std::size_t watcher) {
    return std::exchange(watchers_[watcher].isAdded, true) ? S_FALSE : S_OK;
}

HRESULT ExpectedReports::Remove(std::size_t watcher) {
    watchers_[watcher].hasBeenAdded = false;
    return std::exchange(watchers_[watcher].isAdded, false) ? S_OK : S_FALSE;
}

void ExpectedReports::Received(const std::string& header, const Lines& lines) {
    sets_ = SetsOf(header);
    isKnown_ = !sets_.empty();
    const auto echoed = std::find(sent_.begin(), sent_.end(), TextOf(header, lines));
    origin_ = echoed != sent_.end() ? morquilReportEcho : morquilReportElsewhere;
    if (echoed != sent_.end()) {
        sent_.erase(sent_.begin(), echoed + 1);
    }
    for (Watcher& watcher : watchers_) {
        watcher.hasBeenAdded = watcher.isAdded;
        watcher.notified = 0;
    }
}

void ExpectedReports::OnReported(std::size_t watcher, _MorquilPropertySetId set, _MorquilReportKind kind,
                                 _MorquilReportOrigin origin) {
    trace_.Note("a report is notified");
    trace_.Require(!isSilent_, "a report is notified after the end");
    if (!isKnown_) {
        trace_.Require(origin == morquilReportElsewhere, "a report of what was not set is an echo");
        return;
    }
    Watcher& notified = watchers_[watcher];
    // One that was added in the meantime has missed the first sets.
    while (notified.notified < sets_.size() && !notified.hasBeenAdded && sets_[notified.notified] != set) {
        ++notified.notified;
    }
    trace_.Require(notified.notified < sets_.size() && sets_[notified.notified] == set, "a report of the wrong set");
    trace_.Require(kind == morquilReportSettings && origin == origin_, "a report of the wrong kind or origin");
    ++notified.notified;
}

void ExpectedReports::CheckDone() {
    for (Watcher& watcher : watchers_) {
        trace_.Require(isSilent_ || !watcher.hasBeenAdded || watcher.notified == sets_.size(),
                       "a report is not notified");
        watcher.hasBeenAdded = false;
    }
    sets_.clear();
    isKnown_ = false;
}

}  // namespace Morquil::Testing::Worlds
