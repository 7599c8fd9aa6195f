#pragma once

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <string_view>
#include <system_error>
#include <vector>

namespace Morquil::Bench {

/// How long `work` takes, in microseconds.
template <class Work>
double MicrosecondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

/// The value that `percent` percent of all values do not exceed.
inline double Percentile(std::vector<double> values, double percent) {
    std::sort(values.begin(), values.end());
    const auto place = static_cast<std::size_t>(static_cast<double>(values.size() - 1) * percent / 100);
    return values[place];
}

/// The number of the argument "NAME=NUMBER", or `otherwise`.
inline int NumberArgument(int count, char** arguments, std::string_view name, int otherwise) {
    int number = otherwise;
    for (int at = 1; at < count; ++at) {
        const std::string_view argument = arguments[at];
        if (argument.starts_with(name) && argument.substr(name.size()).starts_with('=')) {
            const std::string_view digits = argument.substr(name.size() + 1);
            std::from_chars(digits.data(), digits.data() + digits.size(), number);
        }
    }
    return number;
}

}  // namespace Morquil::Bench
