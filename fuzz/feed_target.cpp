// The client receives any bytes in pieces: the events are the same as for one piece, nothing is allocated, no event
// comes after it has stopped listening, and each acknowledgement releases one block. Played back as a settings file,
// the bytes queue only whole blocks, and at most one of each type.
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

/// A sink that digests its events.
class DigestingSink final : public EveryBlockSink<DigestingSink> {
public:
    explicit DigestingSink(std::uint64_t recordAfter) : digest_(recordAfter) {}

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

/// A parser with a new sink drops partial lines, but keeps the frame height that a device named last. This resets it.
constexpr std::string_view reset = "\n\nANCILLARY DATA AVAILABILITY:\nTimecode frame height: 0\n\n";

/// One parser for all inputs, reset before each. Making a new one each time takes longer than most inputs.
class ReusedParser {
public:
    MorquilTextProtocolParser& With(IMorquilTextProtocolSink* sink) {
        parser_.SetSink(nullptr);
        parser_.Feed(reset.data(), reset.size());
        parser_.SetSink(sink);
        return parser_;
    }

private:
    MorquilTextProtocolParser parser_;
};

ReusedParser wholeParser;
ReusedParser loadingParser;
/// One client for all inputs, for the same reason.
DigestingClient receivingClient;

/// Every piece is followed in memory by bytes that did not arrive, and is overwritten after it has been read: reading
/// too far, or keeping a view into a piece, changes the events.
template <class Take>
void InPieces(const FeedInput& input, Take take) {
    static constexpr std::string_view following = "\nPING\n\n";
    static std::array<char, 256 + following.size()> arrived;
    input.ForEachPiece([&](std::string_view piece) {
        std::memcpy(arrived.data(), piece.data(), piece.size());
        std::memcpy(arrived.data() + piece.size(), following.data(), following.size());
        take(std::string_view(arrived.data(), piece.size()));
    });
}

void ArriveInPieces(DigestingClient& client, const FeedInput& input) {
    InPieces(input, [&](std::string_view piece) { client.Arrive(piece); });
}

/// All events of the stream in one piece.
EventDigest DigestOfTheWhole(const FeedInput& input) {
    DigestingSink sink(input.EventsBeforeStop());
    wholeParser.With(&sink).Feed(input.Stream().data(), input.Stream().size());
    return sink.Digest();
}

EventDigest DigestOfTheClient(const FeedInput& input) {
    receivingClient.Begin(0, false);
    receivingClient.Arrive(reset);
    receivingClient.Begin(input.EventsBeforeStop(), false);
    ArriveInPieces(receivingClient, input);
    return receivingClient.Digest();
}

/// Returns the digest of the whole stream.
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
    client.Begin(input.EventsBeforeStop(), true);
    ArriveInPieces(client, input);
    Require(client.Digest().Events() == input.EventsBeforeStop(), "nothing reaches a client that stopped listening");
    Require(client.Digest().Value() == whole.Recorded(),
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

/// Every acknowledgement or refusal releases one block: the first of the pending ones.
void TryWithPendingBlocks(const FeedInput& input, const EventDigest& whole) {
    DigestingClient client;
    const std::array<std::string, 3> pending{
        Queue<MorquilDeviceMessage>(client, [](auto& message) { message.panelLock.Set(true); }),
        Queue<VideoProcAmpMessage>(client, [](auto& message) { message.gain.Set(-3); }),
        Queue<NetworkConfigMessage>(client, [](auto& message) { message.friendlyName.Set("Rack 7"); })};
    client.Begin(0, false);
    ArriveInPieces(client, input);
    std::string expected;
    for (std::size_t place = 0; place < pending.size(); ++place) {
        const bool isSent = place < client.Digest().Acknowledgements();
        expected += isSent ? pending[place] : "";
        Require(client.ExpectsEcho(pending[place]) == isSent, "sent blocks are remembered, and nothing else");
    }
    Require(client.Sent() == expected, "an acknowledgement releases the next block");
    Require(client.Digest().Value() == whole.Value(), "pending blocks do not change what is received");
}

/// The loader's sink is a private base, because hosts load files. Here a file would take longer than all the rest.
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
        Require(!message->recordSentText, "the answer to a setting that is played back is not an echo");
        const std::string text = TextOf(*message);
        Require(IsOneBlock(text), "a setting that is played back is one block");
        Require(LongestLine(text) <= longestReadLine, "no line of a setting that is played back is cut");
        ++messages;
    }
    Require(messages < PendingMessages::slotCount, "at most one message of a type is pending");
}

}  // namespace
}  // namespace Morquil::Fuzz

int TestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace Morquil::Fuzz;
    const FeedInput input({reinterpret_cast<const char*>(bytes), size});
    const EventDigest whole = TryAsReceived(input);
    if (input.StopsListening() && whole.Events() >= input.EventsBeforeStop()) {
        TryWithoutListening(input, whole);
    }
    if (whole.Acknowledgements() > 0) {
        TryWithPendingBlocks(input, whole);
    }
    if (input.IsSettingsFile()) {
        TryAsSettingsFile(input);
    }
    return 0;
}
