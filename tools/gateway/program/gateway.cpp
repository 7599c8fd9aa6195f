#include "gateway/program/gateway.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "gateway/program/exposure.h"
#include "gateway/program/figures.h"
#include "gateway/text/log.h"
#include "gateway/web/panel_page.h"
#include "gateway/web/static_folder.h"

namespace Morquil::Gateway {
namespace {

constexpr auto drainLimit = std::chrono::milliseconds(1'500);
constexpr std::string_view bookFile = "fleet.json";
constexpr std::size_t mostHashing = 32;  // passwords that wait to be hashed, at 100 ms each
constexpr auto tickInterval = std::chrono::milliseconds(500);

}  // namespace

Gateway::Gateway(GatewaySettings settings)
    : settings_(std::move(settings)),
      hub_(context_),
      data_(settings_.folder),
      store_(MakeStoreSettings(context_, settings_.config.store, data_.Database())),
      recorder_(store_, hub_),
      fleet_(context_, recorder_),
      salvoFleet_(fleet_),
      hashing_(mostHashing),
      people_(
          MakePeopleSettings(context_, hashing_, store_, hub_, ExposureFault(settings_.config.server, true).empty())),
      salvos_(MakeSalvosSettings(salvoFleet_, store_, hub_)),
      services_{context_, settings_.config,
                fleet_,   hub_,
                book_,    settings_.folder.empty() ? std::string() : settings_.folder + "/" + std::string(bookFile),
                store_,   people_,
                salvos_,  metrics_},
      api_(services_),
      web_{context_, api_, hub_, settings_.config.server, [this](const Request& request) { return FileFor(request); }},
      server_(web_),
      signals_(context_),
      end_(context_),
      tick_(context_),
      service_(context_) {
    hub_.Show(fleet_);
    services_.reload = [this] { Reload(); };
}

Gateway::~Gateway() {
    fleet_.Stop();
}

std::string Gateway::Start() {
    // Each only if all before it are well.
    const std::function<std::string()> steps[] = {
        [this] { return LoadRecords(store_, data_.Database(), people_, salvos_); },
        [this] { return ExposureFault(settings_.config.server, people_.IsEmpty()); },
        [this] { return server_.LoadCertificate(); },
        [this] { return LoadBook(); },
        [this] { return server_.Listen(); },
    };
    for (const auto& step : steps) {
        if (std::string problem = step(); !problem.empty()) {
            return problem;
        }
    }
    fleet_.Become(book_.Entries());
    TickLater();
    service_.Ready(Status());
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

void Gateway::HandleSignals() {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        signals_.add(signal);
    }
    AwaitSignal();
}

void Gateway::Run() {
    context_.run();
}

void Gateway::RequestStop() {
    boost::asio::post(context_, [this] { Stop(); });
}

void Gateway::RequestReload(std::function<void()> done) {
    boost::asio::post(context_, [this, done = std::move(done)] {
        Reload();
        done();
    });
}

// Sessions and tokens end in time, and somebody who watches is not idle.
void Gateway::TickLater() {
    tick_.In(tickInterval, [this] {
        for (const std::string& credential : hub_.Readers()) {
            people_.Touch(credential);
        }
        people_.Tick();
        TickLater();
    });
}

std::optional<Response> Gateway::FileFor(const Request& request) {
    if (request.path == "/healthz") {
        return Health();
    }
    if (request.path == "/metrics") {
        return Figures();
    }
    return settings_.panelFolder.empty() ? PanelResponse(request) : ReadFromFolder(settings_.panelFolder, request);
}

Response Gateway::Health() const {
    std::size_t connected = 0;
    for (const auto& [name, device] : fleet_.All()) {
        connected += device->IsLive() ? 1U : 0U;
    }
    const StoreCondition database = store_.Condition();
    Json json = {{"status", isStopping_ ? "stopping" : "ok"},
                 {"devices", fleet_.All().size()},
                 {"connected", connected},
                 {"streams", hub_.Clients()},
                 {"database", NameOf(database.state)}};
    if (!database.sentence.empty()) {
        json["problem"] = database.sentence;
    }
    return JsonResponse(200, json);
}

Response Gateway::Figures() {
    UpdateMetrics(metrics_, fleet_, hub_, store_.Condition());
    Response response;
    response.contentType = metricsContentType;
    response.body = metrics_.Text();
    return response;
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
    if (signal == SIGHUP) {
        Reload();
    } else {
        Stop();
    }
}

std::string Gateway::Status() const {
    return std::to_string(fleet_.All().size()) + " devices, at " + Url();
}

// What is wrong leaves everything as it is; what is not named in the new configuration is disconnected, and nothing
// else.
void Gateway::Reload() {
    service_.Reloading();
    if (!settings_.configFile.empty()) {
        ConfigReading reading = ReadConfigFile(settings_.configFile);
        if (const auto* const faults = std::get_if<std::vector<ConfigFault>>(&reading)) {
            for (const ConfigFault& fault : *faults) {
                Log(LogLevel::Error, "configuration not reloaded", {{"fault", fault.In(settings_.configFile)}});
            }
        } else {
            book_.Configure(std::get<Config>(reading).devices);
            fleet_.Become(book_.Entries());
            Log(LogLevel::Info, "configuration reloaded", {{"devices", std::to_string(fleet_.All().size())}});
        }
    }
    if (const std::string problem = server_.LoadCertificate(); !problem.empty()) {
        Log(LogLevel::Error, "certificate not reloaded", {{"reason", problem}});
    }
    service_.Reloaded(Status());
}

void Gateway::Stop() {
    if (std::exchange(isStopping_, true)) {
        return;
    }
    Log(LogLevel::Info, "stopping");
    service_.Stopping();
    hub_.End({}, "the gateway is stopping");
    end_.In(drainLimit, [this] { context_.stop(); });
    server_.Drain([this] { context_.stop(); });
}

}  // namespace Morquil::Gateway
