#pragma once

#include <string>

namespace Morquil::Testing {

/// A program that is started with standard input, output and error closed; ended at the end of the scope.
class ProgramWithoutStreams {
public:
    /// `command` is a line for the shell.
    explicit ProgramWithoutStreams(const std::string& command);
    ~ProgramWithoutStreams();
    ProgramWithoutStreams(const ProgramWithoutStreams&) = delete;
    ProgramWithoutStreams& operator=(const ProgramWithoutStreams&) = delete;

    /// What its descriptors 0 to 2 refer to, with a space after each.
    std::string StandardDescriptors() const;

private:
    int process_ = -1;
};

}  // namespace Morquil::Testing
