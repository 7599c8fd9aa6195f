// Encrypted connections.
#include <gtest/gtest.h>
#include <openssl/ssl.h>

#include <boost/asio.hpp>
#include <boost/asio/ssl.hpp>
#include <fstream>

#include "tests/system/gateway/certificate.h"
#include "tests/system/gateway/running_gateway.h"

namespace Morquil::Testing {
namespace {

namespace asio = boost::asio;

/// A connection that does not check the certificate, but shows its name.
class SecureClient {
public:
    explicit SecureClient(std::uint16_t port) {
        stream_.next_layer().connect({asio::ip::address_v4::loopback(), port});
        stream_.handshake(asio::ssl::stream_base::client);
    }

    std::string NameOfServer() {
        X509* const certificate = SSL_get1_peer_certificate(stream_.native_handle());
        char name[100] = {};
        X509_NAME_get_text_by_NID(X509_get_subject_name(certificate), NID_commonName, name, sizeof name);
        X509_free(certificate);
        return name;
    }
    /// The first line of the answer.
    std::string Ask(const std::string& path) {
        asio::write(stream_, asio::buffer("GET " + path + " HTTP/1.1\r\nHost: localhost\r\n\r\n"));
        std::string answer;
        asio::read_until(stream_, asio::dynamic_buffer(answer), "\r\n\r\n");
        const std::size_t length = answer.find("Content-Length: ");
        const std::size_t head = answer.find("\r\n\r\n") + 4;
        const std::size_t size = head + static_cast<std::size_t>(std::atoi(answer.c_str() + length + 16));
        if (answer.size() < size) {
            asio::read(stream_, asio::dynamic_buffer(answer), asio::transfer_exactly(size - answer.size()));
        }
        return answer.substr(0, answer.find("\r\n"));
    }

private:
    asio::io_context context_;
    asio::ssl::context security_{asio::ssl::context::tls_client};
    asio::ssl::stream<asio::ip::tcp::socket> stream_{context_, security_};
};

class GatewaySecurity : public testing::Test {
protected:
    void Save(const std::string& name) {
        const Certificate made = MakeCertificate(name);
        std::ofstream(folder.PathOf("c.pem")) << made.certificate;
        std::ofstream(folder.PathOf("k.pem")) << made.key;
    }
    RunningGateway::Adjust WithCertificate() {
        return [this](Gateway::GatewaySettings& settings) {
            settings.config.server.certificate = folder.PathOf("c.pem");
            settings.config.server.key = folder.PathOf("k.pem");
        };
    }

    TemporaryFolder folder;
};

TEST_F(GatewaySecurity, ServesRequestsOverAnEncryptedConnection) {
    Save("one");
    const RunningGateway gateway({}, WithCertificate());
    SecureClient client(gateway.Port());
    EXPECT_EQ(client.NameOfServer(), "one");
    EXPECT_EQ(client.Ask("/healthz"), "HTTP/1.1 200 OK");
    EXPECT_EQ(client.Ask("/api/v1/devices"), "HTTP/1.1 200 OK");
}

TEST_F(GatewaySecurity, TakesANewCertificateWithoutDroppingConnections) {
    Save("one");
    RunningGateway gateway({}, WithCertificate());
    SecureClient early(gateway.Port());
    EXPECT_EQ(early.Ask("/healthz"), "HTTP/1.1 200 OK");
    Save("two");
    gateway.Reload();
    SecureClient late(gateway.Port());
    EXPECT_EQ(late.NameOfServer(), "two");
    EXPECT_EQ(early.Ask("/healthz"), "HTTP/1.1 200 OK");
}

TEST_F(GatewaySecurity, KeepsItsCertificateWhenTheNewOneIsFaulty) {
    Save("one");
    RunningGateway gateway({}, WithCertificate());
    std::ofstream(folder.PathOf("c.pem")) << "nonsense";
    gateway.Reload();
    SecureClient client(gateway.Port());
    EXPECT_EQ(client.NameOfServer(), "one");
}

TEST_F(GatewaySecurity, ClosesAConnectionThatIsNotEncrypted) {
    Save("one");
    const RunningGateway gateway({}, WithCertificate());
    HttpClient client(gateway.Port());
    EXPECT_EQ(client.Ask("GET", "/healthz").status, 0);
    SecureClient secure(gateway.Port());
    EXPECT_EQ(secure.Ask("/healthz"), "HTTP/1.1 200 OK");
}

}  // namespace
}  // namespace Morquil::Testing
