#pragma once

#include <string>

namespace Morquil::Bench {

#ifdef _WIN32
inline constexpr const char* nullDevice = "NUL";
#else
inline constexpr const char* nullDevice = "/dev/null";
#endif

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
