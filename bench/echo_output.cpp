// What it costs that everything a device says is printed: a flood of reports, with the console on different things.
// `Nothing` hands over so much at once that it does not matter, and is the measure for the others.
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

/// A pipe that somebody reads.
class ReadPipe {
public:
    ReadPipe() : ends_(OpenPipe()) {
        reader_ = std::thread([this] {
            std::array<char, 1 << 16> buffer;
            while (ReadSome(ends_[0], buffer.data(), buffer.size()) > 0) {
            }
        });
    }
    ~ReadPipe() {
        Close(ends_[1]);
        reader_.join();
        Close(ends_[0]);
    }
    ReadPipe(const ReadPipe&) = delete;
    ReadPipe& operator=(const ReadPipe&) = delete;

    int WriteEnd() const { return ends_[1]; }

private:
    const std::array<int, 2> ends_;
    std::thread reader_;
};

/// How the C library buffers what goes to a file, and what to the null device: on Windows that is a console to it.
void BufferAsFile() {
    static std::array<char, usualBuffer> buffer;
    std::setvbuf(stdout, buffer.data(), _IOFBF, buffer.size());
}
void BufferAsNullDevice() {
    if (nullDeviceTakesAllAtOnce) {
        BufferAsFile();
    } else {
        std::setvbuf(stdout, nullptr, _IONBF, 0);
    }
}
/// So much at once that next to nothing is left of what each receive takes.
void BufferMuch() {
    static std::array<char, 16 * usualBuffer> buffer;
    std::setvbuf(stdout, buffer.data(), _IOFBF, buffer.size());
}

class Floods {
public:
    Floods() : device_(Connect(DeviceAddress(0))) {}

    /// Asks for a flood and waits for what comes behind it.
    void Take() {
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
    const std::string cheapest = nullDeviceTakesAllAtOnce ? nullDevice : path;
    {
        const Console silent(nullDevice);
        const ReadPipe readPipe;
        BufferAsFile();
        Floods floods;
        const auto perReceive = [&] {
            return MicrosecondsOf([&] { floods.Take(); }) / (static_cast<double>(Flood().size()) / receiveSize);
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
                const Console console(readPipe.WriteEnd());
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
