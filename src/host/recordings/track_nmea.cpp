#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>

#include "host/logstore/log_header.h"
#include "host/recordings/track.h"
#include "platform/number.h"
#include "platform/time_units.h"

// NMEA 0183: RMC sentences tell day, time and position, GGA sentences time and position of the day of the last RMC.
namespace loom::recordings {
namespace {

constexpr std::size_t kFields = 12;

using Fields = std::array<std::string_view, kFields>;

// "4807.038" and "N": degrees and minutes.
std::optional<double> Angle(std::string_view text, std::string_view side, std::size_t degree_digits) {
  if (text.size() < degree_digits + 2 || side.size() != 1) return std::nullopt;
  const auto degrees = ParseInt<int>(text.substr(0, degree_digits));
  const auto minutes = ParseDouble(text.substr(degree_digits));
  if (!degrees || !minutes || !(*minutes >= 0.0) || *minutes >= 60.0) return std::nullopt;
  const double angle = *degrees + *minutes / 60.0;
  return side == "S" || side == "W" ? -angle : angle;
}

// "hhmmss.sss" from midnight.
std::optional<std::int64_t> TimeOfDay_ns(std::string_view text) {
  if (text.size() < 6) return std::nullopt;
  const auto hours = ParseInt<int>(text.substr(0, 2));
  const auto minutes = ParseInt<int>(text.substr(2, 2));
  const auto seconds = ParseDouble(text.substr(4));
  if (!hours || !minutes || !seconds || *hours < 0 || *hours > 23 || *minutes < 0 || *minutes > 59) return std::nullopt;
  if (!(*seconds >= 0.0) || *seconds >= 61.0) return std::nullopt;
  return (*hours * 3600 + *minutes * 60) * kSecond_ns + std::llround(*seconds * 1e9);
}

// "ddmmyy".
std::optional<std::int64_t> Day_s(std::string_view text) {
  if (text.size() != 6) return std::nullopt;
  const auto day = ParseInt<int>(text.substr(0, 2));
  const auto month = ParseInt<int>(text.substr(2, 2));
  const auto year = ParseInt<int>(text.substr(4, 2));
  if (!day || !month || !year) return std::nullopt;
  const CalendarDay date{2000 + *year, *month, *day};
  return IsValidDay(date) ? std::optional(MidnightSeconds(date)) : std::nullopt;
}

// The sentence without '$' and checksum; nothing when the checksum is wrong.
std::optional<std::string_view> CheckedSentence(std::string_view line) {
  const std::size_t dollar = line.find('$');
  if (dollar == std::string_view::npos) return std::nullopt;
  line.remove_prefix(dollar + 1);
  const std::size_t star = line.find('*');
  if (star == std::string_view::npos) return line;
  std::uint8_t sum = 0;
  for (const char c : line.substr(0, star)) sum ^= static_cast<std::uint8_t>(c);
  std::uint32_t told = 256;
  const std::string_view digits = line.substr(star + 1, 2);
  std::from_chars(digits.data(), digits.data() + digits.size(), told, 16);
  return told == sum ? std::optional(line.substr(0, star)) : std::nullopt;
}

class NmeaReader {
 public:
  // True unless the sentence is one with a position that cannot be used.
  bool Take(std::string_view sentence) {
    Fields fields{};
    for (std::string_view& field : fields) {
      const std::size_t comma = sentence.find(',');
      field = sentence.substr(0, comma);
      sentence = comma == std::string_view::npos ? std::string_view() : sentence.substr(comma + 1);
    }
    if (fields[0].size() != 5) return true;
    const std::string_view kind = fields[0].substr(2);
    if (kind == "RMC") return TakeRmc(fields);
    if (kind == "GGA") return TakeGga(fields);
    return true;
  }
  std::vector<TrackFix>& fixes() { return fixes_; }

 private:
  bool TakeRmc(const Fields& fields) {
    const auto day_s = Day_s(fields[9]);
    const auto time_ns = TimeOfDay_ns(fields[1]);
    if (!day_s || !time_ns) return false;
    last_ns_ = *day_s * kSecond_ns + *time_ns;
    return fields[2] == "A" && Put(*last_ns_, fields[3], fields[4], fields[5], fields[6]);
  }

  bool TakeGga(const Fields& fields) {
    const auto time_ns = TimeOfDay_ns(fields[1]);
    if (!time_ns || !last_ns_ || fields[6].empty() || fields[6] == "0") return false;
    std::int64_t at_ns = *last_ns_ - *last_ns_ % (kDay_s * kSecond_ns) + *time_ns;
    // Around midnight the last day told is yesterday.
    if (*last_ns_ - at_ns > kDay_s * kSecond_ns / 2) at_ns += kDay_s * kSecond_ns;
    return Put(at_ns, fields[2], fields[3], fields[4], fields[5]);
  }

  bool Put(std::int64_t time_ns, std::string_view latitude, std::string_view north, std::string_view longitude,
           std::string_view east) {
    const auto latitude_deg = Angle(latitude, north, 2);
    const auto longitude_deg = Angle(longitude, east, 3);
    if (!latitude_deg || !longitude_deg || std::abs(*latitude_deg) > 90.0 || std::abs(*longitude_deg) > 180.0)
      return false;
    // RMC and GGA of one fix tell the same.
    if (fixes_.empty() || fixes_.back().time_ns != time_ns) fixes_.push_back({time_ns, *latitude_deg, *longitude_deg});
    return true;
  }

  std::vector<TrackFix> fixes_;
  std::optional<std::int64_t> last_ns_;  // of the last RMC
};

}  // namespace

std::vector<TrackFix> ReadNmea(const CString& path, std::string_view bytes, Findings& findings) {
  NmeaReader reader;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = std::min(bytes.find_first_of("\r\n", at), bytes.size());
    const std::string_view line = bytes.substr(at, end - at);
    if (!line.empty()) {
      const auto sentence = CheckedSentence(line);
      if (!sentence || !reader.Take(*sentence))
        findings.Add(Finding::kTrackPoint, path, at, sentence ? "no fix" : "no NMEA sentence with a good checksum");
    }
    at = end + 1;
  }
  return std::move(reader.fixes());
}

}  // namespace loom::recordings
