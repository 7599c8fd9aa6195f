#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Bench {

/// Collects the results of our own loops and writes them in the format of Google Benchmark's medians.
class ResultFile {
public:
    /// Writes to the file given by "--benchmark_out=FILE"; ignores other arguments.
    ResultFile(int argumentCount, char** arguments);

    /// Adds the median of `values` as `name`. `unit` is a Google Benchmark time unit, or empty if the value is not a
    /// time.
    void AddMedian(std::string_view name, std::vector<double> values, std::string_view unit = "");
    void Add(std::string_view name, double value, std::string_view unit = "");

    /// Returns false, after a message on standard error, if the file could not be written.
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
