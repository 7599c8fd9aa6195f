#include "simulator/streams/background_writer.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <vector>

namespace Morquil::Simulator {
namespace {

using Texts = std::vector<std::string>;

/// A reader that reads nothing until asked. Shared, since a writer may leave its thread with it.
class Reader {
public:
    bool Take(const OutputPiece& piece) {
        std::unique_lock lock(mutex_);
        isEntered_ = true;
        changed_.notify_all();
        changed_.wait(lock, [this] { return isReading_; });
        texts_.push_back(piece.text);
        return !isBroken_;
    }

    void AwaitFirst() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return isEntered_; });
    }
    void Read(bool isBroken = false) {
        const std::lock_guard lock(mutex_);
        isReading_ = true;
        isBroken_ = isBroken;
        changed_.notify_all();
    }
    Texts Received() {
        const std::lock_guard lock(mutex_);
        return texts_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    Texts texts_;
    bool isEntered_ = false;
    bool isReading_ = false;
    bool isBroken_ = false;
};

class BackgroundWriterTest : public testing::Test {
protected:
    static BackgroundWriter::TimePoint Soon() { return std::chrono::steady_clock::now() + std::chrono::seconds(10); }

    const std::shared_ptr<Reader> reader = std::make_shared<Reader>();
    BackgroundWriter writer{
        {.write = [reader = reader](const OutputPiece& piece) { return reader->Take(piece); },
         .noteDropped = [](std::size_t count) { return OutputPiece{"dropped " + std::to_string(count)}; }},
        10};
};

TEST_F(BackgroundWriterTest, WritesEverythingInOrder) {
    reader->Read();
    EXPECT_TRUE(writer.Write({"one"}));
    EXPECT_TRUE(writer.Write({"two"}));
    EXPECT_TRUE(writer.Finish(Soon()));
    EXPECT_EQ(reader->Received(), (Texts{"one", "two"}));
}

TEST_F(BackgroundWriterTest, DropsWhatExceedsItsLimitAndReportsHowMuch) {
    EXPECT_TRUE(writer.Write({"first"}));
    reader->AwaitFirst();
    EXPECT_TRUE(writer.Write({"123456789"}));
    EXPECT_FALSE(writer.Write({"xx"}));
    EXPECT_FALSE(writer.Write({"x"})) << "fits, but would hide that something is missing before it";
    reader->Read();
    EXPECT_TRUE(writer.Finish(Soon()));
    EXPECT_EQ(reader->Received(), (Texts{"first", "123456789", "dropped 2"}));
}

TEST_F(BackgroundWriterTest, StopsAtAFailure) {
    reader->Read(true);
    writer.Write({"one"});
    writer.Write({"two"});
    EXPECT_FALSE(writer.Finish(Soon()));
    EXPECT_EQ(reader->Received(), Texts{"one"});
    EXPECT_FALSE(writer.Write({"three"}));
}

TEST_F(BackgroundWriterTest, FinishesAlthoughItsReaderDoesNotRead) {
    EXPECT_TRUE(writer.Write({"first"}));
    reader->AwaitFirst();
    EXPECT_FALSE(writer.Finish(std::chrono::steady_clock::now()));
    reader->Read();
    EXPECT_TRUE(writer.Finish(Soon()));
}

}  // namespace
}  // namespace Morquil::Simulator
