#include "gateway/web/http_reader.h"

#include <gtest/gtest.h>

namespace Morquil::Gateway {
namespace {

constexpr std::string_view twoRequests =
    "PUT /api/v1/devices/a%20b/x?wait=queued&y= HTTP/1.1\r\nHost: h\r\nX-Thing: 1\r\nContent-Length: 5\r\n\r\nhello"
    "GET /second HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n";

std::string Describe(const Request& request) {
    std::string text = request.method + " " + request.target + " " + request.body;
    for (const auto& [name, value] : request.headers) {
        text += " " + name + "=" + value;
    }
    return text;
}

/// Reads what comes in pieces of `size` bytes.
std::string ReadInPieces(std::string_view bytes, std::size_t size) {
    HttpReader reader({});
    std::string text;
    while (!bytes.empty()) {
        std::string_view piece = bytes.substr(0, size);
        bytes.remove_prefix(piece.size());
        std::string held(piece);
        std::string_view rest = held;
        while (!rest.empty()) {
            const auto state = reader.Feed(rest);
            if (state == HttpReader::State::Malformed) {
                return text + "malformed " + std::to_string(reader.Status());
            }
            if (state == HttpReader::State::Complete) {
                text += Describe(reader.Take());
                text += reader.KeepsAlive() ? " keep\n" : " close\n";
            } else if (!rest.empty()) {
                held = std::string(rest);  // what it leaves has to be fed again with what follows
                const std::size_t more = std::min(size, bytes.size());
                held += bytes.substr(0, more);
                bytes.remove_prefix(more);
                if (more == 0) {
                    return text + "stuck";
                }
                rest = held;
            }
        }
    }
    return text;
}

TEST(HttpReader, GivesTheSameRequestsForEverySplit) {
    const std::string expected = ReadInPieces(twoRequests, twoRequests.size());
    EXPECT_EQ(expected,
              "PUT /api/v1/devices/a%20b/x?wait=queued&y= hello host=h x-thing=1 content-length=5 keep\n"
              "GET /second  host=h connection=close close\n");
    for (std::size_t size = 1; size < twoRequests.size(); ++size) {
        EXPECT_EQ(ReadInPieces(twoRequests, size), expected) << size;
    }
}

std::string StatusOf(std::string_view bytes, HttpLimits limits = {}) {
    HttpReader reader(limits);
    return reader.Feed(bytes) == HttpReader::State::Malformed ? std::to_string(reader.Status()) : "well";
}

TEST(HttpReader, RefusesWhatIsTooLarge) {
    EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nX: " + std::string(2'000, 'x'), {.headerBytes = 1'000}), "431");
    EXPECT_EQ(StatusOf("PUT / HTTP/1.1\r\nContent-Length: 1001\r\n\r\n", {.bodyBytes = 1'000}), "413");
    EXPECT_EQ(StatusOf("PUT / HTTP/1.1\r\nContent-Length: 1000\r\n\r\n", {.bodyBytes = 1'000}), "well");
}

TEST(HttpReader, RefusesWhatIsNoRequest) {
    for (const char* const bytes :
         {"\x16\x03\x01\x02", "GET\r\n\r\n", "GET / HTTP/9\r\n\r\n", "GET / HTTP/1.1\r\nno colon\r\n\r\n",
          "PUT / HTTP/1.1\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\n",
          "PUT / HTTP/1.1\r\nContent-Length: x\r\n\r\n"}) {
        EXPECT_EQ(StatusOf(bytes), "400") << bytes;
    }
}

TEST(HttpReader, AsksOnceForABodyThatIsHeldBack) {
    HttpReader reader({});
    std::string_view head = "PUT / HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 2\r\n\r\n";
    EXPECT_EQ(reader.Feed(head), HttpReader::State::NeedsMore);
    EXPECT_TRUE(reader.WantsContinue());
    EXPECT_FALSE(reader.WantsContinue());
    std::string_view body = "ok";
    EXPECT_EQ(reader.Feed(body), HttpReader::State::Complete);
}

}  // namespace
}  // namespace Morquil::Gateway
