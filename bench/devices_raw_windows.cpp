#include <thread>

#include "bench/connection_texts.h"
#include "bench/devices_raw.h"
#include "bench/raw_client.h"

namespace Morquil::Bench {

// Nothing here waits for many sockets at once: one after the other.
void ConnectAllRaw(const std::vector<std::string>& addresses) {
    for (const std::string& address : addresses) {
        RawClient client(address);
        ConnectRaw(client);
    }
}

void AllowManyDescriptors() {}

}  // namespace Morquil::Bench
