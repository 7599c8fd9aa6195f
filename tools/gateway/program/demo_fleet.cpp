#include "gateway/program/demo_fleet.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

#include "gateway/fleet/probe.h"

namespace Morquil::Gateway {
namespace {

constexpr unsigned firstNetwork = 77;
constexpr unsigned lastNetwork = 126;

std::string AddressIn(unsigned network, unsigned device) {
    return "127." + std::to_string(network) + ".0." + std::to_string(device);
}

/// Whether a device listens at the address.
bool Listens(const std::string& address) {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in name = {};
    name.sin_family = AF_INET;
    name.sin_port = htons(devicePort);
    ::inet_pton(AF_INET, address.c_str(), &name.sin_addr);
    const bool isConnected = ::connect(socket, reinterpret_cast<const sockaddr*>(&name), sizeof name) == 0;
    ::close(socket);
    return isConnected;
}

/// Next to this program: installed, or in a build folder. Otherwise its name, to be looked up.
std::string FindSimulator() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* const place : {"morquil-sim", "../simulator/morquil-sim"}) {
        if (std::filesystem::exists(folder / place, error)) {
            return folder / place;
        }
    }
    return "morquil-sim";
}

/// In the new process: becomes the simulator.
[[noreturn]] void BecomeSimulator(const std::string& program, const std::string& address, const std::string& devices) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(nothing, STDOUT_FILENO);
    ::execlp(program.c_str(), program.c_str(), "--address", address.c_str(), "--devices", devices.c_str(), "--model",
             "Demo Converter", static_cast<char*>(nullptr));
    ::_exit(127);
}

}  // namespace

DemoFleet::~DemoFleet() {
    if (process_ > 0) {
        ::kill(process_, SIGTERM);
        ::waitpid(process_, nullptr, 0);
    }
}

std::string DemoFleet::Start(unsigned devices) {
    devices_ = devices;
    network_ = firstNetwork;
    while (network_ <= lastNetwork && Listens(AddressIn(network_, 1))) {
        ++network_;
    }
    if (network_ > lastNetwork) {
        return "no loopback addresses are free for simulated devices";
    }
    const std::string program = FindSimulator();
    const std::string address = AddressIn(network_, 1);
    const std::string number = std::to_string(devices);
    process_ = ::fork();
    if (process_ == 0) {
        BecomeSimulator(program, address, number);
    }
    if (process_ < 0) {
        return std::string("no simulated devices: ") + std::strerror(errno);
    }
    return AwaitDevices() ? std::string() : "no simulated devices: morquil-sim cannot be started; install it";
}

bool DemoFleet::AwaitDevices() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!Listens(AddressIn(network_, devices_))) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        if (::waitpid(process_, nullptr, WNOHANG) != 0) {
            process_ = -1;
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

std::vector<DeviceEntry> DemoFleet::Entries() const {
    static constexpr std::array rooms{"Studio A", "Studio B", "Master control", "Outside broadcast"};
    std::vector<DeviceEntry> entries;
    for (unsigned device = 1; device <= devices_; ++device) {
        DeviceEntry entry;
        entry.name = "converter-" + std::to_string(device);
        entry.label = "Converter " + std::to_string(device);
        entry.address = AddressIn(network_, device);
        entry.room = rooms[(device - 1) * rooms.size() / devices_];
        entry.tags = {"demo"};
        entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace Morquil::Gateway
