// How long the system takes to load the library, compared with a library of C code that imports the same functions.
//   --loads=NUMBER  how often each of the two is loaded
#include <windows.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "bench/connection_times.h"
#include "bench/result_file.h"

using namespace Morquil::Bench;

namespace {

std::string InProgramFolder(const std::string& name) {
    std::string path(MAX_PATH, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), MAX_PATH));
    return path.substr(0, path.find_last_of('\\') + 1) + name;
}

double LoadingTime(const std::string& path) {
    HMODULE library = nullptr;
    const double time = MicrosecondsOf([&] { library = LoadLibraryA(path.c_str()); });
    if (library == nullptr) {
        std::cerr << path << " cannot be loaded\n";
        std::exit(1);
    }
    FreeLibrary(library);
    return time;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const int loads = NumberArgument(argumentCount, arguments, "--loads", 101);
    ResultFile results(argumentCount, arguments);
    const std::string library = InProgramFolder(MORQUIL_STRIPPED_LIBRARY);
    const std::string plain = InProgramFolder(MORQUIL_PLAIN_LIBRARY);
    std::vector<double> libraryTimes;
    std::vector<double> plainTimes;
    for (int round = 0; round < loads; ++round) {
        plainTimes.push_back(LoadingTime(plain));
        libraryTimes.push_back(LoadingTime(library));
    }
    results.AddMedian("Load/PlainLibrary", plainTimes, "us");
    results.AddMedian("Load/Library", libraryTimes, "us");
    return results.Write() ? 0 : 1;
}
