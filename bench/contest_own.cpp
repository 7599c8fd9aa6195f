#include <chrono>

#include "bench/contest.h"
#include "bench/result_file.h"

namespace Morquil::Bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 401;
/// Shorter than what a system gives a program at a time: most turns are not disturbed at all.
constexpr std::chrono::milliseconds turn{1};

double NanosecondsOf(const Contestant& contestant, int repetitions) {
    const Clock::time_point start = Clock::now();
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        contestant.work();
    }
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

/// How often the work is to be repeated so that the clock's own steps do not matter.
int RepetitionsOf(const Contestant& contestant) {
    const double enough = std::chrono::duration<double, std::nano>(turn).count();
    int repetitions = 1;
    while (NanosecondsOf(contestant, repetitions) < enough) {
        repetitions *= 2;
    }
    return repetitions;
}

}  // namespace

int Measure(int argumentCount, char** arguments, const std::vector<Contestant>& contestants) {
    ResultFile results(argumentCount, arguments);
    std::vector<int> repetitions;
    for (const Contestant& contestant : contestants) {
        repetitions.push_back(RepetitionsOf(contestant));
    }
    // In turn, round after round: what disturbs the machine for a while disturbs all of them.
    std::vector<std::vector<double>> times(contestants.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t at = 0; at < contestants.size(); ++at) {
            times[at].push_back(NanosecondsOf(contestants[at], repetitions[at]) / repetitions[at]);
        }
    }
    for (std::size_t at = 0; at < contestants.size(); ++at) {
        results.AddMedian(contestants[at].name, times[at], "ns");
    }
    return results.Write() ? 0 : 1;
}

}  // namespace Morquil::Bench
