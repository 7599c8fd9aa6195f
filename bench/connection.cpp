// How long connecting takes, compared with a raw client that has the same conversation.
//   --connects=NUMBER  how often each of the two connects
#include <optional>

#include "bench/connection_console.h"
#include "bench/connection_host.h"
#include "bench/connection_texts.h"
#include "bench/connection_times.h"
#include "bench/raw_client.h"
#include "bench/result_file.h"

using namespace Morquil::Bench;

int main(int argumentCount, char** arguments) {
    const int connects = NumberArgument(argumentCount, arguments, "--connects", 150);
    ResultFile results(argumentCount, arguments);
    std::vector<double> library;
    std::vector<double> raw;
    AwaitDevice();
    {
        const Console silent(nullDevice);
        for (int round = 0; round < connects; ++round) {
            const std::string address = DeviceAddress(round);
            std::optional<RawClient> client;
            raw.push_back(MicrosecondsOf([&] {
                client.emplace(address);
                ConnectRaw(*client);
            }));
            Device device;
            library.push_back(MicrosecondsOf([&] { device = Connect(address); }));
        }
    }
    results.AddMedian("Connect/RawClient", raw, "us");
    results.AddMedian("Connect/Library", library, "us");
    results.Add("Connect/Library/longest", Percentile(library, 100), "us");
    results.Add("Connect/RawClient/longest", Percentile(raw, 100), "us");
    return results.Write() ? 0 : 1;
}
