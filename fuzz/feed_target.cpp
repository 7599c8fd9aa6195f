// Any bytes to the client, in pieces: the events are those of one piece, nothing is allocated, no event comes once it
// has stopped listening, and each acknowledgement lets one block go. As a settings file: what is queued for the device
// is whole blocks, and no more than one of each type.
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "fuzz/allocation_count.h"
#include "fuzz/block_text.h"
#include "fuzz/digesting_client.h"
#include "fuzz/event_digest.h"
#include "fuzz/feed_input.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "settings/morquil_config_loader.h"
#include "tests/unit/settings/queue_client.h"

namespace Morquil::Fuzz {
namespace {

/// A sink that digests.
class DigestingSink final : public EveryBlockSink<DigestingSink> {
public:
    explicit DigestingSink(std::uint64_t noteAfter) : digest_(noteAfter) {}

    const EventDigest& Digest() const { return digest_; }

    void OnPing() override { digest_.Ping(); }
    void OnAcknowledge(bool positive) override { digest_.Acknowledge(positive); }
    void OnUnknownBlock() override { digest_.UnknownBlock(); }
    void OnProtocolError(const char* text) override { digest_.ProtocolError(text); }
    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        digest_.Block<Description>(set);
    }

private:
    EventDigest digest_;
};

/// A parser starts without partial lines, but keeps the frame height that a device named last. This names none.
constexpr std::string_view forgetting = "\n\nANCILLARY DATA AVAILABILITY:\nTimecode frame height: 0\n\n";

/// A parser of all inputs, as it was at first. Making a new one each time takes longer than most inputs.
class ReusedParser {
public:
    MorquilTextProtocolParser& With(IMorquilTextProtocolSink* sink) {
        parser_.SetSink(nullptr);
        parser_.Feed(forgetting.data(), forgetting.size());
        parser_.SetSink(sink);
        return parser_;
    }

private:
    MorquilTextProtocolParser parser_;
};

ReusedParser wholeParser;
ReusedParser loadingParser;
/// A client of all inputs, for the same reason.
DigestingClient receivingClient;

/// Every piece lies in front of bytes that did not arrive, and is overwritten once it has been taken: who reads too
/// far, or keeps a view into a piece, has other events.
template <class Take>
void InPieces(const FeedInput& input, Take take) {
    static constexpr std::string_view behind = "\nPING\n\n";
    static std::array<char, 256 + behind.size()> arrived;
    input.ForEachPiece([&](std::string_view piece) {
        std::memcpy(arrived.data(), piece.data(), piece.size());
        std::memcpy(arrived.data() + piece.size(), behind.data(), behind.size());
        take(std::string_view(arrived.data(), piece.size()));
    });
}

void ArriveInPieces(DigestingClient& client, const FeedInput& input) {
    InPieces(input, [&](std::string_view piece) { client.Arrive(piece); });
}

/// All events of the stream in one piece.
EventDigest DigestOfTheWhole(const FeedInput& input) {
    DigestingSink sink(input.EventsBeforeLoss());
    wholeParser.With(&sink).Feed(input.Stream().data(), input.Stream().size());
    return sink.Digest();
}

EventDigest DigestOfTheClient(const FeedInput& input) {
    receivingClient.Begin(0, false);
    receivingClient.Arrive(forgetting);
    receivingClient.Begin(input.EventsBeforeLoss(), false);
    ArriveInPieces(receivingClient, input);
    return receivingClient.Digest();
}

/// Gives the digest of the whole.
EventDigest TryAsReceived(const FeedInput& input) {
    const std::uint64_t allocationsBefore = AllocationCount();
    const EventDigest whole = DigestOfTheWhole(input);
    const EventDigest pieces = DigestOfTheClient(input);
    Require(pieces.Events() == whole.Events(), "any split of a stream gives the same number of events");
    Require(pieces.Value() == whole.Value(), "any split of a stream gives the same events");
    Require(AllocationCount() == allocationsBefore, "nothing is allocated for what is received");
    Require(receivingClient.Sent().empty(), "a client that has nothing to send sends nothing");
    return whole;
}

void TryWithoutListening(const FeedInput& input, const EventDigest& whole) {
    DigestingClient client;
    client.Begin(input.EventsBeforeLoss(), true);
    ArriveInPieces(client, input);
    Require(client.Digest().Events() == input.EventsBeforeLoss(), "nothing reaches a client that stopped listening");
    Require(client.Digest().Value() == whole.Noted(),
            "a client that stops listening has had the same events until then");
}

template <class Message, class Fill>
std::string Queue(MorquilTextProtocolClient& client, Fill fill) {
    auto message = std::make_unique<Message>();
    fill(*message);
    std::string text = TextOf(*message);
    Require(client.Queue(std::move(message)) == S_OK, "a message can be queued");
    return text;
}

/// Every acknowledgement, or refusal, lets one block go: the first of those that wait.
void TryWithBlocksThatWait(const FeedInput& input, const EventDigest& whole) {
    DigestingClient client;
    const std::array<std::string, 3> waiting{
        Queue<MorquilDeviceMessage>(client, [](auto& message) { message.panelLock.Set(true); }),
        Queue<VideoProcAmpMessage>(client, [](auto& message) { message.gain.Set(-3); }),
        Queue<NetworkConfigMessage>(client, [](auto& message) { message.friendlyName.Set("Rack 7"); })};
    client.Begin(0, false);
    ArriveInPieces(client, input);
    std::string expected;
    for (std::size_t place = 0; place < waiting.size(); ++place) {
        const bool isSent = place < client.Digest().Acknowledgements();
        expected += isSent ? waiting[place] : "";
        Require(client.ExpectsEcho(waiting[place]) == isSent, "what has been sent is remembered, and nothing else");
    }
    Require(client.Sent() == expected, "an acknowledgement lets the next block go");
    Require(client.Digest().Value() == whole.Value(), "what waits to be sent changes nothing in what is received");
}

/// The loader's sink is a private base: hosts load files. A file system would take longer than all the rest.
IMorquilTextProtocolSink& SinkOf(MorquilConfigLoader& loader) {
    return (IMorquilTextProtocolSink&)loader;
}

void TryAsSettingsFile(const FeedInput& input) {
    Testing::QueueClient client;
    MorquilConfigLoader loader(client);
    MorquilTextProtocolParser& loading = loadingParser.With(&SinkOf(loader));
    InPieces(input, [&](std::string_view piece) { loading.Feed(piece.data(), piece.size()); });
    std::size_t messages = 0;
    for (auto message = client.Take(); message != nullptr; message = client.Take()) {
        Require(!message->recordSentText, "the answer to a setting that is played back is no echo");
        const std::string text = TextOf(*message);
        Require(IsOneBlock(text), "a setting that is played back is one block");
        Require(LongestLine(text) <= longestReadLine, "a setting that is played back has no line that is cut");
        ++messages;
    }
    Require(messages < PendingMessages::slotCount, "at most one message of a type waits");
}

}  // namespace
}  // namespace Morquil::Fuzz

int TestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace Morquil::Fuzz;
    const FeedInput input({reinterpret_cast<const char*>(bytes), size});
    const EventDigest whole = TryAsReceived(input);
    if (input.LosesSink() && whole.Events() >= input.EventsBeforeLoss()) {
        TryWithoutListening(input, whole);
    }
    if (whole.Acknowledgements() > 0) {
        TryWithBlocksThatWait(input, whole);
    }
    if (input.IsSettingsFile()) {
        TryAsSettingsFile(input);
    }
    return 0;
}
