#include <chrono>

#include "bench/contest.h"
#include "bench/result_file.h"

namespace Morquil::Bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 401;
/// Shorter than the scheduler's time slice: most turns are not interrupted.
constexpr std::chrono::milliseconds turn{1};

double NanosecondsOf(const Contestant& contestant, int repetitions) {
    const Clock::time_point start = Clock::now();
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        contestant.work();
    }
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

/// How often to repeat the work so that the clock's resolution does not matter.
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
    // In turn, round after round: a temporary load on the machine affects all of them.
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
