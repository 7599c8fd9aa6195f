#pragma once

#include <memory>
#include <string>
#include <vector>

namespace Morquil::Testing {

/// How a host is started.
enum class Streams {
    OutputToPipe,
    OutputToBrokenPipe,  // without a reader
    OutputClosed,
    AllClosed,
};

/// The host of tests/system/console_host as a separate process, with the library as hosts have it. Its input stays open
/// until the test closes it.
class HostProcess {
public:
    HostProcess(const std::vector<std::string>& arguments, Streams streams);
    /// Ends the process if it has not ended.
    ~HostProcess();
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;

    /// The next `size` bytes of the output, or less at its end.
    std::string ReadOutput(std::size_t size);
    void EndInput();
    /// Waits up to 30 s for the end. Returns: the exit status; -1 when it was ended by force.
    int AwaitEnd();

private:
    class System;
    const std::unique_ptr<System> system_;
};

}  // namespace Morquil::Testing
