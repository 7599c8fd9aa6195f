// From bytes to requests.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "gateway/api/request.h"

namespace Morquil::Gateway {

struct HttpLimits {
    std::uint32_t headerBytes = 16'384;
    std::uint32_t bodyBytes = 1'048'576;
};

/// Reads one request after the other from bytes that arrive in any pieces.
class HttpReader {
public:
    enum class State { NeedsMore, Complete, Malformed };

    explicit HttpReader(HttpLimits limits);
    ~HttpReader();
    HttpReader(const HttpReader&) = delete;
    HttpReader& operator=(const HttpReader&) = delete;

    /// Takes bytes from the front of `bytes`, and stops at the end of a request. After `Malformed` it reads nothing
    /// more.
    State Feed(std::string_view& bytes);

    /// The complete request, without its id, address and identity; the next one may then be read.
    Request Take();

    /// Whether a request has begun to arrive.
    bool HasBegun() const { return parser_ != nullptr; }
    /// Whether the client wants to be asked for the body before it sends it; true once for each request.
    bool WantsContinue();
    /// What the connection does after the latest complete request.
    bool KeepsAlive() const { return keepsAlive_; }
    /// The status that answers a malformed request: 400, 413 or 431.
    int Status() const { return status_; }

private:
    struct Parser;

    const HttpLimits limits_;
    std::unique_ptr<Parser> parser_;
    bool keepsAlive_ = true;
    int status_ = 400;
};

}  // namespace Morquil::Gateway
