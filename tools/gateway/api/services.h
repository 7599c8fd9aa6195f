// What the endpoints work on.
#pragma once

#include <boost/asio/io_context.hpp>
#include <functional>
#include <string>

#include "gateway/config/config.h"
#include "gateway/fleet/fleet.h"
#include "gateway/fleet/fleet_book.h"
#include "gateway/metrics/metrics.h"
#include "gateway/people/people.h"
#include "gateway/salvos/salvos.h"
#include "gateway/store/store.h"
#include "gateway/stream/hub.h"

namespace Morquil::Gateway {

struct Services {
    boost::asio::io_context& context;
    const Config& config;
    Fleet& fleet;
    Hub& hub;
    FleetBook& book;
    std::string bookPath;  // empty: edits are not kept
    Store& store;
    People& people;
    Salvos& salvos;
    Metrics& metrics;
    std::function<void()> reload = {};  // what SIGHUP does
};

}  // namespace Morquil::Gateway
