// The layers below the module: warmed up by a connection attempt, and with their discovery object created.
#include "MorquilEntry.h"
#include "tests/kit/leak_check/setup.h"
#include "tests/kit/loopback_peer.h"
#include "transport/make_comms.h"

namespace Morquil::Testing {

void WarmUp() {
    LoopbackListener listener;
    const std::unique_ptr<AbstractComms> comms = MakeComms();
    if (comms->Initialise() && comms->Open("127.0.0.1", listener.Port(), false)) {
        comms->WaitForConnect(2000);
        comms->Close();
    }
}

std::size_t IntentionallyKeptHandles() {
    return 0;
}

unsigned long LiveReferences() {
    return GetMorquilDiscoveryInstance_0000()->Release();
}

}  // namespace Morquil::Testing
