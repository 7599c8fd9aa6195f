// The endpoints' common form, and one declaration for each.
#pragma once

#include <memory>

#include "gateway/api/request.h"
#include "gateway/api/response.h"
#include "gateway/api/services.h"

namespace Morquil::Gateway {

/// Shared, because an answer may come long after the request.
using SharedRequest = std::shared_ptr<const Request>;
using Endpoint = void (*)(Services& services, const SharedRequest& request, const Reply& reply);

/// The device that the path names.
/// Returns: null after it has answered that there is none, or none that the caller may see.
FleetDevice* FindDevice(const Services& services, const Request& request, const Reply& reply);
/// The property that the path names. The same.
const Property* FindProperty(const Request& request, const Reply& reply);

/// The body as JSON.
/// Returns: nothing after it has answered that the body is no JSON.
std::optional<Json> ReadBody(const Request& request, const Reply& reply);

// Who asks, and what there is to set.
void GetMe(Services& services, const SharedRequest& request, const Reply& reply);
void GetProperties(Services& services, const SharedRequest& request, const Reply& reply);
void GetOpenApi(Services& services, const SharedRequest& request, const Reply& reply);

/// Reads the configuration and the certificate again.
void ReloadConfig(Services& services, const SharedRequest& request, const Reply& reply);

// Devices.
void GetDevices(Services& services, const SharedRequest& request, const Reply& reply);
void GetDevice(Services& services, const SharedRequest& request, const Reply& reply);
void AddDevice(Services& services, const SharedRequest& request, const Reply& reply);
void EditDevice(Services& services, const SharedRequest& request, const Reply& reply);
void RemoveDevice(Services& services, const SharedRequest& request, const Reply& reply);
void ProbeAddress(Services& services, const SharedRequest& request, const Reply& reply);

// Values.
void GetDeviceProperties(Services& services, const SharedRequest& request, const Reply& reply);
void GetDeviceProperty(Services& services, const SharedRequest& request, const Reply& reply);
void SetDeviceProperty(Services& services, const SharedRequest& request, const Reply& reply);
void SetDeviceProperties(Services& services, const SharedRequest& request, const Reply& reply);

}  // namespace Morquil::Gateway
