// From a setter to the device's answer in the mirror, compared with a raw client that sends and receives the same
// bytes.
//   --sets=NUMBER  how often each of the two does it
#include <cstddef>
#include <thread>

#include "bench/connection_console.h"
#include "bench/connection_host.h"
#include "bench/connection_texts.h"
#include "bench/connection_times.h"
#include "bench/raw_client.h"
#include "bench/result_file.h"
#include "protocol/blocks/video_proc_amp.h"
#include "protocol/table/message.h"

using namespace Morquil;
using namespace Morquil::Bench;

namespace {

std::string GainBlock(int gain) {
    VideoProcAmpChangeSet set;
    set.gain.Set(gain);
    return BlockText<VideoProcAmpChangeSet>(set);
}

void PingPong(RawClient& client, const std::string& block, std::size_t answerLength) {
    client.Send(block);
    client.Receive(answerLength);
}

void SetAndAwaitEcho(IMorquilVideoProcAmp& amplifier, int gain) {
    amplifier.SetGain(gain);
    for (int mirrored = gain + 1; mirrored != gain; amplifier.GetGain(&mirrored)) {
        std::this_thread::yield();
    }
}

/// The median of the 99th percentiles of successive stretches, so that a temporary load on the machine counts once.
double TypicalPercentile99(const std::vector<double>& times) {
    constexpr std::ptrdiff_t stretch = 250;
    std::vector<double> percentiles;
    for (auto from = times.begin(); times.end() - from >= stretch; from += stretch) {
        percentiles.push_back(Percentile({from, from + stretch}, 99));
    }
    return Percentile(percentiles, 50);
}

void AddResults(ResultFile& results, const std::string& name, const std::vector<double>& times) {
    results.AddMedian(name, times, "us");
    results.Add(name + "/p99", TypicalPercentile99(times), "us");
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const int sets = NumberArgument(argumentCount, arguments, "--sets", 5000);
    ResultFile results(argumentCount, arguments);
    std::vector<double> library;
    std::vector<double> raw;
    AwaitDevice();
    {
        const Console silent(nullDevice);
        RawClient client(DeviceAddress(0));
        client.Receive(ConnectConversation().greeting.size());
        const Device device = Connect(DeviceAddress(1));
        const auto amplifier = FeatureOf<IMorquilVideoProcAmp>(device, IID_IMorquilVideoProcAmp);
        for (int round = 0; round < sets; ++round) {
            const int gain = 10 + round % 2;
            const std::string block = GainBlock(gain);
            const std::size_t answerLength = EchoOf(block).size();
            raw.push_back(MicrosecondsOf([&] { PingPong(client, block, answerLength); }));
            library.push_back(MicrosecondsOf([&] { SetAndAwaitEcho(*amplifier.Get(), gain); }));
        }
    }
    AddResults(results, "Echo/PingPong", raw);
    AddResults(results, "Echo/Library", library);
    return results.Write() ? 0 : 1;
}
