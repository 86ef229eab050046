#include "text/dialect/known_names.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "text/dialect/cell_value.h"

namespace loom::dialect {
namespace {

constexpr auto kLatitudeWords =
    std::to_array<std::string_view>({"lat", "latitude", "lati", "latitud", "latitudine", "breite", "breitengrad",
                                     "纬度", "lat1", "latdeg", "latdd", "gpslat", "wgslat", "ycoord", "lat84", "wd"});
constexpr auto kLongitudeWords = std::to_array<std::string_view>(
    {"lon",    "lng",     "long",       "longitude", "longi",  "longitud", "longitudine",
     "laenge", "länge",   "längengrad", "经度",      "lon1",   "londeg",   "londd",
     "gpslon", "gpslong", "gpslng",     "wgslon",    "xcoord", "lon84",    "jd"});
constexpr auto kTimeWords = std::to_array<std::string_view>(
    {"time",        "timestamp", "date",    "datetime",    "epoch", "ts",       "utc",      "gmt",     "clock",
     "zeit",        "datum",     "uhrzeit", "zeitstempel", "时间",  "日期",     "fecha",    "hora",    "heure",
     "tijd",        "tid",       "dato",    "when",        "seen",  "recorded", "unixtime", "gpstime", "localtime",
     "timestampms", "created",   "updated", "measured",    "unix",  "date/time"});
constexpr auto kUsualWords = std::to_array<std::string_view>(
    {"id",          "name",        "speed",   "altitude", "height",   "heading",  "course",    "accuracy", "rsrp",
     "rsrq",        "rssi",        "sinr",    "snr",      "pci",      "earfcn",   "arfcn",     "cell",     "cellid",
     "cid",         "lac",         "tac",     "mcc",      "mnc",      "operator", "network",   "type",     "signal",
     "level",       "index",       "no",      "number",   "value",    "channel",  "frequency", "band",     "bssid",
     "ssid",        "mac",         "event",   "state",    "status",   "rxlev",    "rxqual",    "bsic",     "psc",
     "rscp",        "ecno",        "enb",     "azimuth",  "sector",   "site",     "city",      "address",  "comment",
     "description", "temperature", "voltage", "humidity", "pressure", "distance", "bearing",   "device",   "version"});
// Words of names that tell of another place or time than the record's own.
constexpr auto kOtherWords = std::to_array<std::string_view>(
    {"end",      "stop",   "last",  "best",        "min",    "max",      "avg",      "mean",     "old",     "prev",
     "previous", "target", "dest",  "destination", "update", "updated",  "modified", "site",     "enb",     "bts",
     "nodeb",    "cell",   "tower", "since",       "start",  "diff",     "delta",    "duration", "elapsed", "accuracy",
     "error",    "std",    "zone",  "offset",      "tz",     "timezone", "uptime",   "boot",     "first",   "created"});

template <std::size_t N>
bool Holds(const std::array<std::string_view, N>& words, std::string_view word) {
  return std::ranges::find(words, word) != words.end();
}

template <std::size_t N>
int Rank(std::string_view name, const std::array<std::string_view, N>& words) {
  const std::vector<std::string> parts = WordsOf(name);
  int rank = 0;
  int others = 0;
  for (const std::string& part : parts) {
    if (Holds(words, part))
      rank = std::max(rank, parts.size() == 1 ? 100 : 80);
    else if (Holds(kOtherWords, part))
      ++others;
  }
  if (rank == 0 && parts.size() == 1) {
    for (const std::string_view word : words) {
      const std::string& part = parts.front();
      const bool is_long = word.size() >= 4 || static_cast<unsigned char>(word.front()) >= 0x80;
      if (is_long && (part.starts_with(word) || part.ends_with(word))) rank = 60;
    }
  }
  return rank == 0 ? 0 : std::max(rank - 25 * others - static_cast<int>(parts.size()), 1);
}

}  // namespace

int LatitudeRank(std::string_view name) { return Rank(name, kLatitudeWords); }
int LongitudeRank(std::string_view name) { return Rank(name, kLongitudeWords); }
int TimeRank(std::string_view name) { return Rank(name, kTimeWords); }

bool IsUsualName(std::string_view name) {
  if (LatitudeRank(name) >= 60 || LongitudeRank(name) >= 60 || TimeRank(name) >= 60) return true;
  return std::ranges::any_of(WordsOf(name), [](const std::string& word) { return Holds(kUsualWords, word); });
}

std::string_view ZoneOfName(std::string_view name) {
  const std::vector<std::string> words = WordsOf(name);
  const bool is_utc =
      std::ranges::any_of(words, [](const std::string& word) { return word == "utc" || word == "gmt"; });
  return is_utc ? "UTC" : "";
}

}  // namespace loom::dialect
