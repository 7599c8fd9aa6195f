// What requests leave in the audit and in the metrics.
#pragma once

#include <chrono>

#include "gateway/api/request.h"
#include "gateway/api/response.h"
#include "gateway/api/services.h"
#include "gateway/api/setting.h"

namespace Morquil::Gateway {

class Stopwatch {
public:
    std::chrono::duration<double> Elapsed() const { return std::chrono::steady_clock::now() - start_; }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// Records a request that wanted to change something.
void RecordAttempts(Services& services, const Request& request, const Response& response,
                    std::chrono::duration<double> took);

/// Records a command that came in a stream, which `request` opened.
void RecordCommand(Services& services, const Request& request, const Wish& wish, const WishResult& result,
                   std::chrono::duration<double> took);

}  // namespace Morquil::Gateway
