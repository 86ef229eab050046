#include "text/dialect/time_roles.h"

#include <algorithm>
#include <ctime>
#include <tuple>

#include "platform/calendar.h"
#include "text/dialect/cell_value.h"
#include "text/dialect/known_names.h"
#include "text/dialect/layout_reader.h"

namespace loom::dialect {
namespace {

constexpr double kFirstEpoch_s = 631152000.0;  // 1990
constexpr double kLastEpoch_s = 2114380800.0;  // 2037
constexpr double kFirstSerial = 20000;
constexpr double kLastSerial = 60000;

enum class Part { kWhole, kDate, kClock, kOffset };

struct TimeColumn {
  std::size_t column;
  Part part;
  std::vector<std::string> layouts;
  int rank;
};

std::int64_t Today() { return WholeDays(std::time(nullptr)); }

// Share of the cells that a layout reads, and whether their years are believable.
double ReadShare(const std::vector<std::string>& cells, const std::string& layout, char decimal = '.') {
  LayoutReader reader(layout, decimal);
  std::size_t seen = 0;
  std::size_t read = 0;
  const std::int64_t today = Today();
  for (const std::string& cell : cells) {
    const std::string_view text = Trimmed(cell);
    if (text.empty() || IsNullWord(text)) continue;
    ++seen;
    const auto time = reader.Read(text);
    if (time && (!time->day || (*time->day > 7300 && *time->day < today + 400))) ++read;
  }
  return seen == 0 ? 0 : static_cast<double>(read) / static_cast<double>(seen);
}

const char* EpochLayout(double value) {
  for (const auto& [layout, scale] :
       {std::pair{"epoch s", 1.0}, {"epoch ms", 1e3}, {"epoch us", 1e6}, {"epoch ns", 1e9}}) {
    if (value >= kFirstEpoch_s * scale && value <= kLastEpoch_s * scale) return layout;
  }
  return nullptr;
}

std::vector<DateOrder> OrdersOf(int mask) {
  std::vector<DateOrder> orders;
  for (const DateOrder order : {DateOrder::kYmd, DateOrder::kDmy, DateOrder::kMdy}) {
    if ((mask & (1 << static_cast<int>(order))) != 0) orders.push_back(order);
  }
  return orders;
}

std::optional<TimeColumn> TextTime(std::size_t column, const ColumnProfile& profile, int rank) {
  if (!profile.Shape() || !profile.FitsMostly(profile.Times() - std::min(profile.Times(), profile.OddTimes())))
    return std::nullopt;
  const TimeShape& shape = *profile.Shape();
  const Part part = shape.date == DateForm::kNone     ? Part::kClock
                    : shape.clock == ClockForm::kNone ? Part::kDate
                                                      : Part::kWhole;
  TimeColumn time{column, part, {}, rank};
  for (const DateOrder order : OrdersOf(shape.date == DateForm::kNone ? 1 : profile.OrderMask())) {
    const std::string layout = LayoutText(shape, order);
    if (std::ranges::find(time.layouts, layout) == time.layouts.end()) time.layouts.push_back(layout);
  }
  if (time.layouts.empty()) return std::nullopt;
  return time;
}

// Digits alone: believed only where the name tells of a time.
std::optional<TimeColumn> NumberTime(std::size_t column, const ColumnProfile& profile,
                                     const std::vector<std::string>& cells, bool has_names, int rank, char decimal) {
  if (!profile.FitsMostly(profile.Numbers()) || profile.WithUnit() > 0) return std::nullopt;
  const auto [first, last] = profile.FirstAndLast();
  const char* const epoch = EpochLayout(profile.Maximum());
  const bool is_one_time = epoch != nullptr && EpochLayout(first) == epoch && EpochLayout(last) == epoch;
  if (is_one_time) {
    const bool is_narrow = profile.Maximum() - std::max(profile.Minimum(), 0.0) < profile.Maximum() * 0.03;
    const bool is_believed = rank > 0 || (!has_names && is_narrow && profile.Filled() > 1);
    if (is_believed) return TimeColumn{column, Part::kWhole, {epoch}, has_names ? rank : 30};
  }
  if (rank == 0) return std::nullopt;
  const bool is_integer = profile.Integers() == profile.Filled();
  const std::size_t longest = profile.LongestDigits();
  TimeColumn time{column, Part::kDate, {}, rank};
  const auto try_layout = [&](const char* layout, Part part) {
    if (ReadShare(cells, layout, decimal) < 0.98) return;
    time.part = part;
    time.layouts.push_back(layout);
  };
  if (is_integer && longest == profile.ShortestDigits()) {
    if (longest == 17) try_layout("yyyyMMddHHmmssSSS", Part::kWhole);
    if (longest == 14) try_layout("yyyyMMddHHmmss", Part::kWhole);
    if (longest == 12) try_layout("yyyyMMddHHmm", Part::kWhole);
    if (longest == 8) try_layout("yyyyMMdd", Part::kDate);
  }
  if (time.layouts.empty() && !is_integer && profile.Minimum() > kFirstSerial && profile.Maximum() < kLastSerial &&
      rank >= 60 && profile.Maximum() - profile.Minimum() < 5000)
    try_layout("days since 1899-12-30", Part::kWhole);
  if (time.layouts.empty()) return std::nullopt;
  return time;
}

// yyMMdd and HHmmss stand side by side, in columns named date and time.
void AddCompactPair(const std::vector<std::string>& names, const std::vector<ColumnProfile>& profiles,
                    const FirstCells& cells, std::vector<TimeColumn>& times) {
  const auto has_word = [&](std::size_t column, std::initializer_list<std::string_view> words) {
    return std::ranges::any_of(WordsOf(names[column]),
                               [&](const std::string& word) { return std::ranges::find(words, word) != words.end(); });
  };
  for (std::size_t column = 0; column < names.size(); ++column) {
    const ColumnProfile& date = profiles[column];
    const bool is_date = has_word(column, {"date", "datum", "ymd"}) && date.FitsMostly(date.Integers()) &&
                         date.LongestDigits() == 6 && date.ShortestDigits() >= 5;
    const bool has_long_date = std::ranges::any_of(
        times, [&](const TimeColumn& time) { return time.column == column && time.part == Part::kDate; });
    if (!is_date && !has_long_date) continue;
    for (const std::size_t beside : {column + 1, column - 1}) {
      if (beside >= names.size() || !has_word(beside, {"time", "utc", "hms", "zeit"})) continue;
      const ColumnProfile& clock = profiles[beside];
      if (!clock.FitsMostly(clock.Numbers()) || clock.Maximum() >= 240000 || clock.Minimum() < 0) continue;
      if (ReadShare(cells[beside], "HHmmss") < 0.98) continue;
      if (is_date && !has_long_date) {
        std::vector<std::string> layouts;
        for (const char* layout : {"yyMMdd", "ddMMyy"}) {
          if (ReadShare(cells[column], layout) >= 0.98) layouts.push_back(layout);
        }
        if (layouts.empty()) continue;
        times.push_back({column, Part::kDate, layouts, TimeRank(names[column])});
      }
      times.push_back({beside, Part::kClock, {"HHmmss"}, TimeRank(names[beside])});
      return;
    }
  }
}

// Zone offsets in a column of their own: "+08:00", "-5".
bool IsOffsetColumn(std::size_t column, const std::vector<std::string>& names, const FirstCells& cells) {
  const std::vector<std::string> words = WordsOf(names[column]);
  const bool is_named = std::ranges::any_of(words, [](const std::string& word) {
    return word == "tz" || word == "zone" || word == "timezone" || word == "offset" || word == "utc" || word == "gmt";
  });
  if (!is_named) return false;
  std::size_t seen = 0;
  std::size_t fits = 0;
  for (const std::string& cell : cells[column]) {
    const std::string_view text = Trimmed(cell);
    if (text.empty()) continue;
    ++seen;
    fits += ParseZone(text).has_value() ? 1 : 0;
  }
  return seen > 0 && fits == seen;
}

bool IsInAmerica(const Roles& roles, const std::vector<ColumnProfile>& profiles) {
  if (!roles.latitude || !roles.longitude) return false;
  const ColumnProfile& latitude = profiles[roles.latitude->columns[0]];
  const ColumnProfile& longitude = profiles[roles.longitude->columns[0]];
  return latitude.Minimum() > 24 && latitude.Maximum() < 50 && longitude.Minimum() > -126 && longitude.Maximum() < -66;
}

struct DaySpan {
  std::int64_t earliest = INT64_MAX;
  std::int64_t latest = INT64_MIN;
  std::int64_t Length() const { return latest < earliest ? 0 : latest - earliest; }
};

DaySpan SpanOf(const std::string& layout, const std::vector<std::string>& cells) {
  LayoutReader reader(layout);
  DaySpan span;
  for (const std::string& cell : cells) {
    const auto time = reader.Read(Trimmed(cell));
    if (!time || !time->day) continue;
    span.earliest = std::min(span.earliest, *time->day);
    span.latest = std::max(span.latest, *time->day);
  }
  return span;
}

// Days that follow each other closely speak for an order; with two digits of the year the newest past one; then what is
// usual.
void SortOrders(std::vector<std::string>& layouts, const std::vector<std::string>& cells, bool is_in_america) {
  if (layouts.size() < 2) return;
  const std::int64_t today = Today();
  const auto unusual = [&](const std::string& layout) {
    const bool is_month_first = layout.starts_with("M") || layout.find("M/") < layout.find("d");
    const bool is_american = is_in_america || layout.find(" a") != std::string::npos ||
                             layout.find("M/d") != std::string::npos || layout.find("d/M/") != std::string::npos;
    return is_month_first == is_american ? 0 : 1;
  };
  const auto key_of = [&](const std::string& layout) {
    const DaySpan span = SpanOf(layout, cells);
    const bool has_long_year = layout.find("yyyy") != std::string::npos;
    const std::int64_t age = has_long_year ? 0 : span.latest > today ? INT64_MAX : today - span.latest;
    return std::tuple(span.Length(), age, unusual(layout));
  };
  std::ranges::stable_sort(layouts, std::less(), key_of);
}

std::vector<std::string> Joined(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  std::vector<std::string> joined;
  for (const std::string& first : a) {
    for (const std::string& second : b) joined.push_back(first + " " + second);
  }
  return joined;
}

const TimeColumn* Best(const std::vector<TimeColumn>& times, Part part) {
  const TimeColumn* best = nullptr;
  for (const TimeColumn& time : times) {
    if (time.part == part && (best == nullptr || time.rank > best->rank)) best = &time;
  }
  return best;
}

// The date whose clock stands nearest, and both in one row of columns.
void TakePair(const std::vector<TimeColumn>& times, TimeRole& role) {
  std::size_t nearest = SIZE_MAX;
  int best_rank = -1;
  for (const TimeColumn& date : times) {
    for (const TimeColumn& clock : times) {
      if (date.part != Part::kDate || clock.part != Part::kClock) continue;
      const std::size_t distance = date.column > clock.column ? date.column - clock.column : clock.column - date.column;
      const int rank = date.rank + clock.rank;
      if (distance > nearest || (distance == nearest && rank <= best_rank)) continue;
      nearest = distance;
      best_rank = rank;
      role.columns = {date.column, clock.column};
      role.layouts = Joined(date.layouts, clock.layouts);
    }
  }
}

void GivenTime(const std::vector<std::string>& names, const FirstCells& cells, const Overrides& overrides,
               Roles& roles) {
  if (overrides.time_columns->empty()) {
    roles.time.reset();
    return;
  }
  TimeRole role;
  role.confidence = 1;
  for (const std::string& one : *overrides.time_columns) role.columns.push_back(ColumnOf(one, names, cells.size()));
  if (overrides.time_layout) {
    role.layouts = {*overrides.time_layout};
  } else {
    role.confidence = 0.9;
    for (const std::size_t column : role.columns) {
      const std::string& layout = roles.layouts[column];
      if (layout.empty()) continue;
      role.layouts = role.layouts.empty() ? std::vector{layout} : Joined(role.layouts, {layout});
    }
    if (roles.time && roles.time->columns == role.columns) role.layouts = roles.time->layouts;
    if (role.layouts.empty()) role.layouts = {"epoch s"};
  }
  for (const std::string& layout : role.layouts) LayoutReader check(layout);
  roles.time = role;
}

}  // namespace

void FindTimes(const std::vector<std::string>& names, const std::vector<ColumnProfile>& profiles,
               const FirstCells& cells, char decimal, const Overrides& overrides, Roles& roles) {
  std::vector<TimeColumn> times;
  const bool is_in_america = IsInAmerica(roles, profiles);
  const auto is_position = [&](std::size_t column) {
    return (roles.latitude && roles.latitude->columns[0] == column) ||
           (roles.longitude && roles.longitude->columns[0] == column);
  };
  for (std::size_t column = 0; column < profiles.size(); ++column) {
    if (is_position(column)) continue;
    const int rank = names.empty() ? 0 : TimeRank(names[column]);
    auto time = TextTime(column, profiles[column], rank);
    if (!time) time = NumberTime(column, profiles[column], cells[column], !names.empty(), rank, decimal);
    if (time) times.push_back(*time);
  }
  if (!names.empty()) AddCompactPair(names, profiles, cells, times);
  for (TimeColumn& time : times) {
    SortOrders(time.layouts, cells[time.column], is_in_america);
    roles.layouts[time.column] = time.layouts.front();
  }
  TimeRole role;
  const TimeColumn* const whole = Best(times, Part::kWhole);
  TimeRole pair;
  TakePair(times, pair);
  if (whole != nullptr &&
      (pair.columns.empty() || whole->rank > 30 || whole->layouts[0].find("epoch") == std::string::npos)) {
    role.columns = {whole->column};
    role.layouts = whole->layouts;
    role.confidence = whole->rank >= 55 || whole->layouts[0].find("epoch") == std::string::npos ? 0.95 : 0.75;
    const auto rivals = std::ranges::count_if(times, [&](const TimeColumn& time) {
      return time.part == Part::kWhole && time.column != whole->column && time.rank + 10 >= whole->rank;
    });
    if (rivals > 0) role.confidence = 0.8;
  } else if (!pair.columns.empty()) {
    role = pair;
    role.confidence = 0.94;
  } else if (const TimeColumn* const date = Best(times, Part::kDate)) {
    role.columns = {date->column};
    role.layouts = date->layouts;
    role.confidence = 0.8;
  } else if (const TimeColumn* const clock = Best(times, Part::kClock)) {
    role.columns = {clock->column};
    role.layouts = clock->layouts;
    role.confidence = 0.8;
  }
  if (!role.columns.empty()) {
    for (const std::size_t column : role.columns) {
      if (role.zone.empty() && !names.empty()) role.zone = ZoneOfName(names[column]);
    }
    const bool states_zone = role.layouts[0].find("XXX") != std::string::npos || role.layouts[0].ends_with("z") ||
                             role.layouts[0].starts_with("epoch");
    for (std::size_t column = 0; !states_zone && column < names.size(); ++column) {
      const std::size_t last = role.columns.back();
      const bool is_near =
          column + 3 > last && column < last + 4 && std::ranges::find(role.columns, column) == role.columns.end();
      if (!is_near || !IsOffsetColumn(column, names, cells)) continue;
      role.columns.push_back(column);
      for (std::string& layout : role.layouts) layout += " XXX";
      roles.layouts[column] = "XXX";
      role.zone.clear();
      break;
    }
    roles.time = role;
  }
  if (overrides.time_columns) GivenTime(names, cells, overrides, roles);
  if (roles.time && overrides.zone) roles.time->zone = *overrides.zone;
}

}  // namespace loom::dialect
