#include "command/commands/send.h"

namespace Morquil::Command {
namespace {

// "; it accepts 1080i50, 1080p25", for a word that the device does not accept now.
std::string AcceptedWords(const Change& change, const Link& link) {
    const Offer offer = Offered(*change.property, link.Device());
    const bool isList = std::holds_alternative<std::vector<std::int64_t>>(offer);
    return isList && CheckOffered(*change.property, offer, change.value)
               ? "; it accepts " + FormatOffer(*change.property, offer)
               : "";
}

std::string ReportedText(const Change& change, const Link& link) {
    const std::optional<Value> reported = Read(*change.property, link.Device());
    return "the device reports " + (reported ? FormatValue(change.property->type, *reported) : "no value");
}

[[noreturn]] void ThrowNotApplied(const Change& change, const std::string& reason) {
    throw Failure(ExitCode::NotApplied, change.property->name + ": " + reason);
}

[[noreturn]] void ThrowRefused(const Change& change, const Link& link) {
    if (!change.property->IsReadable()) {
        ThrowNotApplied(change, "the device has refused it");
    }
    ThrowNotApplied(change, "the device has refused " + FormatValue(change.property->type, change.value) + ": " +
                                ReportedText(change, link) + AcceptedWords(change, link));
}

[[noreturn]] void ThrowTimedOut(const Change& change, const Link& link) {
    const std::string within = " within " + link.Until().Text();
    if (!change.property->IsReadable()) {
        throw Failure(ExitCode::TimedOut, change.property->name + ": the device has not acknowledged it" + within);
    }
    ThrowNotApplied(change, "not applied" + within + ": " + ReportedText(change, link) + ", not " +
                                FormatValue(change.property->type, change.value) + AcceptedWords(change, link));
}

bool IsReported(const Change& change, const Link& link) {
    return !change.property->IsReadable() ||
           Properties::Confirms(Read(*change.property, link.Device()), change.value) != Properties::Confirmation::No;
}

// Throws: what the outcome means for the exit code.
void ExpectApplied(const Change& change, const morquil::Outcome& outcome, const Link& link) {
    switch (outcome.result) {
        case morquil::Result::Refused:
            ThrowRefused(change, link);
        case morquil::Result::NotSent:
            ThrowNotApplied(change, "the library never sends it");
        case morquil::Result::TimedOut:
            ThrowTimedOut(change, link);
        default:
            break;
    }
    if (!IsReported(change, link)) {
        ThrowNotApplied(change, "not applied: " + ReportedText(change, link) + ", not " +
                                    FormatValue(change.property->type, change.value) + AcceptedWords(change, link));
    }
}

}  // namespace

void SendChange(const Change& change, const Link& link, bool isFirst) {
    try {
        ExpectApplied(change, link.Apply([&] { Set(*change.property, link.Device(), change.value); }), link);
    } catch (const morquil::Error& error) {
        link.CheckIsThere();
        const bool isMisuse = isFirst && error.Result() == E_INVALIDARG;
        throw Failure(isMisuse ? ExitCode::Usage : ExitCode::NotApplied,
                      change.property->name + ": the library does not accept " +
                          FormatValue(change.property->type, change.value) + ": " + error.what());
    }
}

}  // namespace Morquil::Command
