// A program that writes to a store until it is killed. It prints the number of the last row that is in the file.
//   morquil-killed-writer DATABASE
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>

#include "gateway/store/store.h"

namespace {

void Print(int number) {
    const std::string line = std::to_string(number) + "\n";
    // The test has ended, so the pipe has no reader.
    if (write(STDOUT_FILENO, line.data(), line.size()) < 0) {
        _exit(1);
    }
}

}  // namespace

int main(int, char** arguments) {
    std::atomic<int> written = 0;
    Morquil::Gateway::Store store({.path = arguments[1], .post = [](const std::function<void()>& f) { f(); }});
    for (int number = 1;; ++number) {
        store.Add(Morquil::Gateway::Change{.time = Morquil::Gateway::Now(),
                                           .device = "cam-" + std::to_string(number % 10),
                                           .property = "output.mode",
                                           .newValue = std::to_string(number)});
        store.Add(Morquil::Gateway::Attempt{.time = Morquil::Gateway::Now(), .value = std::to_string(number)});
        store.Put("numbers", "last", std::to_string(number));
        if (number % 10 != 0) {
            continue;
        }
        store.Flush([&written, number](bool isWritten) {
            if (isWritten) {
                Print(number);
                written.store(number);
                written.notify_all();
            }
        });
        for (int last = written.load(); number - last > 500; last = written.load()) {  // they fit into one transaction
            written.wait(last);
        }
    }
}
