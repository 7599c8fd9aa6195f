//   morquil-bench-apply ADDRESS
// Sets a value through the C++ layer and waits until the device has confirmed it. Another program measures its own way
// in turn: for each line of standard input, which is a number, this one sets so many times, and prints the microseconds
// of each on one line.
#include <chrono>
#include <iostream>
#include <morquil.hpp>

int main(int, char** arguments) {
    const morquil::Apartment apartment;
    morquil::SilenceLibrary();
    const morquil::Device device = morquil::Connect(arguments[1]);
    const auto amp = device.VideoProcAmp();
    int gain = 0;
    for (int count = 0; std::cin >> count;) {
        for (int set = 0; set < count; ++set) {
            gain = (gain + 1) % 50;
            const auto start = std::chrono::steady_clock::now();
            if (!device.Apply([&] { amp.SetGain(gain); }).IsApplied()) {
                std::cerr << "the device has not confirmed the change\n";
                return 1;
            }
            const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
            std::cout << time.count() << ' ';
        }
        std::cout << std::endl;
    }
    return 0;
}
