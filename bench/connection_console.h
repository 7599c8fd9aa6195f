// Redirects standard output, and hides how systems differ in that.
#pragma once

#include <array>
#include <string>

namespace Morquil::Bench {

extern const char* const nullDevice;
/// Whether output to the null device is buffered; on Windows the library writes it after each receive.
extern const bool nullDeviceIsBuffered;

/// A pipe: its read end and its write end.
std::array<int, 2> OpenPipe();
/// Reads into `buffer`. Returns: the number of bytes; 0 or less at the end.
int ReadSome(int descriptor, char* buffer, std::size_t size);
void Close(int descriptor);

/// Redirects this program's standard output while this object lives.
class Console {
public:
    /// To the file or device `path`.
    explicit Console(const std::string& path);
    /// To an open descriptor, which the caller still owns.
    explicit Console(int descriptor);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

private:
    void Redirect(int descriptor);

    int before_;
};

}  // namespace Morquil::Bench
