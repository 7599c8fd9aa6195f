#include "simulated_device.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

namespace {

#ifdef _WIN32
std::FILE* StartCommand(const std::string& command) {
    return _popen(command.c_str(), "r");
}
void WaitForCommand(std::FILE* output) {
    _pclose(output);
}
#else
std::FILE* StartCommand(const std::string& command) {
    return popen(command.c_str(), "r");
}
void WaitForCommand(std::FILE* output) {
    pclose(output);
}
#endif

/// Hosts always connect to port 9800, but all of 127.0.0.0/8 is this machine: each test has its own address, so that
/// tests can run in parallel.
std::string AnyLoopbackAddress() {
    std::random_device random;
    std::string address = "127";
    for (int i = 0; i < 3; ++i) {
        address += "." + std::to_string(2 + random() % 250);
    }
    return address;
}

}  // namespace

SimulatedDevice::SimulatedDevice(const std::string& script)
    : address_(AnyLoopbackAddress()),
      scriptFile_((std::filesystem::temp_directory_path() / ("device-" + address_ + ".txt")).string()) {
    std::ofstream(scriptFile_) << script;
    // Commands also come from standard input: this one ends the device whatever the test does.
    output_ =
        StartCommand("echo at 30 s quit| morquil-sim --address " + address_ + " --script \"" + scriptFile_ + "\"");
    // Its first line says that it listens. No line means: no morquil-sim in the PATH, or an error in the script.
    char line[128] = "";
    if (output_ == nullptr || std::fgets(line, sizeof line, output_) == nullptr) {
        throw std::runtime_error("morquil-sim could not be started");
    }
}

SimulatedDevice::~SimulatedDevice() {
    char rest[512];
    while (std::fgets(rest, sizeof rest, output_) != nullptr) {
    }
    WaitForCommand(output_);
    std::filesystem::remove(scriptFile_);
}
