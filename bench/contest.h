#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Morquil::Bench {

/// One way of doing a piece of work.
struct Contestant {
    std::string name;
    std::function<void()> work;
};

/// Measures all contestants side by side and writes their medians to the file that "--benchmark_out=FILE" names: with
/// Google Benchmark, which takes its own arguments; under Wine with a loop of our own. Returns the exit code.
int Measure(int argumentCount, char** arguments, const std::vector<Contestant>& contestants);

/// Contestants that do not do the same work make no contest: ends the program and names them.
void RequireEqual(const std::string& left, const std::string& right, const char* names);

/// Keeps the compiler from leaving out work whose result nobody uses.
template <class Value>
void Use(const Value& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

}  // namespace Morquil::Bench
