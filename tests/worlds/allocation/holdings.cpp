#include "tests/worlds/allocation/holdings.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace Morquil::Testing {
namespace {

template <class Count>
std::string Difference(const char* name, Count now, Count before) {
    return std::string(name) + " " + std::to_string(now) + " instead of " + std::to_string(before) + "; ";
}

std::string Compare(const Holdings& now, const Holdings& before) {
    std::string left;
    if (now.allocations > before.allocations || now.bytes > before.bytes) {
        left += Difference("allocations", now.allocations, before.allocations) +
                Difference("bytes", now.bytes, before.bytes);
    }
    if (now.texts > before.texts) {
        left += Difference("texts", now.texts, before.texts);
    }
    if (now.threads > before.threads + systemsOwn.threads) {
        left += Difference("threads", now.threads, before.threads);
    }
    if (now.handles > before.handles + systemsOwn.handles) {
        left += Difference("handles", now.handles, before.handles);
    }
    return left;
}

}  // namespace

std::string LeakedSince(Holdings& before) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    Holdings now;
    while (!Compare(now, before).empty() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
        now = Holdings();
    }
    before.allocations = std::min(before.allocations, now.allocations);
    before.bytes = std::min(before.bytes, now.bytes);
    before.texts = std::min(before.texts, now.texts);
    return Compare(now, before);
}

}  // namespace Morquil::Testing
