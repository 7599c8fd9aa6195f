// A host that is controlled by its devices: connects, waits until the device reports a gain of 60, disconnects, waits
// for the end of its input and does the same with a second device.
//   morquil-console-host ADDRESS ADDRESS REPORT            prints nothing of its own
//   morquil-console-host ADDRESS ADDRESS REPORT open FILE  writes "own words" to FILE before it connects
//   morquil-console-host ADDRESS ADDRESS REPORT save FILE  prints "host words"; the library saves its settings to FILE
//   morquil-console-host ADDRESS ADDRESS REPORT silent     has the library print nothing
//   morquil-console-host ADDRESS ADDRESS REPORT lines FILE writes the lines that the library passes on to FILE
//   REPORT is written last: how long each disconnection took and what the standard descriptors were.
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "MorquilDelivery.h"
#include "console_lines.h"
#include "morquil.hpp"

namespace {

constexpr IID consoleId{0xA795E971, 0xEA63, 0x4D84, {0xA3, 0x66, 0x7C, 0xD6, 0x60, 0xE4, 0x3F, 0x29}};

/// Where the library's text goes, by way of the discovery object.
void SetOutput(_MorquilConsoleMode mode, IMorquilConsoleObserver* observer) {
    const auto discovery = morquil::detail::GetDiscovery();
    void* console = nullptr;
    if (discovery.Get()->QueryInterface(consoleId, &console) != S_OK) {
        throw std::runtime_error("no console");
    }
    const HRESULT result = static_cast<IMorquilConsole*>(console)->SetOutput(mode, observer);
    static_cast<IMorquilConsole*>(console)->Release();
    if (result != S_OK) {
        throw std::runtime_error("the output cannot be chosen");
    }
}

constexpr int lastGain = 60;

/// Waits, without a limit, until the device has reported the last gain.
void AwaitEnd(const morquil::Device& device) {
    std::mutex lock;
    std::condition_variable changed;
    const auto amp = device.VideoProcAmp();
    const auto subscription = device.OnChange(morquil::PropertySet::VideoProcAmp, [&](morquil::PropertySet) {
        const std::lock_guard hold(lock);
        changed.notify_all();
    });
    std::unique_lock hold(lock);
    changed.wait(hold, [&] { return amp.GetGain() == lastGain; });
}

/// What the standard descriptors refer to, if the system can say.
std::string StandardDescriptors() {
    std::ostringstream text;
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        std::error_code missing;
        const auto target = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor), missing);
        text << descriptor << ": " << (missing ? "closed" : target.string()) << '\n';
    }
    return text.str();
}

void Visit(const std::string& address, const std::string& settings, std::ostream& report) {
    const morquil::Device device = morquil::Connect(address);
    if (!settings.empty()) {
        std::printf("host words\n");
        std::fflush(stdout);
        device.SaveSettingsFile(settings);
    }
    report << StandardDescriptors();
    AwaitEnd(device);
    const auto begin = std::chrono::steady_clock::now();
    device.Disconnect();
    const auto taken = std::chrono::steady_clock::now() - begin;
    report << std::chrono::duration_cast<std::chrono::milliseconds>(taken).count() << " ms\n";
}

}  // namespace

int main(int count, char** words) try {
    const morquil::Apartment apartment;
    const std::string file = count > 5 ? words[5] : "";
    const std::string use = count > 4 ? words[4] : "";
    std::FILE* const ownFile = use == "open" ? std::fopen(file.c_str(), "w") : nullptr;
    if (ownFile != nullptr) {
        std::fputs("own words\n", ownFile);
        std::fflush(ownFile);
    }
    ConsoleLines lines;
    if (use == "silent") {
        SetOutput(morquilConsoleSilent, nullptr);
    } else if (use == "lines") {
        SetOutput(morquilConsoleObserver, &lines);
    }
    std::ostringstream report;
    Visit(words[1], use == "save" ? file : "", report);
    while (std::getchar() != EOF) {
    }
    Visit(words[2], "", report);
    if (use == "lines") {
        SetOutput(morquilConsoleStandardOutput, nullptr);
        std::ofstream(file, std::ios::binary) << lines.Text();
    }
    std::ofstream(words[3]) << report.str();
    return 0;
} catch (const std::exception&) {
    return 1;
}
