// Many devices in one process: what each costs, and how long it takes until all are connected, compared with a raw
// client that has all conversations on one thread, and with raw clients on one thread each.
//   --devices=NUMBER  how many
//   --rounds=NUMBER   how often all of them are connected
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "bench/connection_console.h"
#include "bench/connection_host.h"
#include "bench/connection_texts.h"
#include "bench/connection_times.h"
#include "bench/devices_raw.h"
#include "bench/raw_client.h"
#include "bench/result_file.h"
#include "tests/kit/process_counts.h"

using namespace Morquil::Bench;
using Morquil::Testing::ProcessMemory;
using Morquil::Testing::ThreadCount;

namespace {

/// Counts the devices that are connected.
class CountingObserver final : public IMorquilConnectionObserver {
public:
    STDMETHODIMP QueryInterface(REFIID /*iid*/, void** /*out*/) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Connected() override {
        const std::lock_guard lock(lock_);
        ++connected_;
        changed_.notify_one();
        return S_OK;
    }
    STDMETHODIMP Disconnected(_MorquilConnectToFailure /*reason*/) override { return S_OK; }

    void Await(std::size_t count) {
        std::unique_lock lock(lock_);
        changed_.wait(lock, [&] { return connected_ >= count; });
    }

private:
    std::mutex lock_;
    std::condition_variable changed_;
    std::size_t connected_ = 0;
};

std::vector<Device> ConnectAll(const std::vector<std::string>& addresses) {
    CountingObserver observer;
    std::vector<Device> devices;
    for (const std::string& address : addresses) {
        devices.push_back(ConnectAsync(address, observer));
    }
    observer.Await(addresses.size());
    for (const Device& device : devices) {
        device->RemoveConnectionObserver(&observer);
    }
    return devices;
}

/// Like the library: one thread for each conversation.
void ConnectAllRawOnThreads(const std::vector<std::string>& addresses) {
    std::vector<std::jthread> threads;
    for (const std::string& address : addresses) {
        threads.emplace_back([&address] {
            RawClient client(address);
            ConnectRaw(client);
        });
    }
}

/// Threads that have just ended may still be counted.
void AwaitThreads(std::size_t count) {
    for (int attempts = 0; attempts < 500 && ThreadCount() > count; ++attempts) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

struct Footprint {
    double kilobytes;
    double threads;
};

/// What the result of `start` costs this process for each of `count`, while it is alive.
template <class Start>
Footprint FootprintOf(std::size_t count, Start start) {
    const std::size_t memory = ProcessMemory();
    const std::size_t threads = ThreadCount();
    const auto started = start();
    AwaitThreads(threads + count);
    const auto each = static_cast<double>(count);
    return {.kilobytes = (static_cast<double>(ProcessMemory()) - static_cast<double>(memory)) / 1024 / each,
            .threads = (static_cast<double>(ThreadCount()) - static_cast<double>(threads)) / each};
}

/// Threads that do nothing until this object is destroyed.
class BareThreads {
public:
    explicit BareThreads(std::size_t count) {
        for (std::size_t started = 0; started < count; ++started) {
            threads_.emplace_back([this] {
                std::unique_lock lock(state_->lock);
                state_->changed.wait(lock, [this] { return state_->ending; });
            });
        }
    }
    BareThreads(BareThreads&&) = default;
    ~BareThreads() {
        {
            const std::lock_guard lock(state_->lock);
            state_->ending = true;
            state_->changed.notify_all();
        }
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }

private:
    struct State {
        std::mutex lock;
        std::condition_variable changed;
        bool ending = false;
    };
    std::unique_ptr<State> state_ = std::make_unique<State>();
    std::vector<std::thread> threads_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    const int count = NumberArgument(argumentCount, arguments, "--devices", 1000);
    const int rounds = NumberArgument(argumentCount, arguments, "--rounds", 21);
    ResultFile results(argumentCount, arguments);
    AllowManyDescriptors();
    AwaitDevice();
    std::vector<std::string> addresses;
    for (int number = 0; number < count; ++number) {
        addresses.push_back(DeviceAddress(number));
    }
    std::vector<double> library;
    std::vector<double> raw;
    std::vector<double> threads;
    Footprint bare{};
    Footprint device{};
    {
        const Console silent(nullDevice);
        Connect(addresses[0]);  // the one-time cost of a process's first connection is not counted
        bare = FootprintOf(addresses.size(), [&] { return BareThreads(addresses.size()); });
        device = FootprintOf(addresses.size(), [&] { return ConnectAll(addresses); });
        for (int round = 0; round < rounds; ++round) {
            raw.push_back(MicrosecondsOf([&] { ConnectAllRaw(addresses); }) / 1000);
            threads.push_back(MicrosecondsOf([&] { ConnectAllRawOnThreads(addresses); }) / 1000);
            std::vector<Device> connected;
            library.push_back(MicrosecondsOf([&] { connected = ConnectAll(addresses); }) / 1000);
        }
    }
    results.AddMedian("Devices/Raw", raw, "ms");
    results.AddMedian("Devices/RawThreads", threads, "ms");
    results.AddMedian("Devices/Library", library, "ms");
    results.Add("Devices/Library/kilobytes", device.kilobytes);
    results.Add("Devices/BareThread/kilobytes", bare.kilobytes);
    results.Add("Devices/Library/kilobytes above a bare thread", device.kilobytes - bare.kilobytes);
    results.Add("Devices/Library/threads", device.threads);
    return results.Write() ? 0 : 1;
}
