#pragma once

#include <csignal>

namespace QRN::Core {

/// Keeps the signals that the system raises for a failed write from the host: without a handler of its own they would
/// end it. They are held back from this thread and taken away at the end of the scope; the host's handlers stay as they
/// are.
class RaisedSignals {
public:
    RaisedSignals();
    ~RaisedSignals();
    RaisedSignals(const RaisedSignals&) = delete;
    RaisedSignals& operator=(const RaisedSignals&) = delete;

private:
    /// Those that were not waiting for this thread before.
    sigset_t raised_;
    sigset_t maskBefore_;
};

}  // namespace QRN::Core
