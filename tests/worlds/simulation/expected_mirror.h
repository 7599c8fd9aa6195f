#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MorquilAPI.h"
#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// What a device has sent, and the notifications and requests that follow from it.
class ExpectedMirror {
public:
    /// What follows from a block.
    struct Effect {
        /// Who has to be notified, in this order, unless it is an echo; an echo of an output change is notified, too.
        std::vector<_MorquilPropertySetId> changed;
        /// The blocks that are requested.
        std::vector<std::string> requests;
    };

    Effect Take(const std::string& header, const Lines& lines);
    /// Of a key by its name (`SpokenKey::Name`). Empty while it is unknown.
    std::optional<std::string> Value(const std::string& header, const std::string& key) const;
    /// Whether a getter may still answer `value`: several features share a block, and each applies it in its turn,
    /// after the observers of those before it have been called.
    bool MayStillBe(const std::string& header, const std::string& key, const std::optional<std::string>& value) const;
    /// The block has been applied.
    void Settle() { before_.reset(); }
    /// Whether everything that a connection waits for has arrived.
    bool IsComplete() const;
    _MorquilConnectToFailure Reason() const { return reason_; }
    void Clear() { blocks_.clear(); }

private:
    using Keys = std::set<std::string>;

    Keys Merge(const std::string& header, const Lines& lines);
    void TakePreamble(const Lines& lines);
    static std::vector<_MorquilPropertySetId> Notified(const std::string& header, const Keys& changed);
    static std::vector<std::string> Requests(const std::string& header, const Keys& changed);

    using Values = std::map<std::string, std::string>;

    static std::optional<std::string> ValueIn(const Values& values, const std::string& key);

    std::map<std::string, Values> blocks_;
    std::optional<std::pair<std::string, Values>> before_;  ///< the shared block that is being applied, as it was
    _MorquilConnectToFailure reason_ = morquilConnectToFailureNoResponse;
};

/// Whether the text of an arriving block with this header is compared with what was sent.
bool HasEchoes(std::string_view header);

}  // namespace Morquil::Testing::Worlds
