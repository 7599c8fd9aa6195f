#include "bench/connection_console.h"

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include <cstdio>

namespace Morquil::Bench {

namespace {

constexpr int readableByOwner = 0600;

}  // namespace

Console::Console(const std::string& path) : before_(dup(fileno(stdout))) {
    const int opened = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, readableByOwner);
    Redirect(opened);
    close(opened);
}

Console::Console(int descriptor) : before_(dup(fileno(stdout))) {
    Redirect(descriptor);
}

Console::~Console() {
    Redirect(before_);
    close(before_);
}

void Console::Redirect(int descriptor) {
    std::fflush(stdout);
    dup2(descriptor, fileno(stdout));
}

}  // namespace Morquil::Bench
