#pragma once

#include <functional>
#include <string>

namespace Morquil::Simulator {

/// Reads standard input, whatever it is (a terminal, a pipe, a file, or nothing at all), on a thread of its own, and
/// calls `onLine` there with each line, as `InputLines` splits them; while `onLine` waits, nothing is read. The end of
/// standard input is no event. Reading cannot be interrupted everywhere: the thread goes with the program, and `onLine`
/// has to be able to live as long.
void ReadStandardInput(std::function<void(std::string)> onLine);

}  // namespace Morquil::Simulator
