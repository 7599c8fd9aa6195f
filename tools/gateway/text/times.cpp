#include "gateway/text/times.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace Morquil::Gateway {

std::string FormatTime(WallTime time) {
    using namespace std::chrono;
    const auto milliseconds = duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
    const auto seconds = static_cast<std::time_t>((milliseconds - ((milliseconds % 1000) + 1000) % 1000) / 1000);
    std::tm parts = {};
    gmtime_r(&seconds, &parts);
    char text[80];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", parts.tm_year + 1900, parts.tm_mon + 1,
                  parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                  static_cast<int>(((milliseconds % 1000) + 1000) % 1000));
    return text;
}

double SecondsSince(WallTime then) {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(WallClock::now() - then).count();
    return static_cast<double>(std::max<std::int64_t>(milliseconds, 0)) / 1000;
}

}  // namespace Morquil::Gateway
