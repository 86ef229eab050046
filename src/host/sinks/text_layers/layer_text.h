#pragma once

#include <charconv>
#include <string>

#include "host/sinks/layer_time.h"

namespace loom {

// Appends "2010-03-05T08:15:30.250Z".
inline void AppendUtc(std::string& out, double time_s) {
  char text[kUtcTextBytes + 8];
  out.append(text, PutUtc(time_s, text));
}

inline void AppendNumber(std::string& out, double number) {
  char text[32];
  out.append(text, std::to_chars(text, text + sizeof text, number).ptr);
}

}  // namespace loom
