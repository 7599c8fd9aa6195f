#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Bench {

/// Collects the results of a loop of our own and writes them as Google Benchmark would write its medians.
class ResultFile {
public:
    /// Writes to the file that "--benchmark_out=FILE" names; other arguments are left to the program.
    ResultFile(int argumentCount, char** arguments);

    /// Adds the median of `values`, under `name`. `unit` is a Google Benchmark time unit; what is no time has none.
    void AddMedian(std::string_view name, std::vector<double> values, std::string_view unit = "");
    void Add(std::string_view name, double value, std::string_view unit = "");

    /// Returns false, and says so on standard error, when the file could not be written.
    bool Write() const;

private:
    struct Entry {
        std::string name;
        double value;
        std::string unit;
    };

    std::string path_;
    std::vector<Entry> entries_;
};

}  // namespace Morquil::Bench
