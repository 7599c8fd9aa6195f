// Runs a target on every file of the folders on the command line, so that fuzzing's findings are tested with every
// compiler, also without a fuzzer.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "fuzz/fuzz_target.h"

namespace {

namespace fs = std::filesystem;

/// The files in an order that does not depend on the file system. A missing folder counts as empty.
std::set<fs::path> FilesIn(const fs::path& folder) {
    std::set<fs::path> files;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) {
        if (entry.is_regular_file()) {
            files.insert(entry.path());
        }
    }
    return files;
}

std::string ContentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw fs::filesystem_error("cannot be read", path, std::make_error_code(std::errc::io_error));
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Prints the name before the run, since a crash could not print it.
void Replay(const fs::path& path) {
    const std::string content = ContentOf(path);
    std::printf("%s\n", path.string().c_str());
    std::fflush(stdout);
    TestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
}

}  // namespace

int main(int argumentCount, char** arguments) {
    std::size_t replayed = 0;
    try {
        for (int argument = 1; argument < argumentCount; ++argument) {
            for (const fs::path& path : FilesIn(arguments[argument])) {
                Replay(path);
                ++replayed;
            }
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "morquil-fuzz-replay: %s\n", error.what());
        return EXIT_FAILURE;
    }
    std::printf("%zu inputs replayed\n", replayed);
    return replayed > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
