// A program that does not use the library's transport.
#include "tests/kit/leak_check/setup.h"

#include <memory>
#include <thread>

#include "tests/kit/loopback_peer.h"

namespace Morquil::Testing {

void WarmUp() {
    LoopbackListener listener;
    std::unique_ptr<LoopbackPeer> device;
    std::thread accepting([&] { device = listener.Accept(); });
    const std::unique_ptr<LoopbackPeer> host = listener.Connect();
    accepting.join();
    host->Send("!");
    device->Receive(1);
}

std::size_t IntentionallyKeptHandles() {
    return 0;
}

unsigned long LiveReferences() {
    return 0;
}

}  // namespace Morquil::Testing
