// How fast messages become text.
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "bench/corpus.h"
#include "bench/writer_contest.h"
#include "protocol/text/message_to_string.h"

namespace Morquil::Bench {

namespace {

/// A collector of text in its simplest form, without regard to speed.
class LiteralToString final : public IMessageSender {
public:
    void BeginMessage() override { text_.clear(); }
    [[gnu::format(printf, 2, 3)]] void SendFormatted(const char* format, ...) override {
        char piece[maximumPieceLength + 1];
        std::va_list arguments;
        va_start(arguments, format);
        const int length = std::vsnprintf(piece, sizeof piece, format, arguments);
        va_end(arguments);
        if (length > 0) {
            text_.append(piece);
        }
    }
    bool EndMessage() override { return true; }

    const std::string& GetText() const { return text_; }

private:
    std::string text_;
};

template <class Description>
using MessageOf = TextProtocolMessage<ChangeSetOf<Description>>;
using Maker = MessageMaker<TextProtocolMessageBase, MessageOf>;

template <class Collector>
std::string WholeText(const Maker::Messages& messages) {
    std::string text;
    for (const auto& message : messages) {
        Collector collector;
        message->WriteTo(collector);
        text += collector.GetText();
    }
    return text;
}

template <class Collector>
Contestant Writing(const std::string& name, const std::shared_ptr<Maker::Messages>& messages) {
    return {name, [messages, collector = std::make_shared<Collector>()] {
                for (const auto& message : *messages) {
                    collector->BeginMessage();  // some messages leave this to their caller
                    message->WriteTo(*collector);
                    Use(collector->GetText().data());
                }
            }};
}

void AddContest(std::vector<Contestant>& contestants, const MessageCorpus& corpus) {
    const auto messages = std::make_shared<Maker::Messages>(Maker::From(corpus.text));
    const std::string text = WholeText<MessageToString>(*messages);
    RequireEqual(text, WholeText<LiteralToString>(*messages), "the library's and the literal writer");
    contestants.push_back(Writing<MessageToString>(corpus.name + "/library", messages));
    contestants.push_back(Writing<LiteralToString>(corpus.name + "/literal", messages));
    AddPeerWriters(contestants, corpus, text);
}

int Run(int argumentCount, char** arguments) {
    std::vector<Contestant> contestants;
    AddContest(contestants, {"small", UpdatesText()});
    AddContest(contestants, {"full", DumpText()});
    return Measure(argumentCount, arguments, contestants);
}

}  // namespace

}  // namespace Morquil::Bench

int main(int argumentCount, char** arguments) {
    return Morquil::Bench::Run(argumentCount, arguments);
}
