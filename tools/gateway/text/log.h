// One line per event: `time=... level=info event="device lost" device=cam-1`.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace Morquil::Gateway {

enum class LogLevel { Error, Warning, Info };

using LogFields = std::initializer_list<std::pair<std::string_view, std::string_view>>;

/// The line without its time: values with spaces or quotes are quoted, control characters are escaped.
std::string FormatLogLine(LogLevel level, std::string_view event, LogFields fields);

/// Writes one line to standard error. The system's journal adds the time itself.
/// Threads: any.
void Log(LogLevel level, std::string_view event, LogFields fields = {});

}  // namespace Morquil::Gateway
