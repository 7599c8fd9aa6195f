#pragma once

#include <cstddef>
#include <thread>
#include <vector>

namespace Morquil::Testing {

/// Runs a function on several threads at once; its end waits for all of them.
class Threads {
public:
    template <class Function>
    Threads(int count, Function function) {
        threads_.reserve(static_cast<std::size_t>(count));
        for (int index = 0; index < count; ++index) {
            threads_.emplace_back(function);
        }
    }
    ~Threads() {
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;

private:
    std::vector<std::thread> threads_;
};

}  // namespace Morquil::Testing
