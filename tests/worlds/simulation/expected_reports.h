#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "MorquilDelivery.h"
#include "tests/worlds/simulation/trace.h"
#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// Knows of which blocks report observers have to be notified, and in which origin, and fails the trace when they are
/// not.
class ExpectedReports {
public:
    static constexpr std::size_t watcherCount = 2;

    explicit ExpectedReports(Trace& trace) : trace_(trace) {}

    /// Returns: what the call has to answer.
    HRESULT Add(std::size_t watcher);
    HRESULT Remove(std::size_t watcher);
    /// No one is notified any more.
    void Silence() { isSilent_ = true; }

    void Sent(const std::string& block) { sent_.push_back(block); }
    /// A block has arrived.
    void Received(const std::string& header, const Lines& lines);
    void OnReported(std::size_t watcher, _MorquilPropertySetId set, _MorquilReportKind kind,
                    _MorquilReportOrigin origin);
    /// The block has been processed.
    void CheckDone();

private:
    struct Watcher {
        bool isAdded = false;
        bool hasBeenAdded = false;  ///< all the time since the block arrived
        std::size_t notified = 0;   ///< how many of `sets_`
    };

    Trace& trace_;
    bool isSilent_ = false;
    bool isKnown_ = false;
    std::vector<_MorquilPropertySetId> sets_;  ///< of the block that is being processed
    _MorquilReportOrigin origin_ = morquilReportElsewhere;
    std::deque<std::string> sent_;
    std::array<Watcher, watcherCount> watchers_;
};

}  // namespace Morquil::Testing::Worlds
