#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Morquil::Testing {

/// The command as a separate process, for what only a process shows: signals, closed streams. Waits end after 10 s.
class StartedCommand {
public:
    struct Start {
        std::vector<std::string> words;
        std::vector<int> closedStreams = {};  // of 0 to 2
        bool ignoresBrokenPipes = false;      // as set by services and some parent processes
        std::string temporaryFolder = "/tmp";
    };

    StartedCommand(const std::string& address, const Start& start);
    /// Kills it if it still runs.
    ~StartedCommand();
    StartedCommand(const StartedCommand&) = delete;
    StartedCommand& operator=(const StartedCommand&) = delete;

    /// Reads until standard output or standard error holds `text`. Returns: whether it does.
    bool AwaitOut(const std::string& text) { return Await(out_, text); }
    bool AwaitErr(const std::string& text) { return Await(err_, text); }
    /// What has been read from standard error.
    const std::string& Err() const { return err_.text; }

    /// Like the end of the program that reads standard output.
    void CloseOut();
    void Signal(int signal) const;

    /// Waits for the end, and reads the rest of standard error. Returns: as of waitpid(), -1 when it does not end.
    int AwaitEnd();

private:
    struct Stream {
        int descriptor = -1;
        std::string text = {};
    };

    static bool Await(Stream& stream, const std::string& text);

    Stream out_;
    Stream err_;
    Stream life_;  // a pipe that closes when the program ends
    pid_t process_ = -1;
};

}  // namespace Morquil::Testing
