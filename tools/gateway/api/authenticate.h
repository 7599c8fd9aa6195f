// Who sends a request.
#pragma once

#include <optional>

#include "gateway/api/request.h"
#include "gateway/api/response.h"
#include "gateway/people/people.h"

namespace Morquil::Gateway {

inline constexpr std::string_view sessionCookie = "morquil_session";

/// The session in the request's cookies; empty if there is none.
std::string_view SessionIn(const Request& request);

/// Fills in the identity, from a token ("Authorization: Bearer mqt_...") or a session.
/// Returns: the problem, if neither proves anything and one of them is needed.
std::optional<Response> Authenticate(People& people, Request& request);

}  // namespace Morquil::Gateway
