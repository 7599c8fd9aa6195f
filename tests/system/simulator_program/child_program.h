#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Testing {

/// The simulated device as a separate program, at a port that the system chooses. It is connected by pipes: standard
/// input is written, and standard output (with the errors) is read, only where a test does so. The destructor ends it.
class ChildProgram {
public:
    explicit ChildProgram(const std::vector<std::string>& options);
    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    pid_t Id() const { return process_; }

    /// Reads its output up to `end`. Returns: what was read; without `end` if the program has ended, or after 10 s.
    std::string ReadUntil(std::string_view end);
    /// Reads the line that says where it listens. Returns: the port.
    std::uint16_t AwaitPort();
    void CloseOutput();

    /// Writes all of `text` to its standard input.
    void Write(std::string_view text);
    /// Writes `text` repeatedly, at most `most` bytes. Returns: how many it accepted before it stopped reading for a
    /// second.
    std::size_t Flood(std::string_view text, std::size_t most);

    void Send(int signal);
    /// Waits for its end. Returns: the exit status, or the negative signal; `stillRuns` after 5 s.
    int AwaitEnd();
    static constexpr int stillRuns = 1000;

private:
    bool WriteSome(std::string_view& text, std::chrono::milliseconds limit);

    pid_t process_ = 0;
    int input_ = -1;
    int output_ = -1;
    int life_ = -1;  // hangs up when the program has ended
};

}  // namespace Morquil::Testing
