#pragma once

#include <cstdint>

namespace Morquil {

/// A system's socket: a file descriptor, or a SOCKET on Windows.
using SocketHandle = std::intptr_t;

inline constexpr SocketHandle invalidSocket = -1;

}  // namespace Morquil
