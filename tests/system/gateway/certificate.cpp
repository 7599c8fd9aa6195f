#include "tests/system/gateway/certificate.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <memory>

namespace Morquil::Testing {
namespace {

std::string TextOf(BIO* memory) {
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(memory, &bytes);
    std::string text(bytes, static_cast<std::size_t>(size));
    BIO_free(memory);
    return text;
}

}  // namespace

Certificate MakeCertificate(const std::string& name) {
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), &X509_free);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -60);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3'600);
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME* const subject = X509_get_subject_name(certificate.get());
    X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>(name.c_str()), -1,
                               -1, 0);
    X509_set_issuer_name(certificate.get(), subject);
    X509_sign(certificate.get(), key.get(), EVP_sha256());
    BIO* const certificateText = BIO_new(BIO_s_mem());
    PEM_write_bio_X509(certificateText, certificate.get());
    BIO* const keyText = BIO_new(BIO_s_mem());
    PEM_write_bio_PrivateKey(keyText, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    return {TextOf(certificateText), TextOf(keyText)};
}

}  // namespace Morquil::Testing
