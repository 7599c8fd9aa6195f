#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "tests/system/host/host_process.h"
#include "transport/windows_handle.h"

namespace Morquil::Testing {
namespace {

struct Pipe {
    WindowsHandle readEnd;
    WindowsHandle writeEnd;

    Pipe() {
        HANDLE from = nullptr;
        HANDLE to = nullptr;
        EXPECT_TRUE(CreatePipe(&from, &to, nullptr, 1 << 16));
        readEnd = WindowsHandle(from);
        writeEnd = WindowsHandle(to);
    }
};

HANDLE Inheritable(const WindowsHandle& handle) {
    SetHandleInformation(handle.Get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    return handle.Get();
}

STARTUPINFOA Arranged(Streams streams, const WindowsHandle& input, const WindowsHandle& output) {
    STARTUPINFOA start{};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    if (streams != Streams::AllClosed) {
        start.hStdInput = Inheritable(input);
        start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        start.hStdOutput = streams == Streams::OutputClosed ? nullptr : Inheritable(output);
    }
    return start;
}

}  // namespace

class HostProcess::System {
public:
    System(const std::vector<std::string>& arguments, Streams streams) {
        Pipe input;
        Pipe output;
        std::string line = "\"" MORQUIL_CONSOLE_HOST_PATH "\"";
        for (const std::string& argument : arguments) {
            line += " \"" + argument + "\"";
        }
        STARTUPINFOA start = Arranged(streams, input.readEnd, output.writeEnd);
        PROCESS_INFORMATION started{};
        EXPECT_TRUE(CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &started))
            << line << ": error " << GetLastError();
        CloseHandle(started.hThread);
        process_ = WindowsHandle(started.hProcess);
        input_ = std::move(input.writeEnd);
        if (streams == Streams::OutputToPipe) {
            output_ = std::move(output.readEnd);
        }
    }
    ~System() { AwaitEnd(0); }
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    std::string ReadOutput(std::size_t size) {
        std::string text;
        std::array<char, 4096> part{};
        DWORD count = 0;
        while (text.size() < size &&
               ReadFile(output_.Get(), part.data(), static_cast<DWORD>(std::min(part.size(), size - text.size())),
                        &count, nullptr) != FALSE) {
            text.append(part.data(), count);
        }
        return text;
    }

    void EndInput() { input_ = WindowsHandle(); }

    int AwaitEnd(DWORD milliseconds) {
        if (!process_.IsOpen()) {
            return -1;
        }
        if (WaitForSingleObject(process_.Get(), milliseconds) != WAIT_OBJECT_0) {
            TerminateProcess(process_.Get(), static_cast<UINT>(-1));
            WaitForSingleObject(process_.Get(), INFINITE);
        }
        DWORD status = 0;
        GetExitCodeProcess(process_.Get(), &status);
        process_ = WindowsHandle();
        return static_cast<int>(status);
    }

private:
    WindowsHandle process_;
    WindowsHandle input_;
    WindowsHandle output_;
};

HostProcess::HostProcess(const std::vector<std::string>& arguments, Streams streams)
    : system_(std::make_unique<System>(arguments, streams)) {}
HostProcess::~HostProcess() = default;
std::string HostProcess::ReadOutput(std::size_t size) {
    return system_->ReadOutput(size);
}
void HostProcess::EndInput() {
    system_->EndInput();
}
int HostProcess::AwaitEnd() {
    return system_->AwaitEnd(30000);
}

}  // namespace Morquil::Testing
