#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>
#include <tuple>

#include "protocol/block_table.h"
#include "protocol/line_context.h"
#include "protocol/sink.h"
#include "protocol/text_protocol_parser.h"

namespace Morquil {

/// Reads the device's blocks into change sets and delivers each at its empty line.
class MorquilTextProtocolParser final : public TextProtocolParser {
public:
    /// `sink` is not owned; without one, blocks and errors are dropped.
    /// Threads: any, also from inside a sink operation; an operation that is on its way is not waited for.
    void SetSink(IMorquilTextProtocolSink* sink) { sink_ = sink; }
    bool HasSink() const { return sink_ != nullptr; }

protected:
    void ReportError(const char* text) override;
    bool BeginBlock(std::string_view header) override;
    void ParseLine(std::string_view line) override;
    void EndBlock() override;
    void OnPingLine() override;
    void OnAcknowledgeLine(bool positive) override;

private:
    friend struct BlockOperations;

    void ReadValue(std::string_view key, std::string_view value);

    template <class Table>
    struct ChangeSetsOf;
    template <class... Entries>
    struct ChangeSetsOf<std::tuple<Entries...>> {
        using Type = std::tuple<typename Entries::ChangeSet...>;
    };

    static constexpr std::int32_t noBlock = 0;
    static constexpr std::int32_t unknownBlock = -1;

    std::int32_t currentBlock_ = noBlock;
    std::atomic<IMorquilTextProtocolSink*> sink_ = nullptr;
    Selections selections_;
    ChangeSetsOf<BlockTable>::Type changeSets_;
};

}  // namespace Morquil
