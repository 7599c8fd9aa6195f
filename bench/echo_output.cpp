// The cost of printing everything that a device sends: a flood of reports, with standard output redirected to different
// targets. `Nothing` writes so much at once that the cost does not matter, and is the baseline for the others.
//   --floods=NUMBER  how often each is measured
#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>

#include "bench/connection_console.h"
#include "bench/connection_host.h"
#include "bench/connection_texts.h"
#include "bench/connection_times.h"
#include "bench/raw_client.h"
#include "bench/result_file.h"

using namespace Morquil::Bench;

namespace {

constexpr double receiveSize = 1024;
constexpr std::size_t usualBuffer = 4096;

/// A pipe with a thread that reads it.
class DrainedPipe {
public:
    DrainedPipe() : ends_(OpenPipe()) {
        reader_ = std::thread([this] {
            std::array<char, 1 << 16> buffer;
            while (ReadSome(ends_[0], buffer.data(), buffer.size()) > 0) {
            }
        });
    }
    ~DrainedPipe() {
        Close(ends_[1]);
        reader_.join();
        Close(ends_[0]);
    }
    DrainedPipe(const DrainedPipe&) = delete;
    DrainedPipe& operator=(const DrainedPipe&) = delete;

    int WriteEnd() const { return ends_[1]; }

private:
    const std::array<int, 2> ends_;
    std::thread reader_;
};

/// How the C library buffers output to a file, and to the null device, which it treats as a console on Windows.
void BufferAsFile() {
    static std::array<char, usualBuffer> buffer;
    std::setvbuf(stdout, buffer.data(), _IOFBF, buffer.size());
}
void BufferAsNullDevice() {
    if (nullDeviceIsBuffered) {
        BufferAsFile();
    } else {
        std::setvbuf(stdout, nullptr, _IONBF, 0);
    }
}
/// Writes so much at once that the cost per receive is negligible.
void BufferMuch() {
    static std::array<char, 16 * usualBuffer> buffer;
    std::setvbuf(stdout, buffer.data(), _IOFBF, buffer.size());
}

class Floods {
public:
    Floods() : device_(Connect(DeviceAddress(0))) {}

    /// Requests a flood and waits for the echo after it.
    void Receive() {
        lock_ = 1 - lock_;
        device_->SetPanelLock(lock_);
        for (LONG mirrored = -1; mirrored != lock_; device_->GetPanelLock(&mirrored)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

private:
    Device device_;
    LONG lock_ = 0;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    const int rounds = NumberArgument(argumentCount, arguments, "--floods", 41);
    ResultFile results(argumentCount, arguments);
    AwaitDevice();
    std::vector<double> nothing, file, pipe, null;
    const std::string path = (std::filesystem::temp_directory_path() / "morquil-bench-output").string();
    const std::string cheapest = nullDeviceIsBuffered ? nullDevice : path;
    {
        const Console silent(nullDevice);
        const DrainedPipe drainedPipe;
        BufferAsFile();
        Floods floods;
        const auto perReceive = [&] {
            return MicrosecondsOf([&] { floods.Receive(); }) / (static_cast<double>(Flood().size()) / receiveSize);
        };
        for (int round = 0; round < rounds; ++round) {
            {
                const Console console(cheapest);
                BufferMuch();
                nothing.push_back(perReceive());
            }
            {
                const Console console(path);
                BufferAsFile();
                file.push_back(perReceive());
            }
            {
                const Console console(drainedPipe.WriteEnd());
                BufferAsFile();
                pipe.push_back(perReceive());
            }
            {
                const Console console(nullDevice);
                BufferAsNullDevice();
                null.push_back(perReceive());
            }
        }
        BufferAsFile();
    }
    std::filesystem::remove(path);
    results.AddMedian("Receive/Nothing", nothing, "us");
    for (const auto& [name, times] :
         {std::pair("Receive/File", &file), std::pair("Receive/Pipe", &pipe), std::pair("Receive/NullDevice", &null)}) {
        results.AddMedian(name, *times, "us");
        results.Add(std::string(name) + "/above nothing", Percentile(*times, 50) - Percentile(nothing, 50), "us");
    }
    return results.Write() ? 0 : 1;
}
