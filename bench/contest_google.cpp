#include <benchmark/benchmark.h>

#include "bench/contest.h"

namespace Morquil::Bench {

int Measure(int argumentCount, char** arguments, const std::vector<Contestant>& contestants) {
    benchmark::Initialize(&argumentCount, arguments);
    for (const Contestant& contestant : contestants) {
        benchmark::RegisterBenchmark(contestant.name.c_str(), [&contestant](benchmark::State& state) {
            for (auto iteration : state) {
                contestant.work();
            }
        });
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace Morquil::Bench
