// Any change set of any block is written as one block of text, from which a parser reads the same values. Any text that
// a host passes to a setter is sent as one well-formed line, or refused.
#include <array>
#include <cstdio>
#include <string>
#include <tuple>
#include <utility>

#include "fuzz/block_text.h"
#include "fuzz/byte_source.h"
#include "fuzz/digest.h"
#include "fuzz/expected_reading.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/host_texts.h"
#include "fuzz/random_change_set.h"
#include "fuzz/require.h"
#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/text/cut_detector.h"

namespace Morquil::Fuzz {
namespace {

/// Expects one block of one kind, and keeps it.
template <class Expected>
class OneBlockSink final : public EveryBlockSink<OneBlockSink<Expected>> {
public:
    const ChangeSetOf<Expected>& Block() const {
        Require(block_ != nullptr, "what is written is read as a block");
        return *block_;
    }

    void OnPing() override { Require(false, "no line of a block is a keep-alive"); }
    void OnAcknowledge(bool /*positive*/) override { Require(false, "no line of a block is an acknowledgement"); }
    void OnUnknownBlock() override { Require(false, "the header that is written is known"); }
    void OnProtocolError(const char* /*text*/) override {}
    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        constexpr bool isExpected = std::is_same_v<Description, Expected>;
        Require(isExpected && block_ == nullptr, "what is written is read as one block of its kind");
        if constexpr (isExpected) {
            block_ = &set;
        }
    }

private:
    const ChangeSetOf<Expected>* block_ = nullptr;
};

template <class Description>
void RequireSame(const ChangeSetOf<Description>& read, const ChangeSetOf<Description>& expected) {
    if (DigestOf<Description>(read) != DigestOf<Description>(expected)) {
        std::fprintf(stderr, "expected\n%sbut read\n%s", BlockText<Description>(expected).c_str(),
                     BlockText<Description>(read).c_str());
        Require(false, "what is written is read as it was");
    }
}

template <class Description>
void TryBlock(ByteSource& source) {
    static MorquilTextProtocolParser parser;
    ChangeSetOf<Description> set = RandomChangeSet<Description>(source);
    ClearWhatWouldBeCut(set);
    const std::string text = BlockText<Description>(set);
    Require(IsOneBlock(text), "a change set is written as one block");
    if (LongestLine(text) > longestReadLine) {
        return;  // only lists from devices are that long, and readers cut them
    }
    OneBlockSink<Description> sink;
    parser.SetSink(&sink);
    parser.Feed(text.data(), text.size());
    ChangeSetOf<Description> expected = ExpectedReading<Description>(set);
    RequireSame<Description>(sink.Block(), expected);
    Require(!Merge(expected, sink.Block()), "merging the same values changes nothing");
}

constexpr auto tryBlock = []<std::size_t... block>(std::index_sequence<block...>) {
    return std::array<void (*)(ByteSource&), blockCount>{
        &TryBlock<typename std::tuple_element_t<block, BlockTable>::Description>...};
}
(std::make_index_sequence<blockCount>());

}  // namespace
}  // namespace Morquil::Fuzz

/// The first byte chooses a block; larger numbers choose texts.
int TestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace Morquil::Fuzz;
    ByteSource source({reinterpret_cast<const char*>(bytes), size});
    const std::size_t choice = source.Byte() % (tryBlock.size() + 2);
    if (choice < tryBlock.size()) {
        tryBlock[choice](source);
    } else if (choice == tryBlock.size()) {
        TryConversions(source);
    } else {
        TryTextSetters(source);
    }
    return 0;
}
