#include "features/network_config.h"

using namespace Morquil;
using Settings = NetworkConfigChangeSet;

// In bytes of UTF-8, including the terminating zero.
static constexpr std::size_t friendlyNameLimit = 1024;

CMorquilNetworkConfig::CMorquilNetworkConfig(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilNetworkConfig, morquilNetworkConfigPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilNetworkConfig::GetFriendlyName(BSTR* name) { return ReadText(name, &Settings::friendlyName); }
STDMETHODIMP CMorquilNetworkConfig::SetFriendlyName(BSTR name) { return SendText(&Settings::friendlyName, name, friendlyNameLimit); }
STDMETHODIMP CMorquilNetworkConfig::GetDHCPEnabled(LONG* enabled) { return Read(enabled, &Settings::dhcpEnabled); }
STDMETHODIMP CMorquilNetworkConfig::GetIPAddress(unsigned int* address) { return Read(address, &Settings::ipAddress); }
STDMETHODIMP CMorquilNetworkConfig::GetGateway(unsigned int* address) { return Read(address, &Settings::gateway); }
STDMETHODIMP CMorquilNetworkConfig::GetSubnet(unsigned int* mask) { return Read(mask, &Settings::subnet); }
// clang-format on
