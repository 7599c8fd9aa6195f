// The gateway in this process, on a thread of its own and a free port.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "gateway/program/gateway.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/gateway/http_client.h"

namespace Morquil::Testing {

class RunningGateway {
public:
    using Adjust = std::function<void(Gateway::GatewaySettings&)>;

    /// With a device at each of the addresses: dev-1, dev-2, ...
    explicit RunningGateway(const std::vector<std::string>& addresses = {}, const Adjust& adjust = {});
    ~RunningGateway();
    RunningGateway(const RunningGateway&) = delete;
    RunningGateway& operator=(const RunningGateway&) = delete;

    std::uint16_t Port() const { return port_; }
    const TemporaryFolder& Folder() const { return folder_; }
    /// Ends it and starts it anew in the same folder.
    void Restart();
    /// Reads the configuration and the certificate again. Returns afterwards.
    void Reload();

    HttpAnswer Get(const std::string& path) const { return HttpClient(port_).Ask("GET", path); }
    HttpAnswer Send(const std::string& method, const std::string& path, const std::string& body,
                    const std::string& headers = {}) const {
        return HttpClient(port_).Ask(method, path, body, headers);
    }
    HttpAnswer Set(const std::string& device, const std::string& property, const Json& value,
                   const std::string& query = {}) const {
        return Send("PUT", "/api/v1/devices/" + device + "/properties/" + property + query,
                    Json{{"value", value}}.dump());
    }
    Json ValueOf(const std::string& device, const std::string& property) const {
        return Get("/api/v1/devices/" + device + "/properties/" + property).AsJson()["value"];
    }
    /// Waits until the device's link is in this state. Returns: the link, or null if it never was.
    Json AwaitLink(const std::string& device, const std::string& state) const;

private:
    void Start();
    void Stop();

    TemporaryFolder folder_;
    Gateway::GatewaySettings settings_;
    std::unique_ptr<Gateway::Gateway> gateway_;
    std::uint16_t port_ = 0;
    std::thread thread_;
};

}  // namespace Morquil::Testing
