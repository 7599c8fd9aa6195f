// What a monitoring system reads from /metrics.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace Morquil::Gateway {

/// How the streams are, all together.
struct StreamFigures {
    std::size_t clients = 0;
    std::size_t queuedBytes = 0;   // of all clients
    std::size_t longestQueue = 0;  // bytes of the client that is furthest back
    std::uint64_t gaps = 0;        // since the start
};

/// How the database is.
struct DatabaseFigures {
    std::int64_t bytes = 0;
    std::size_t pending = 0;
    std::uint64_t lost = 0;  // since the start
    bool isWriting = true;
};

/// Threads: one at a time.
class Metrics {
public:
    Metrics();
    ~Metrics();
    Metrics(const Metrics&) = delete;
    Metrics& operator=(const Metrics&) = delete;

    /// `age`: seconds since the device's last report; negative if there was none. `reconnects`: since the start.
    void SetLink(const std::string& device, bool isUp, double age, std::uint64_t reconnects);
    /// Forgets devices that have been removed or renamed: those that have not been set since the last call.
    void ForgetOthers();

    /// A request to change a property has ended with `outcome`: "confirmed", "refused", ...
    void CountChange(std::string_view outcome, bool hasFailed);
    /// How long the device took to confirm a change.
    void ObserveConfirm(double seconds);

    void SetStreams(const StreamFigures& figures);
    void SetDatabase(const DatabaseFigures& figures);

    /// Text exposition, for the content type `metricsContentType`.
    std::string Text() const;

private:
    class Families;
    std::unique_ptr<Families> families_;
};

inline constexpr std::string_view metricsContentType = "text/plain; version=0.0.4; charset=utf-8";

}  // namespace Morquil::Gateway
