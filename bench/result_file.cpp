#include "bench/result_file.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

namespace Morquil::Bench {

namespace {

constexpr std::string_view outOption = "--benchmark_out=";

}  // namespace

ResultFile::ResultFile(int argumentCount, char** arguments) {
    for (int at = 1; at < argumentCount; ++at) {
        const std::string_view argument = arguments[at];
        if (argument.starts_with(outOption)) {
            path_ = argument.substr(outOption.size());
        }
    }
}

void ResultFile::AddMedian(std::string_view name, std::vector<double> values, std::string_view unit) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    Add(name, *middle, unit);
}

void ResultFile::Add(std::string_view name, double value, std::string_view unit) {
    entries_.push_back({std::string(name), value, std::string(unit)});
    std::cout << name << "  " << value << ' ' << unit << std::endl;
}

bool ResultFile::Write() const {
    if (path_.empty()) {
        return true;
    }
    nlohmann::json benchmarks = nlohmann::json::array();
    for (const Entry& entry : entries_) {
        benchmarks.push_back({{"name", entry.name + "_median"},
                              {"run_name", entry.name},
                              {"run_type", "aggregate"},
                              {"aggregate_name", "median"},
                              {"real_time", entry.value},
                              {"cpu_time", entry.value},
                              {"time_unit", entry.unit}});
    }
    std::ofstream file(path_);
    file << nlohmann::json{{"benchmarks", benchmarks}}.dump(1) << '\n';
    file.close();
    if (!file) {
        std::cerr << path_ << " cannot be written\n";
    }
    return static_cast<bool>(file);
}

}  // namespace Morquil::Bench
