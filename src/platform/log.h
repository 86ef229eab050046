#pragma once

#include <functional>
#include <string_view>

namespace loom {

enum class LogLevel { kDebug, kInfo, kWarning, kError };
const char* LogLevelName(LogLevel level);

// Where errors go for which no message is prescribed. `utf8` is one line without its end.
// Without a sink the environment variable QLOOM_LOG decides: unset or empty nothing is written, "stderr" writes there,
// anything else is the file that lines are appended to.
void Log(LogLevel level, std::string_view utf8);

using LogSink = std::function<void(LogLevel, std::string_view)>;
// Returns the sink that it replaces; an empty one restores the default.
LogSink SetLogSink(LogSink sink);

}  // namespace loom
