// What the program does besides serving.
#pragma once

#include <string>

#include "gateway/people/roles.h"

namespace Morquil::Gateway {

// They print what they did, or why they could not. Returns: the exit status.

/// Examines the chain of audit rows.
int VerifyAudit(const std::string& database);

/// Copies a database, which may be in use, to a new file.
int BackUpDatabase(const std::string& database, const std::string& file);

// For the first user, before the gateway is reachable; a gateway that is running would not notice.

/// Reads the password from standard input.
int AddUser(const std::string& database, const std::string& name, Role role);
/// Prints the token. `days`: until it expires; 0 for never.
int AddToken(const std::string& database, const std::string& name, Role role, unsigned days);

}  // namespace Morquil::Gateway
