// Secrets: hashes of passwords, and random texts.
#pragma once

#include <string>
#include <string_view>

namespace Morquil::Gateway {

/// How much time and memory a hash takes. `Least` is for tests.
enum class PasswordCost { Usual, Least };

inline constexpr std::size_t shortestPassword = 8;
inline constexpr std::size_t longestPassword = 1024;

/// An argon2id hash with its salt and cost, as text; empty if there is no memory for it.
/// Threads: any. Takes about 100 ms and 64 MiB.
std::string HashPassword(std::string_view password, PasswordCost cost);

/// Whether `hash` was made from `password`. An empty hash takes as long as any other and never fits, so that the time
/// does not tell which users exist. Threads: any. Takes about 100 ms and 64 MiB.
bool PasswordFits(const std::string& hash, std::string_view password, PasswordCost cost);

/// 256 random bits as 43 letters, digits, - and _.
std::string RandomSecret();
/// 64 random bits in hexadecimal: a name for something, not a secret.
std::string RandomName();

/// The hash of a text that is long and random already, in hexadecimal.
std::string HashSecret(std::string_view secret);

}  // namespace Morquil::Gateway
