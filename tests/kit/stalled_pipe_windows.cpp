#include <gtest/gtest.h>
#include <windows.h>

#include "tests/kit/stalled_pipe.h"

namespace Morquil::Testing {
namespace {

HANDLE HandleOf(std::intptr_t pipe) {
    return reinterpret_cast<HANDLE>(pipe);
}

}  // namespace

StalledPipe::StalledPipe()
    : path_("\\\\.\\pipe\\" + ToText(folder_.Path().filename())),
      pipe_(reinterpret_cast<std::intptr_t>(
          CreateNamedPipeA(path_.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 4096, 4096, 0, nullptr))) {}

StalledPipe::~StalledPipe() {
    CloseHandle(HandleOf(pipe_));
}

void StalledPipe::Write(const std::string& text) const {
    const bool isConnected =
        ConnectNamedPipe(HandleOf(pipe_), nullptr) != FALSE || GetLastError() == ERROR_PIPE_CONNECTED;
    EXPECT_TRUE(isConnected);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(HandleOf(pipe_), text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
}

}  // namespace Morquil::Testing
