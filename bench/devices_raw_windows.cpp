#include <thread>

#include "bench/connection_texts.h"
#include "bench/devices_raw.h"
#include "bench/raw_client.h"

namespace Morquil::Bench {

// One after the other: there is no epoll here.
void ConnectAllRaw(const std::vector<std::string>& addresses) {
    for (const std::string& address : addresses) {
        RawClient client(address);
        ConnectRaw(client);
    }
}

void AllowManyDescriptors() {}

}  // namespace Morquil::Bench
