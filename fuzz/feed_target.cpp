// Any bytes into the parser: any split gives the same events, nothing is allocated, and no event reaches a sink that
// was taken away. As a settings file: what is queued for the device is whole blocks, and no more than one of each type.
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/allocation_count.h"
#include "fuzz/block_text.h"
#include "fuzz/digest.h"
#include "fuzz/feed_input.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "settings/morquil_config_loader.h"
#include "tests/settings/queue_client.h"

namespace Morquil::Fuzz {
namespace {

/// Digests all events, and notes the digest at one moment on the way.
class DigestingSink final : public EveryBlockSink<DigestingSink> {
public:
    explicit DigestingSink(std::uint64_t noteAfter) : noteAfter_(noteAfter) {}

    std::uint64_t Events() const { return events_; }
    std::uint64_t Value() const { return digest_.Value(); }
    std::uint64_t Noted() const { return noted_; }

    /// Takes the sink away from `parser` at the moment that is noted.
    void LeaveThen(MorquilTextProtocolParser& parser) {
        left_ = &parser;
        LeaveIfDue();
    }

    void OnPing() override { Happened(Event::Ping); }
    void OnAcknowledge(bool positive) override { Happened(positive ? Event::Acknowledged : Event::Refused); }
    void OnUnknownBlock() override { Happened(Event::UnknownBlock); }
    void OnProtocolError(const char* text) override {
        digest_.Add(std::string_view(text));
        Happened(Event::Error);
    }
    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        digest_.Add(std::string_view(Description::block.header.name));
        AddBlock<Description>(digest_, set);
        Happened(Event::Block);
    }

private:
    enum class Event : std::uint32_t { Ping, Acknowledged, Refused, UnknownBlock, Error, Block };

    void Happened(Event event) {
        digest_.Add(static_cast<std::uint32_t>(event));
        ++events_;
        LeaveIfDue();
    }
    void LeaveIfDue() {
        if (events_ == noteAfter_) {
            noted_ = digest_.Value();
            if (left_ != nullptr) {
                left_->SetSink(nullptr);
            }
        }
    }

    std::uint64_t noteAfter_;
    std::uint64_t events_ = 0;
    std::uint64_t noted_ = 0;
    Digest digest_;
    MorquilTextProtocolParser* left_ = nullptr;
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
ReusedParser pieceParser;

void FeedWhole(MorquilTextProtocolParser& parser, const FeedInput& input) {
    parser.Feed(input.Stream().data(), input.Stream().size());
}

/// Every piece lies in front of bytes that did not arrive, and is overwritten once it has been fed: a parser that reads
/// too far, or keeps a view into a piece, has other events.
void FeedInPieces(MorquilTextProtocolParser& parser, const FeedInput& input) {
    static constexpr std::string_view behind = "\nPING\n\n";
    static std::array<char, 256 + behind.size()> arrived;
    input.ForEachPiece([&](std::string_view piece) {
        std::memcpy(arrived.data(), piece.data(), piece.size());
        std::memcpy(arrived.data() + piece.size(), behind.data(), behind.size());
        parser.Feed(arrived.data(), piece.size());
    });
}

void TryAsReceived(const FeedInput& input) {
    const std::uint64_t allocationsBefore = AllocationCount();
    DigestingSink whole(input.EventsBeforeLoss());
    FeedWhole(wholeParser.With(&whole), input);

    DigestingSink pieces(input.EventsBeforeLoss());
    FeedInPieces(pieceParser.With(&pieces), input);
    Require(pieces.Events() == whole.Events(), "any split of a stream gives the same number of events");
    Require(pieces.Value() == whole.Value(), "any split of a stream gives the same events");

    if (input.LosesSink() && whole.Events() >= input.EventsBeforeLoss()) {
        DigestingSink leaving(input.EventsBeforeLoss());
        MorquilTextProtocolParser& parser = pieceParser.With(&leaving);
        leaving.LeaveThen(parser);
        FeedInPieces(parser, input);
        Require(leaving.Events() == input.EventsBeforeLoss(), "nothing reaches a sink that was taken away");
        Require(leaving.Value() == whole.Noted(), "a sink that is taken away has had the same events until then");
    }
    Require(AllocationCount() == allocationsBefore, "the parser allocates nothing");
}

/// The loader's sink is a private base: hosts load files. A file system would take longer than all the rest.
IMorquilTextProtocolSink& SinkOf(MorquilConfigLoader& loader) {
    return (IMorquilTextProtocolSink&)loader;
}

void TryAsSettingsFile(const FeedInput& input) {
    Test::QueueClient client;
    MorquilConfigLoader loader(client);
    FeedInPieces(pieceParser.With(&SinkOf(loader)), input);
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
    TryAsReceived(input);
    if (input.IsSettingsFile()) {
        TryAsSettingsFile(input);
    }
    return 0;
}
