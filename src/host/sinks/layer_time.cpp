#include "host/sinks/layer_time.h"

#include <cmath>

#include "platform/clock.h"
#include "platform/digits.h"

namespace loom {
namespace {

constexpr double kEarliest_s = -62167219200.0;  // start of the year 0
constexpr double kEnd_s = 253402300799.9995;    // end of the year 9999

char* PutTwo(int number, char* out) { return PutTwoDigits(static_cast<std::uint32_t>(number), out); }

char* Put(char c, char* out) {
  *out = c;
  return out + 1;
}

}  // namespace

char* PutUtc(double seconds_since_1970, char* out) {
  if (!(seconds_since_1970 >= kEarliest_s && seconds_since_1970 < kEnd_s)) return out;
  const std::int64_t total_ms = std::llround(seconds_since_1970 * 1000.0);
  const std::int64_t total_s = (total_ms >= 0 ? total_ms : total_ms - 999) / 1000;
  const LocalTime time = ClockTimeOf(total_s);
  out = Put('-', PutTwo(time.day.year % 100, PutTwo(time.day.year / 100, out)));
  out = Put('T', PutTwo(time.day.day, Put('-', PutTwo(time.day.month, out))));
  out = Put(':', PutTwo(time.hour, out));
  out = Put('.', PutTwo(time.second, Put(':', PutTwo(time.minute, out))));
  return Put('Z', PutThreeDigits(static_cast<std::uint32_t>(total_ms - total_s * 1000), out));
}

}  // namespace loom
