#include "text/dialect/role_finder.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "platform/error.h"
#include "platform/number.h"
#include "text/dialect/cell_value.h"
#include "text/dialect/known_names.h"
#include "text/dialect/layout_reader.h"
#include "text/dialect/time_roles.h"

namespace loom::dialect {
namespace {

constexpr int kSureRank = 55;
constexpr double kFittingShare = 0.9;

struct DegreeStats {
  std::size_t read = 0;
  std::size_t seen = 0;
  double largest = 0;
  double smallest = 0;
  std::size_t with_letter = 0;
  std::size_t with_marks = 0;
  std::size_t hemisphere = 0;
};

DegreeStats StatsOf(const std::vector<std::string>& cells, char decimal, bool is_nmea) {
  DegreeStats stats;
  for (const std::string& cell : cells) {
    const std::string_view text = Trimmed(cell);
    if (text.empty() || IsNullWord(text)) continue;
    ++stats.seen;
    if (HemisphereSign(text) != 0) ++stats.hemisphere;
    const auto degrees = ParseDegrees(text, decimal, is_nmea);
    if (!degrees) continue;
    const double value = degrees->degrees;
    stats.largest = stats.read == 0 ? value : std::max(stats.largest, value);
    stats.smallest = stats.read == 0 ? value : std::min(stats.smallest, value);
    ++stats.read;
    stats.with_letter += degrees->letter != 0;
    stats.with_marks +=
        degrees->form == DegreeForm::kDegreesMinutes || degrees->form == DegreeForm::kDegreesMinutesSeconds;
  }
  return stats;
}

bool IsWithin(const DegreeStats& stats, double limit) {
  return stats.read > 0 && static_cast<double>(stats.read) >= kFittingShare * static_cast<double>(stats.seen) &&
         stats.largest <= limit && stats.smallest >= -limit;
}

// The column beside that holds the letters of the hemisphere.
std::optional<std::size_t> LetterColumn(std::size_t column, const FirstCells& cells) {
  for (const std::size_t beside : {column + 1, column - 1}) {
    if (beside >= cells.size()) continue;
    const DegreeStats stats = StatsOf(cells[beside], '.', false);
    if (stats.seen > 0 && stats.hemisphere == stats.seen) return beside;
  }
  return std::nullopt;
}

struct PositionCandidate {
  std::size_t column;
  int rank;
  bool is_nmea;
};

std::optional<PositionCandidate> CandidateOf(std::size_t column, int rank, const FirstCells& cells, char decimal,
                                             double limit) {
  if (rank == 0 || column >= cells.size()) return std::nullopt;
  const DegreeStats plain = StatsOf(cells[column], decimal, false);
  if (plain.seen == 0 || plain.read * 2 < plain.seen) return std::nullopt;
  if (IsWithin(plain, limit)) return PositionCandidate{column, rank, false};
  const DegreeStats nmea = StatsOf(cells[column], decimal, true);
  if (IsWithin(nmea, limit)) return PositionCandidate{column, rank, true};
  // Values out of range now and then.
  if (plain.read * 10 >= plain.seen * 9 && std::abs(plain.largest) < 1000)
    return PositionCandidate{column, rank - 30, false};
  return std::nullopt;
}

using RankOf = int (*)(std::string_view);

std::optional<PositionCandidate> BestByName(const std::vector<std::string>& names, const FirstCells& cells,
                                            char decimal, double limit, RankOf rank_of, std::vector<bool>& is_one) {
  std::optional<PositionCandidate> best;
  for (std::size_t column = 0; column < names.size(); ++column) {
    const auto candidate = CandidateOf(column, rank_of(names[column]), cells, decimal, limit);
    if (!candidate || candidate->rank <= 0) continue;
    is_one[column] = true;
    if (!best || candidate->rank > best->rank) best = candidate;
  }
  return best;
}

// Without names: two columns side by side whose numbers have many decimals and could be degrees.
void FindUnnamed(const std::vector<ColumnProfile>& profiles, Roles& roles) {
  const auto may_be = [&](std::size_t column, double limit) {
    const ColumnProfile& one = profiles[column];
    const std::uint64_t filled = one.Filled();
    return filled > 0 && one.PlainKind() == Kind::kNumber && one.WithUnit() == 0 &&
           one.LongFractions() * 10 >= filled * 8 && one.Minimum() >= -limit && one.Maximum() <= limit &&
           (std::abs(one.Minimum()) >= 1 || std::abs(one.Maximum()) >= 1);
  };
  // A cell database in its public form: radio, mcc, mnc, area, cell, unit, longitude, latitude, range ...
  const bool is_cell_database = profiles.size() == 14 && profiles[0].PlainKind() == Kind::kText &&
                                profiles[8].Integers() > 0 && profiles[11].LongestDigits() == 10 && may_be(6, 180) &&
                                may_be(7, 90);
  if (is_cell_database) {
    roles.longitude = PositionRole{{6}, false, 0.85};
    roles.latitude = PositionRole{{7}, false, 0.85};
    return;
  }
  for (std::size_t column = 0; column + 1 < profiles.size(); ++column) {
    const bool first_may = may_be(column, 180);
    if (!first_may || !may_be(column + 1, 180)) continue;
    const bool first_is_latitude = may_be(column, 90);
    const bool second_is_latitude = may_be(column + 1, 90);
    if (!first_is_latitude && !second_is_latitude) continue;
    const bool is_sure = first_is_latitude != second_is_latitude;
    const std::size_t latitude = first_is_latitude ? column : column + 1;
    const std::size_t longitude = first_is_latitude ? column + 1 : column;
    roles.latitude = PositionRole{{latitude}, false, is_sure ? 0.85 : 0.6};
    roles.longitude = PositionRole{{longitude}, false, is_sure ? 0.85 : 0.6};
    return;
  }
}

PositionRole RoleOf(const PositionCandidate& candidate, const FirstCells& cells, char decimal) {
  PositionRole role{{candidate.column}, candidate.is_nmea, candidate.rank >= kSureRank ? 0.97 : 0.8};
  const DegreeStats stats = StatsOf(cells[candidate.column], decimal, candidate.is_nmea);
  if (stats.with_letter == 0) {
    if (const auto letters = LetterColumn(candidate.column, cells)) role.columns.push_back(*letters);
  }
  return role;
}

void FindPositions(const std::vector<std::string>& names, const std::vector<ColumnProfile>& profiles,
                   const FirstCells& cells, char decimal, Roles& roles) {
  if (names.empty()) return FindUnnamed(profiles, roles);
  auto latitude = BestByName(names, cells, decimal, 90, &LatitudeRank, roles.is_latitude);
  auto longitude = BestByName(names, cells, decimal, 180, &LongitudeRank, roles.is_longitude);
  if (!latitude && !longitude) {
    const auto single = [&](std::string_view name) -> std::optional<std::size_t> {
      for (std::size_t column = 0; column < names.size(); ++column) {
        const ColumnProfile& one = profiles[column];
        if (Lower(names[column]) == name && one.LongFractions() * 10 >= one.Filled() * 8 && one.LongFractions() > 0)
          return column;
      }
      return std::nullopt;
    };
    const auto x = single("x");
    const auto y = single("y");
    if (x && y) {
      latitude = CandidateOf(*y, kSureRank - 20, cells, decimal, 90);
      longitude = CandidateOf(*x, kSureRank - 20, cells, decimal, 180);
      if (!latitude || !longitude) return;
    }
  }
  if (latitude) roles.latitude = RoleOf(*latitude, cells, decimal);
  if (longitude) roles.longitude = RoleOf(*longitude, cells, decimal);
  // One without the other is no position to be sure of; whole numbers are something else then, a latency for one.
  const auto is_whole = [&](const std::optional<PositionRole>& role) {
    return role && profiles[role->columns[0]].Integers() == profiles[role->columns[0]].Filled();
  };
  if (!roles.longitude && is_whole(roles.latitude)) {
    roles.is_latitude[roles.latitude->columns[0]] = false;
    roles.latitude.reset();
  }
  if (!roles.latitude && is_whole(roles.longitude)) {
    roles.is_longitude[roles.longitude->columns[0]] = false;
    roles.longitude.reset();
  }
  if (roles.latitude && !roles.longitude) roles.latitude->confidence = 0.6;
  if (roles.longitude && !roles.latitude) roles.longitude->confidence = 0.6;
}

std::optional<PositionRole> GivenPosition(const std::vector<std::string>& given, const std::vector<std::string>& names,
                                          const FirstCells& cells, char decimal, double limit) {
  if (given.empty()) return std::nullopt;
  PositionRole role;
  role.confidence = 1;
  for (const std::string& one : given) role.columns.push_back(ColumnOf(one, names, cells.size()));
  const DegreeStats plain = StatsOf(cells[role.columns[0]], decimal, false);
  role.is_nmea = !IsWithin(plain, limit) && IsWithin(StatsOf(cells[role.columns[0]], decimal, true), limit);
  return role;
}

}  // namespace

std::size_t ColumnOf(const std::string& name_or_number, const std::vector<std::string>& names, std::size_t width) {
  const auto named = std::ranges::find(names, name_or_number);
  if (named != names.end()) return static_cast<std::size_t>(named - names.begin());
  const auto number = ParseInt<std::size_t>(name_or_number);
  if (number && *number < width) return *number;
  throw Error("there is no column \"" + name_or_number + "\"; the file has " + std::to_string(width) +
              ", counted from 0");
}

Roles FindRoles(const std::vector<std::string>& names, const std::vector<ColumnProfile>& profiles,
                const FirstCells& cells, char decimal, const Overrides& overrides) {
  Roles roles;
  roles.layouts.resize(profiles.size());
  roles.is_latitude.resize(profiles.size());
  roles.is_longitude.resize(profiles.size());
  FindPositions(names, profiles, cells, decimal, roles);
  if (overrides.latitude_columns)
    roles.latitude = GivenPosition(*overrides.latitude_columns, names, cells, decimal, 90);
  if (overrides.longitude_columns)
    roles.longitude = GivenPosition(*overrides.longitude_columns, names, cells, decimal, 180);
  FindTimes(names, profiles, cells, decimal, overrides, roles);
  return roles;
}

}  // namespace loom::dialect
