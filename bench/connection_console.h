// What a program prints, sent elsewhere; and all in which systems differ about it.
#pragma once

#include <array>
#include <string>

namespace Morquil::Bench {

extern const char* const nullDevice;
/// Whether the null device takes as much at once as a stream hands over; on Windows the library writes each receive.
extern const bool nullDeviceTakesAllAtOnce;

/// A pipe's end to read from, and the one to write to.
std::array<int, 2> OpenPipe();
/// Reads into `buffer`. Returns: how many bytes; 0 or less at the end.
int ReadSome(int descriptor, char* buffer, std::size_t size);
void Close(int descriptor);

/// Sends what this program prints elsewhere, as long as it stands.
class Console {
public:
    /// To the file or device `path`.
    explicit Console(const std::string& path);
    /// To an open descriptor, which stays the caller's.
    explicit Console(int descriptor);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

private:
    void Redirect(int descriptor);

    int before_;
};

}  // namespace Morquil::Bench
