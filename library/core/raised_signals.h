#pragma once

#include <csignal>

namespace QRN::Core {

/// Shields the host from the signals that the system raises for a failed write: they would end a host that does not
/// handle them. Blocks them on this thread and discards them at the end of the scope. Leaves the host's handlers
/// unchanged.
class RaisedSignals {
public:
    RaisedSignals();
    ~RaisedSignals();
    RaisedSignals(const RaisedSignals&) = delete;
    RaisedSignals& operator=(const RaisedSignals&) = delete;

private:
    /// The signals that were not already pending.
    sigset_t raised_;
    sigset_t maskBefore_;
};

}  // namespace QRN::Core
