#include "bench/connection_console.h"

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include <cstdio>

namespace Morquil::Bench {

#ifdef _WIN32
const char* const nullDevice = "NUL";
const bool nullDeviceIsBuffered = false;

std::array<int, 2> OpenPipe() {
    std::array<int, 2> ends{};
    static_cast<void>(_pipe(ends.data(), 1 << 16, _O_BINARY));
    return ends;
}
int ReadSome(int descriptor, char* buffer, std::size_t size) {
    return _read(descriptor, buffer, static_cast<unsigned>(size));
}
#else
const char* const nullDevice = "/dev/null";
const bool nullDeviceIsBuffered = true;

std::array<int, 2> OpenPipe() {
    std::array<int, 2> ends{};
    static_cast<void>(!pipe(ends.data()));
    return ends;
}
int ReadSome(int descriptor, char* buffer, std::size_t size) {
    return static_cast<int>(read(descriptor, buffer, size));
}
#endif

namespace {

constexpr int readableByOwner = 0600;

}  // namespace

void Close(int descriptor) {
    close(descriptor);
}

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
