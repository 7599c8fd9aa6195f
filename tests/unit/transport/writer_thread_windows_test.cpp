#include "transport/writer_thread.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace Morquil {
namespace {

// Set while there is a reader, and when a text has been written.
HANDLE reader = nullptr;
HANDLE hasWritten = nullptr;
std::string handedOver;

std::size_t WriteWhenRead(std::string_view text) {
    WaitForSingleObject(reader, INFINITE);
    handedOver += text;
    SetEvent(hasWritten);
    return text.size();
}

class WriterThreadTest : public testing::Test {
protected:
    WriterThreadTest() {
        handedOver.clear();
        reader = CreateEventA(nullptr, TRUE, TRUE, nullptr);
        hasWritten = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    }
    ~WriterThreadTest() override {
        CloseHandle(reader);
        CloseHandle(hasWritten);
    }

    bool AwaitWritten() { return WaitForSingleObject(hasWritten, 10'000) == WAIT_OBJECT_0; }
};

TEST_F(WriterThreadTest, ReturnsWhenAPieceHasBeenWritten) {
    static WriterThread writer(&WriteWhenRead);
    for (const std::string text : {"one", "two", "three"}) {
        handedOver.clear();
        EXPECT_EQ(writer.HandOver(text), text.size());
        EXPECT_EQ(handedOver, text);
    }
}

TEST_F(WriterThreadTest, WaitsForNoReader) {
    static WriterThread writer(&WriteWhenRead);
    ResetEvent(reader);
    EXPECT_EQ(writer.HandOver("one"), 3U) << "will be written when there is a reader";
    EXPECT_EQ(writer.HandOver("two"), 0U);
    EXPECT_EQ(handedOver, "");
    SetEvent(reader);
    ASSERT_TRUE(AwaitWritten());
    std::size_t written = 0;
    while (written == 0) {
        written = writer.HandOver("three");
    }
    EXPECT_EQ(written, 5U);
    EXPECT_EQ(handedOver, "onethree");
}

}  // namespace
}  // namespace Morquil
