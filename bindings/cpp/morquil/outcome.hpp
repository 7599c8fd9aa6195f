// What became of changes.
#pragma once

#include <string>
#include <string_view>

namespace morquil {

/// What became of the changes of one `Apply`. Of several results the first that applies to any of them, in this order.
enum class Result {
    /// The connection has ended, or there was none, before the device had confirmed everything.
    Lost,
    /// The device has refused at least one message; the values in it are as they were.
    Refused,
    /// At least one message is never sent to a device.
    NotSent,
    /// The time was up before the device had confirmed everything. The changes may still be carried out.
    TimedOut,
    /// The device has accepted everything, and reports at least one other value than was set: it has limited or rounded
    /// it, or the value was changed elsewhere since.
    Adjusted,
    /// The device has accepted everything, and reports what was set.
    Applied
};

/// What became of the changes of one `Apply`, and of how many. What is counted are messages to the device: changes to
/// the same block that wait together are one message.
struct Outcome {
    Result result = Result::Lost;

    /// What the device has answered.
    unsigned int acknowledged = 0;
    unsigned int refused = 0;
    /// What is never sent to a device.
    unsigned int kept = 0;

    /// What the device has reported since: the values that were set, or others.
    unsigned int confirmed = 0;
    unsigned int adjusted = 0;

    /// When the connection has ended: sent and possibly carried out, and not sent at all.
    unsigned int unanswered = 0;
    unsigned int unsent = 0;

    bool IsApplied() const { return result == Result::Applied; }
};

inline bool operator==(const Outcome& a, const Outcome& b) {
    return a.result == b.result && a.acknowledged == b.acknowledged && a.refused == b.refused && a.kept == b.kept &&
           a.confirmed == b.confirmed && a.adjusted == b.adjusted && a.unanswered == b.unanswered &&
           a.unsent == b.unsent;
}
inline bool operator!=(const Outcome& a, const Outcome& b) {
    return !(a == b);
}
inline bool operator==(const Outcome& outcome, Result result) {
    return outcome.result == result;
}
inline bool operator!=(const Outcome& outcome, Result result) {
    return outcome.result != result;
}

inline std::string_view ToText(Result result) {
    switch (result) {
        case Result::Refused:
            return "refused";
        case Result::NotSent:
            return "not sent";
        case Result::TimedOut:
            return "timed out";
        case Result::Adjusted:
            return "adjusted";
        case Result::Applied:
            return "applied";
        case Result::Lost:
            break;
    }
    return "lost";
}

namespace detail {

inline std::string CountOf(unsigned int number, std::string_view thing) {
    return std::to_string(number) + " " + std::string(thing) + (number == 1 ? "" : "s");
}

inline std::string DetailsOf(const Outcome& outcome) {
    switch (outcome.result) {
        case Result::Lost:
            return "the connection has ended; " + CountOf(outcome.unanswered, "message") + " unanswered, " +
                   std::to_string(outcome.unsent) + " not sent";
        case Result::Refused:
            return "the device has refused " + std::to_string(outcome.refused) + " of " +
                   CountOf(outcome.acknowledged + outcome.refused, "message");
        case Result::NotSent:
            return CountOf(outcome.kept, "message") + " of a kind that is never sent";
        case Result::TimedOut:
            return outcome.acknowledged == 0 ? "the device has not answered yet"
                                             : "the device has accepted the change, but not reported it yet";
        case Result::Adjusted:
            return "the device reports other values in " + std::to_string(outcome.adjusted) + " of " +
                   CountOf(outcome.confirmed + outcome.adjusted, "block");
        case Result::Applied:
            break;
    }
    return {};
}

}  // namespace detail

/// In words: "refused: the device has refused 1 of 2 messages".
inline std::string ToText(const Outcome& outcome) {
    const std::string details = detail::DetailsOf(outcome);
    return std::string(ToText(outcome.result)) + (details.empty() ? "" : ": " + details);
}

}  // namespace morquil
