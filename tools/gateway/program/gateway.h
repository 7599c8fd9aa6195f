// The gateway as a whole.
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <string>
#include <vector>

#include "gateway/api/api.h"
#include "gateway/api/fleet_recorder.h"
#include "gateway/api/fleet_salvos.h"
#include "gateway/program/records.h"
#include "gateway/program/service.h"
#include "gateway/web/server.h"

namespace Morquil::Gateway {

struct GatewaySettings {
    Config config;
    std::string configFile = {};  // to be read again; empty: there is none
    std::string folder = {};      // for what is kept; empty: nothing is
    std::string panelFolder = {};
};

/// Threads: one, the caller's.
class Gateway {
public:
    explicit Gateway(GatewaySettings settings);
    Gateway(const Gateway&) = delete;
    Gateway& operator=(const Gateway&) = delete;
    ~Gateway();

    /// Occupies its port and connects the fleet.
    /// Returns: why that is impossible; empty if all is well.
    std::string Start();
    /// "http://127.0.0.1:9880/"
    std::string Url() const;

    unsigned short Port() const { return server_.Port(); }

    /// SIGTERM and SIGINT end it, SIGHUP reads the configuration again.
    void HandleSignals();

    /// Serves until it is stopped: for at most two seconds after that.
    void Run();
    /// Threads: any.
    void RequestStop();
    /// What SIGHUP does; `done` is called afterwards, on the gateway's thread.
    /// Threads: any.
    void RequestReload(std::function<void()> done);

private:
    std::optional<Response> FileFor(const Request& request);
    Response Health() const;
    Response Figures();
    void TickLater();
    std::string LoadBook();
    void AwaitSignal();
    void OnSignal(int signal);
    void Reload();
    void Stop();
    std::string Status() const;

    GatewaySettings settings_;
    boost::asio::io_context context_{1};
    Hub hub_;
    DataFolder data_;
    Store store_;
    FleetRecorder recorder_;
    Fleet fleet_;
    FleetForSalvos salvoFleet_;
    FleetBook book_;
    Worker hashing_;
    People people_;
    Salvos salvos_;
    Metrics metrics_;
    Services services_;
    Api api_;
    WebContext web_;
    Server server_;
    boost::asio::signal_set signals_;
    Alarm end_;
    Alarm tick_;
    Service service_;
    bool isStopping_ = false;
};

}  // namespace Morquil::Gateway
