// Salvos and their runs.
#pragma once

#include "gateway/api/endpoint.h"

namespace Morquil::Gateway {

void GetSalvos(Services& services, const SharedRequest& request, const Reply& reply);
void GetSalvo(Services& services, const SharedRequest& request, const Reply& reply);
void AddSalvo(Services& services, const SharedRequest& request, const Reply& reply);
void ReplaceSalvo(Services& services, const SharedRequest& request, const Reply& reply);
void RemoveSalvo(Services& services, const SharedRequest& request, const Reply& reply);
void CaptureSalvo(Services& services, const SharedRequest& request, const Reply& reply);
void RunSalvo(Services& services, const SharedRequest& request, const Reply& reply);
void GetRun(Services& services, const SharedRequest& request, const Reply& reply);
void RollBackRun(Services& services, const SharedRequest& request, const Reply& reply);

}  // namespace Morquil::Gateway
