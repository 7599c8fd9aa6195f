// How the devices of one program differ. They are numbered from 1 on; a device on its own is exactly what the options
// say.
#pragma once

#include <asio.hpp>

#include "simulator/program/options.h"

namespace Morquil::Simulator {

/// Model name and friendly name end with the device's number, and the IP address is that at which it listens.
DeviceIdentity IdentityOf(const Options& options, unsigned number);

/// Each device has random faults of its own.
Faults FaultsOf(const Options& options, unsigned number);

/// Whether there are enough addresses from the first one on.
bool HasAddresses(const Options& options);

/// The first device's address is the one in the options, and each other device has the address after the one before it.
asio::ip::address AddressOf(const Options& options, unsigned number, asio::error_code& error);

}  // namespace Morquil::Simulator
