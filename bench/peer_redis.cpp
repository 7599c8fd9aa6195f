// hiredis: an array per block, with its name and then keys and values in turn.
#include <hiredis/hiredis.h>

#include <memory>

#include "bench/parser_contest.h"

namespace Morquil::Bench {

namespace {

std::string Bulk(const std::string& text) {
    return '$' + std::to_string(text.size()) + "\r\n" + text + "\r\n";
}

std::string RepliesOf(const std::vector<TextBlock>& blocks) {
    std::string text;
    for (const TextBlock& block : blocks) {
        text += '*' + std::to_string(1 + 2 * block.lines.size()) + "\r\n" + Bulk(block.header);
        for (const TextLine& line : block.lines) {
            text += Bulk(line.key) + Bulk(line.value);
        }
    }
    return text;
}

/// Returns the number of complete replies.
std::size_t Read(redisReader& reader, const std::string& text) {
    redisReaderFeed(&reader, text.data(), text.size());
    std::size_t replies = 0;
    for (void* reply = nullptr; redisReaderGetReply(&reader, &reply) == REDIS_OK && reply != nullptr; ++replies) {
        freeReplyObject(reply);
    }
    return replies;
}

}  // namespace

Contestant HiredisReading(const std::string& name, const std::vector<TextBlock>& blocks) {
    const std::string text = RepliesOf(blocks);
    const std::shared_ptr<redisReader> reader(redisReaderCreate(), &redisReaderFree);
    RequireEqual(std::to_string(Read(*reader, text)), std::to_string(blocks.size()), "the blocks and hiredis");
    return {name, [text, reader] { Use(Read(*reader, text)); }};
}

}  // namespace Morquil::Bench
