#include "gateway/program/gateway.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "gateway/text/log.h"
#include "gateway/web/panel_page.h"
#include "gateway/web/static_folder.h"

namespace Morquil::Gateway {
namespace {

constexpr auto drainLimit = std::chrono::milliseconds(1'500);
constexpr std::string_view bookFile = "fleet.json";

}  // namespace

Gateway::Gateway(GatewaySettings settings)
    : settings_(std::move(settings)),
      hub_(context_),
      fleet_(context_, hub_),
      services_{context_, settings_.config,
                fleet_,   hub_,
                book_,    settings_.folder.empty() ? std::string() : settings_.folder + "/" + std::string(bookFile)},
      api_(services_),
      web_{context_, api_, hub_, settings_.config.server, [this](const Request& request) { return FileFor(request); }},
      server_(web_),
      signals_(context_),
      end_(context_) {
    hub_.Show(fleet_);
}

Gateway::~Gateway() {
    fleet_.Stop();
}

std::string Gateway::Start() {
    for (const std::string& problem : {server_.LoadCertificate(), LoadBook(), server_.Listen()}) {
        if (!problem.empty()) {
            return problem;
        }
    }
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        signals_.add(signal);
    }
    AwaitSignal();
    fleet_.Become(book_.Entries());
    return {};
}

std::string Gateway::LoadBook() {
    book_.Configure(settings_.config.devices);
    std::error_code error;
    if (services_.bookPath.empty() || !std::filesystem::exists(services_.bookPath, error)) {
        return {};
    }
    std::ifstream file(services_.bookPath, std::ios::binary);
    const std::string content((std::istreambuf_iterator<char>(file)), {});
    const std::string problem = book_.Load(content);
    return problem.empty() ? std::string() : services_.bookPath + " cannot be read: " + problem;
}

std::string Gateway::Url() const {
    const ServerConfig& server = settings_.config.server;
    const std::string host =
        server.address.find(':') == std::string::npos ? server.address : "[" + server.address + "]";
    return (server.IsSecure() ? "https://" : "http://") + host + ":" + std::to_string(server_.Port()) + "/";
}

void Gateway::Run() {
    context_.run();
}

std::optional<Response> Gateway::FileFor(const Request& request) const {
    if (request.path == "/healthz") {
        return Health();
    }
    return settings_.panelFolder.empty() ? PanelResponse(request) : ReadFromFolder(settings_.panelFolder, request);
}

Response Gateway::Health() const {
    std::size_t connected = 0;
    for (const auto& [name, device] : fleet_.All()) {
        connected += device->IsLive() ? 1U : 0U;
    }
    return JsonResponse(200, {{"status", isStopping_ ? "stopping" : "ok"},
                              {"devices", fleet_.All().size()},
                              {"connected", connected},
                              {"streams", hub_.Clients()}});
}

void Gateway::AwaitSignal() {
    signals_.async_wait([this](boost::system::error_code error, int signal) {
        if (!error) {
            AwaitSignal();
            OnSignal(signal);
        }
    });
}

void Gateway::OnSignal(int signal) {
    if (signal != SIGHUP) {
        Stop();
    }
}

void Gateway::Stop() {
    if (std::exchange(isStopping_, true)) {
        return;
    }
    Log(LogLevel::Info, "stopping");
    hub_.End({}, "the gateway is stopping");
    server_.Drain();
    end_.In(drainLimit, [this] { context_.stop(); });
}

}  // namespace Morquil::Gateway
