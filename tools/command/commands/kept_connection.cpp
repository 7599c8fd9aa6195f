#include "command/commands/kept_connection.h"

#include "command/commands/link.h"

namespace Morquil::Command {

KeptConnection::KeptConnection(const std::string& address, const std::shared_ptr<WatchFeed>& feed,
                               FailedAttempts failed) {
    const auto isReported = std::make_shared<bool>(true);  // handlers run one at a time
    session_ = std::make_shared<morquil::Session>(
        address,
        morquil::SessionHandlers{
            .connected =
                [feed, isReported, failed](const morquil::Device& device) {
                    *isReported = failed == FailedAttempts::All;
                    feed->Add(
                        {.kind = EventKind::Connected, .device = std::make_shared<const morquil::Device>(device)});
                },
            .lost = [feed](morquil::ConnectFailure reason) { feed->Add({.kind = EventKind::Lost, .reason = reason}); },
            .attemptFailed =
                [feed, isReported](morquil::ConnectFailure reason, std::chrono::milliseconds) {
                    if (*isReported) {
                        feed->Add({.kind = EventKind::Failed, .reason = reason});
                    }
                }});
}

KeptConnection::~KeptConnection() {
    const bool isConnected = session_->Current().has_value();
    session_->Stop();
    if (!isConnected) {
        KeepUntilExit(session_);
    }
}

bool KeptConnection::DropIfSilent(std::chrono::milliseconds limit) const {
    const std::optional<morquil::Device> device = Current();
    const bool isSilent = device && IsSilent(*device, limit);
    if (isSilent) {
        device->Disconnect();
    }
    return isSilent;
}

}  // namespace Morquil::Command
