#include "gateway/store/audit_chain.h"

#include <sodium.h>

namespace Morquil::Gateway {
namespace {

/// Every field is preceded by its length, so that no text can pass for two.
class Hasher {
public:
    Hasher() { crypto_generichash_init(&state_, nullptr, 0, std::tuple_size_v<Hash>); }

    void Add(std::int64_t number) {
        std::array<unsigned char, 8> bytes{};
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<unsigned char>(static_cast<std::uint64_t>(number) >> (8 * i));
        }
        Add(bytes.data(), bytes.size());
    }
    void Add(const std::string& text) {
        Add(static_cast<std::int64_t>(text.size()));
        Add(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }
    void Add(const unsigned char* bytes, std::size_t count) { crypto_generichash_update(&state_, bytes, count); }

    Hash Final() {
        Hash hash{};
        crypto_generichash_final(&state_, hash.data(), hash.size());
        return hash;
    }

private:
    crypto_generichash_state state_{};
};

}  // namespace

Hash ChainHash(const Attempt& attempt, const Hash& previous) {
    Hasher hasher;
    hasher.Add(previous.data(), previous.size());
    hasher.Add(attempt.id);
    hasher.Add(attempt.time.time_since_epoch().count());
    for (const std::string* text : {&attempt.who, &attempt.address, &attempt.device, &attempt.property, &attempt.value,
                                    &attempt.outcome, &attempt.requestId}) {
        hasher.Add(*text);
    }
    hasher.Add(std::int64_t{attempt.status});
    return hasher.Final();
}

std::string ToHex(const Hash& hash) {
    std::string text(2 * hash.size() + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), hash.data(), hash.size());
    text.pop_back();
    return text;
}

}  // namespace Morquil::Gateway
