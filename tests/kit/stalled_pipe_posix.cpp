#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/kit/stalled_pipe.h"

namespace Morquil::Testing {
namespace {

std::intptr_t MakePipe(const std::string& path) {
    EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
    return open(path.c_str(), O_RDWR | O_CLOEXEC);
}

}  // namespace

StalledPipe::StalledPipe() : path_(folder_.PathOf("pipe")), pipe_(MakePipe(path_)) {}

StalledPipe::~StalledPipe() {
    close(static_cast<int>(pipe_));
}

void StalledPipe::Write(const std::string& text) const {
    EXPECT_EQ(write(static_cast<int>(pipe_), text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

}  // namespace Morquil::Testing
