#pragma once

#include <functional>
#include <string>

namespace Morquil::Simulator {

/// Reads standard input, whatever it is (a terminal, a pipe, a file, or nothing at all), on a thread of its own, and
/// calls `onLine` there with each line, as `InputLines` splits them. While `onLine` blocks, nothing is read. The end of
/// standard input is not reported. Not every system can interrupt reading: the thread runs until the program ends, and
/// `onLine` must stay valid that long.
void ReadStandardInput(std::function<void(std::string)> onLine);

}  // namespace Morquil::Simulator
