#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MorquilAPI.h"
#include "tests/simulation/wire.h"

namespace Morquil::Simulation {

/// What a device has said, and what a host and the device have to hear of it.
class ExpectedMirror {
public:
    /// What follows from a block.
    struct Effect {
        /// Who has to be told, in this order. If it is not an echo; an echo of an output change is told, too.
        std::vector<_MorquilPropertySetId> changed;
        /// The blocks that are asked for.
        std::vector<std::string> requests;
    };

    Effect Take(const std::string& header, const Lines& lines);
    /// Empty while it is not known.
    std::optional<std::string> Value(const std::string& header, const std::string& key) const;
    /// Whether all that a connection waits for has come.
    bool IsComplete() const;
    _MorquilConnectToFailure Reason() const { return reason_; }
    void Forget() { blocks_.clear(); }

private:
    using Keys = std::set<std::string>;

    Keys Merge(const std::string& header, const Lines& lines);
    void TakePreamble(const Lines& lines);
    static std::vector<_MorquilPropertySetId> Told(const std::string& header, const Keys& changed);
    static std::vector<std::string> Requests(const std::string& header, const Keys& changed);

    std::map<std::string, std::map<std::string, std::string>> blocks_;
    _MorquilConnectToFailure reason_ = morquilConnectToFailureNoResponse;
};

/// Whether the text of an arriving block with this header is compared with what was sent.
bool HasEchoes(std::string_view header);

}  // namespace Morquil::Simulation
