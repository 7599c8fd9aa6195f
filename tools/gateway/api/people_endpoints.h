// Signing in and out; users and tokens.
#pragma once

#include "gateway/api/endpoint.h"

namespace Morquil::Gateway {

/// Needs no identity.
void SignIn(Services& services, const SharedRequest& request, const Reply& reply);
void SignOut(Services& services, const SharedRequest& request, const Reply& reply);
void SignOutEverywhere(Services& services, const SharedRequest& request, const Reply& reply);

void GetUsers(Services& services, const SharedRequest& request, const Reply& reply);
void AddUser(Services& services, const SharedRequest& request, const Reply& reply);
void EditUser(Services& services, const SharedRequest& request, const Reply& reply);
void RemoveUser(Services& services, const SharedRequest& request, const Reply& reply);

void GetTokens(Services& services, const SharedRequest& request, const Reply& reply);
void AddToken(Services& services, const SharedRequest& request, const Reply& reply);
void RevokeToken(Services& services, const SharedRequest& request, const Reply& reply);

}  // namespace Morquil::Gateway
