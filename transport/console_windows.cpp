#include <windows.h>
// windows.h comes first.
#include <io.h>
#include <winternl.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <string_view>

#include "transport/console.h"

namespace Morquil {
namespace {

bool AskWhetherNullDevice(HANDLE output) {
    constexpr ULONG nullDeviceType = 0x15;
    IO_STATUS_BLOCK status{};
    FILE_FS_DEVICE_INFORMATION device{};
    return NtQueryVolumeInformationFile(output, &status, &device, sizeof(device), FileFsDeviceInformation) == 0 &&
           device.DeviceType == nullDeviceType;
}

// The answer is kept, since each question may be a round trip to another process. A console that has got the number of
// a null device that was closed is still written to.
bool IsNullDevice(HANDLE output) {
    static std::atomic<HANDLE> known = nullptr;
    if (output == known) {
        return true;
    }
    const bool isNull = AskWhetherNullDevice(output);
    if (isNull) {
        known = output;
    }
    return isNull;
}

// As the C library writes text.
void WriteLines(HANDLE output, std::string_view text) {
    constexpr std::size_t pieceLength = 1024;
    std::array<char, 2 * pieceLength> lines;
    for (; !text.empty(); text.remove_prefix(std::min(text.size(), pieceLength))) {
        char* end = lines.data();
        for (const char character : text.substr(0, pieceLength)) {
            if (character == '\n') {
                *end++ = '\r';
            }
            *end++ = character;
        }
        DWORD written = 0;
        WriteFile(output, lines.data(), static_cast<DWORD>(end - lines.data()), &written, nullptr);
    }
}

}  // namespace

// On a character device a stream may have no buffer and write each character by itself, which takes longer than all
// else that a connection does. For the null device the C library asks before each write whether it is a console.
void Print(std::string_view text) {
    const int descriptor = _fileno(stdout);
    if (_isatty(descriptor) == 0) {
        std::fwrite(text.data(), 1, text.size(), stdout);
        return;
    }
    std::fflush(stdout);
    const auto output = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    if (IsNullDevice(output)) {
        WriteLines(output, text);
    } else {
        _write(descriptor, text.data(), static_cast<unsigned>(text.size()));
    }
}

}  // namespace Morquil
