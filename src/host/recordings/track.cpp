#include "host/recordings/track.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "host/logstore/log_header.h"
#include "platform/characters.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/number.h"
#include "platform/time_units.h"

namespace loom::recordings {
namespace {

constexpr std::int64_t kFarthestFixes_ns = 60 * kSecond_ns;
constexpr std::uint64_t kMostTrackBytes = 1ULL << 30;

// The digits in front of anything else; nothing without one.
std::optional<int> Digits(std::string_view text) {
  const bool are_digits = std::all_of(text.begin(), text.end(), IsDigit);
  return are_digits ? ParseInt<int>(text) : std::nullopt;
}

// ".250" and "," as well; moves behind them.
std::int64_t TakeFraction(std::string_view& text) {
  if (text.empty() || (text[0] != '.' && text[0] != ',')) return 0;
  text.remove_prefix(1);
  std::int64_t fraction_ns = 0;
  std::int64_t unit_ns = kSecond_ns / 10;
  for (; !text.empty() && IsDigit(text[0]); text.remove_prefix(1), unit_ns /= 10)
    fraction_ns += (text[0] - '0') * unit_ns;
  return fraction_ns;
}

std::optional<std::int64_t> OffsetSeconds(std::string_view text) {
  if (text.empty() || text == "Z" || text == "z") return 0;
  if (text.size() < 5 || (text[0] != '+' && text[0] != '-')) return std::nullopt;
  const auto hours = Digits(text.substr(1, 2));
  const auto minutes = Digits(text.substr(text[3] == ':' ? 4 : 3));
  if (!hours || !minutes || *hours > 23 || *minutes > 59) return std::nullopt;
  const std::int64_t offset_s = *hours * 3600 + *minutes * 60;
  return text[0] == '-' ? -offset_s : offset_s;
}

double Between(double from, double to, double share) { return from + (to - from) * share; }

}  // namespace

std::optional<std::int64_t> TimeOfIsoText(std::string_view text) {
  constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:dd";
  if (text.size() < kForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool is_digit = IsDigit(text[i]);
    if (kForm[i] == 'd' ? !is_digit : text[i] != kForm[i] && !(kForm[i] == 'T' && text[i] == ' ')) return std::nullopt;
  }
  const auto number = [&](std::size_t at, std::size_t count) { return *ParseInt<int>(text.substr(at, count)); };
  const CalendarDay day{number(0, 4), number(5, 2), number(8, 2)};
  if (!IsValidDay(day) || number(11, 2) > 24 || number(14, 2) > 59 || number(17, 2) > 60) return std::nullopt;
  const std::int64_t time_s = MidnightSeconds(day) + number(11, 2) * 3600 + number(14, 2) * 60 + number(17, 2);
  text.remove_prefix(kForm.size());
  const std::int64_t fraction_ns = TakeFraction(text);
  const auto offset_s = OffsetSeconds(text);
  if (!offset_s) return std::nullopt;
  constexpr std::int64_t kFarthest_s = std::numeric_limits<std::int64_t>::max() / kSecond_ns - 1;
  const std::int64_t utc_s = time_s - *offset_s;
  if (utc_s > kFarthest_s || utc_s < -kFarthest_s) return std::nullopt;
  return utc_s * kSecond_ns + fraction_ns;
}

Track::Track(std::vector<TrackFix> fixes) : fixes_(std::move(fixes)) {
  std::stable_sort(fixes_.begin(), fixes_.end(),
                   [](const TrackFix& a, const TrackFix& b) { return a.time_ns < b.time_ns; });
}

std::optional<TrackFix> Track::At(std::int64_t time_ns) const {
  const auto behind = std::lower_bound(fixes_.begin(), fixes_.end(), time_ns,
                                       [](const TrackFix& fix, std::int64_t time) { return fix.time_ns < time; });
  if (behind == fixes_.end()) return std::nullopt;
  if (behind->time_ns == time_ns) return *behind;
  if (behind == fixes_.begin()) return std::nullopt;
  const TrackFix& before = *std::prev(behind);
  const std::int64_t apart_ns = behind->time_ns - before.time_ns;
  if (apart_ns > kFarthestFixes_ns) return std::nullopt;
  const double share = static_cast<double>(time_ns - before.time_ns) / static_cast<double>(apart_ns);
  // The short way around the date line.
  double to = behind->longitude;
  if (to - before.longitude > 180.0) to -= 360.0;
  if (to - before.longitude < -180.0) to += 360.0;
  double longitude = Between(before.longitude, to, share);
  if (longitude > 180.0) longitude -= 360.0;
  if (longitude < -180.0) longitude += 360.0;
  return TrackFix{time_ns, Between(before.latitude, behind->latitude, share), longitude};
}

Track ReadTrack(const CString& path, Findings& findings) {
  if (const InputFile file(path); file.Size() > kMostTrackBytes) throw FileError(path, 0, "is too large for a track");
  const std::string bytes = ReadWholeText(path);
  const std::string_view head = std::string_view(bytes).substr(0, 4096);
  const bool is_gpx = head.find("<gpx") != std::string_view::npos || head.find(":gpx") != std::string_view::npos;
  auto fixes = is_gpx ? ReadGpx(path, bytes, findings) : ReadNmea(path, bytes, findings);
  if (fixes.empty()) throw FileError(path, 0, "is no track: neither GPX nor NMEA with times and positions");
  return Track(std::move(fixes));
}

}  // namespace loom::recordings
