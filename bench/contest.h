#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Morquil::Bench {

/// One way of doing the work of a benchmark.
struct Contestant {
    std::string name;
    std::function<void()> work;
};

/// Measures all contestants side by side and writes their medians to the file given by "--benchmark_out=FILE": with
/// Google Benchmark, which reads its own arguments; under Wine with our own loop. Returns the exit code.
int Measure(int argumentCount, char** arguments, const std::vector<Contestant>& contestants);

/// Ends the program and prints `names` if the results of two contestants differ: they would not do the same work.
void RequireEqual(const std::string& left, const std::string& right, const char* names);

/// Keeps the compiler from removing work whose result is not used.
template <class Value>
void Use(const Value& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

}  // namespace Morquil::Bench
