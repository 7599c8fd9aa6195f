#include "gateway/people/passwords.h"

#include <sodium.h>

#include <array>

namespace Morquil::Gateway {
namespace {

struct Cost {
    unsigned long long operations;
    std::size_t memory;
};

Cost CostOf(PasswordCost cost) {
    return cost == PasswordCost::Usual ? Cost{crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE}
                                       : Cost{crypto_pwhash_OPSLIMIT_MIN, crypto_pwhash_MEMLIMIT_MIN};
}

template <std::size_t count>
std::array<unsigned char, count> RandomBytes() {
    std::array<unsigned char, count> bytes{};
    randombytes_buf(bytes.data(), bytes.size());
    return bytes;
}

template <std::size_t count>
std::string ToHexText(const std::array<unsigned char, count>& bytes) {
    std::array<char, 2 * count + 1> text{};
    sodium_bin2hex(text.data(), text.size(), bytes.data(), bytes.size());
    return text.data();
}

}  // namespace

std::string HashPassword(std::string_view password, PasswordCost cost) {
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    const auto [operations, memory] = CostOf(cost);
    const bool isMade = crypto_pwhash_str_alg(hash.data(), password.data(), password.size(), operations, memory,
                                              crypto_pwhash_ALG_ARGON2ID13) == 0;
    return isMade ? hash.data() : std::string();
}

bool PasswordFits(const std::string& hash, std::string_view password, PasswordCost cost) {
    if (hash.empty()) {
        HashPassword(password, cost);
        return false;
    }
    return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

std::string RandomSecret() {
    constexpr int form = sodium_base64_VARIANT_URLSAFE_NO_PADDING;
    const auto bytes = RandomBytes<32>();
    std::array<char, sodium_base64_ENCODED_LEN(32, form)> text{};
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), form);
    return text.data();
}

std::string RandomName() {
    return ToHexText(RandomBytes<8>());
}

std::string HashSecret(std::string_view secret) {
    std::array<unsigned char, crypto_generichash_BYTES> hash{};
    crypto_generichash(hash.data(), hash.size(), reinterpret_cast<const unsigned char*>(secret.data()), secret.size(),
                       nullptr, 0);
    return ToHexText(hash);
}

}  // namespace Morquil::Gateway
