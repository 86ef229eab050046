#include "platform/log.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "platform/encoding.h"

namespace loom {
namespace {

LogSink& CurrentSink() {
  static LogSink sink;
  return sink;
}

std::FILE* OpenDefaultLog() {
  const char* const target = std::getenv("QLOOM_LOG");
  if (!target || !*target) return nullptr;
  if (std::string_view(target) == "stderr") return stderr;
  std::FILE* const file = std::fopen(target, "a");
  if (!file) std::fprintf(stderr, "cannot open the log file %s, logging here\n", target);
  return file ? file : stderr;
}

void WriteDefault(LogLevel level, std::string_view utf8) {
  static std::FILE* const file = OpenDefaultLog();
  if (!file) return;
  std::fprintf(file, "%s: %.*s\n", LogLevelName(level), static_cast<int>(utf8.size()), utf8.data());
  std::fflush(file);
}

}  // namespace

const char* LogLevelName(LogLevel level) {
  constexpr const char* kNames[] = {"debug", "info", "warning", "error"};
  return kNames[static_cast<int>(level)];
}

void Log(LogLevel level, std::string_view utf8) {
  const std::string text = WithCharacters(utf8);
  if (CurrentSink())
    CurrentSink()(level, text);
  else
    WriteDefault(level, text);
}

LogSink SetLogSink(LogSink sink) { return std::exchange(CurrentSink(), std::move(sink)); }

}  // namespace loom
