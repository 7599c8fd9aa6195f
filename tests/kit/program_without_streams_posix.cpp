#include <csignal>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "tests/kit/program_without_streams.h"

namespace Morquil::Testing {

ProgramWithoutStreams::ProgramWithoutStreams(const std::string& command) {
    FILE* const shell = popen(("exec 3>&1; " + command + " <&- >&- 2>&- 3>&- & echo $! >&3").c_str(), "re");
    if (shell != nullptr) {
        if (std::fscanf(shell, "%d", &process_) != 1) {
            process_ = -1;
        }
        pclose(shell);
    }
}

ProgramWithoutStreams::~ProgramWithoutStreams() {
    if (process_ > 0) {
        kill(process_, SIGKILL);
    }
}

std::string ProgramWithoutStreams::StandardDescriptors() const {
    std::string text;
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        std::error_code closed;
        const auto target = std::filesystem::read_symlink(
            "/proc/" + std::to_string(process_) + "/fd/" + std::to_string(descriptor), closed);
        text += (closed ? "closed" : target.string()) + " ";
    }
    return text;
}

}  // namespace Morquil::Testing
