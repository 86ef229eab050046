#pragma once

#include <ogr_api.h>

#include <string>

#include "components/dt_time.h"
#include "host/sinks/layer_time.h"

namespace loom {

// Times as fields. The texts of both kinds have their digits in the same places.
class GdalTime {
 public:
  explicit GdalTime(bool is_utc) : is_utc_(is_utc) {}

  std::string Text(double time_s) {
    char text[DateTimeText::kRoom];
    return std::string(text, is_utc_ ? PutUtc(time_s, text) : local_.Put(time_s, text));
  }

  // False for a time that has no text.
  bool Set(OGRFeatureH feature, int field, double time_s) {
    char text[DateTimeText::kRoom];
    const char* const end = is_utc_ ? PutUtc(time_s, text) : local_.Put(time_s, text);
    if (end - text < 23) return false;
    const auto number = [&](int from, int digits) {
      int value = 0;
      for (int at = from; at < from + digits; ++at) value = value * 10 + (text[at] - '0');
      return value;
    };
    const auto seconds = static_cast<float>(number(17, 2) + number(20, 3) / 1000.0);
    OGR_F_SetFieldDateTimeEx(feature, field, number(0, 4), number(5, 2), number(8, 2), number(11, 2), number(14, 2),
                             seconds, is_utc_ ? kUtcFlag : kNoZoneFlag);
    return true;
  }

  // Of a field that is set, as Text gives it.
  std::string Get(OGRFeatureH feature, int field) const {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int zone = 0;
    float second = 0;
    OGR_F_GetFieldAsDateTimeEx(feature, field, &year, &month, &day, &hour, &minute, &second, &zone);
    char text[80];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d%c%02d:%02d:%06.3f%s", year, month, day, is_utc_ ? 'T' : ' ', hour,
                  minute, static_cast<double>(second), is_utc_ ? "Z" : "");
    return text;
  }

 private:
  static constexpr int kUtcFlag = 100;
  static constexpr int kNoZoneFlag = 0;

  bool is_utc_;
  DateTimeText local_{127};
};

}  // namespace loom
