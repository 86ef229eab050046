#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

namespace loom {

// Time of day. In a merged log it counts from the midnight of the first log's day and goes on beyond 24 hours.
struct sys_time {
  double seconds = 0.0;

  double toSecond() const { return seconds; }
  int hour() const { return static_cast<int>(Milliseconds() / 3'600'000); }
  int minute() const { return static_cast<int>(Milliseconds() / 60'000 % 60); }
  double second() const { return static_cast<double>(Milliseconds() % 60'000) / 1000.0; }

  // "hh:mm:ss.fff" to the nearest millisecond; texts of times below 100 hours compare like the times.
  std::string toString() const {
    const std::int64_t ms = Milliseconds();
    char text[40];
    const int length = std::snprintf(text, sizeof(text), "%02lld:%02d:%02d.%03d",
                                     static_cast<long long>(ms / 3'600'000), static_cast<int>(ms / 60'000 % 60),
                                     static_cast<int>(ms / 1000 % 60), static_cast<int>(ms % 1000));
    return std::string(text, static_cast<std::size_t>(length));
  }

  friend bool operator==(const sys_time&, const sys_time&) = default;

 private:
  // What is no time of day (negative, NaN, beyond 10,000 hours) counts as midnight.
  std::int64_t Milliseconds() const {
    return seconds >= 0.0 && seconds < 36'000'000.0 ? std::llround(seconds * 1000.0) : 0;
  }
};

}  // namespace loom
