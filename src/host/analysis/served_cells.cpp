#include "host/analysis/served_cells.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

namespace loom::analysis {
namespace {

constexpr std::string_view kTd = "TD-SCDMA";
constexpr std::string_view kGsm = "GSM";
constexpr std::string_view kLte = "LTE";

struct CellRule {
  std::string_view protocol;
  CellKey key;
  std::int32_t first;
  std::int32_t second;  // 0: none
  std::int32_t level;
};

// The best first.
// clang-format off
constexpr CellRule kRules[] = {
    {kTd,  CellKey::kTdKey,       146,     0,   499},
    {kTd,  CellKey::kUarfcnCpi,   147,   140,   499},
    {kGsm, CellKey::kLacCi,     31700, 31706, 31703},
    {kGsm, CellKey::kLacCi,     31700, 36022, 31703},
    {kGsm, CellKey::kCi,        36022,     0, 31703},
    {kGsm, CellKey::kBcchBsic,  31701, 31705, 31703},
    {kLte, CellKey::kLteKey,    33363,     0, 33364},
    {kLte, CellKey::kEci,       36042,     0, 33364},
    {kLte, CellKey::kPciEarfcn, 33362, 36040, 33364},
    {kLte, CellKey::kPci,       33362,     0, 33364},
};
// clang-format on

bool IsOf(const CellRule& rule, std::string_view protocol) {
  const bool is_one = protocol == kTd || protocol == kGsm || protocol == kLte;
  return !is_one || rule.protocol == protocol;
}

// Reads a series row by row, forward.
class Reader {
 public:
  explicit Reader(const Series* series) : series_(series) {}
  // NaN where the row has no valid sample.
  double At(std::uint32_t row) {
    if (series_ == nullptr) return kNoValue;
    while (next_ < series_->at.size() && series_->at[next_] < row) ++next_;
    return next_ < series_->at.size() && series_->at[next_] == row ? series_->values[next_] : kNoValue;
  }

 private:
  const Series* series_;
  std::size_t next_ = 0;
};

bool HasSamples(const Series* series) {
  return series != nullptr && std::ranges::any_of(series->values, [](double value) { return value >= 0.0; });
}

const CellRule* BestRule(const Samples& samples, std::string_view protocol) {
  for (const CellRule& rule : kRules) {
    const bool is_there =
        HasSamples(samples.Find(rule.first)) && (rule.second == 0 || HasSamples(samples.Find(rule.second)));
    if (is_there && IsOf(rule, protocol)) return &rule;
  }
  return nullptr;
}

class Finder {
 public:
  Finder(const Samples& samples, const CellRule& rule)
      : samples_(samples),
        rule_(rule),
        first_(samples.Find(rule.first)),
        second_(rule.second == 0 ? nullptr : samples.Find(rule.second)),
        level_(samples.Find(rule.level)) {
    result_.level_element = rule.level;
    result_.of_row.assign(samples.RowCount(), ServedCells::kNone);
  }

  ServedCells Run() {
    for (std::uint32_t row = 0; row < samples_.RowCount(); ++row) {
      const double held_s = samples_.time_s[row] - since_s_;
      const bool holds = cell_ != ServedCells::kNone && held_s >= 0.0 && held_s <= kLongestHold_s;
      if (const auto identity = IdentityAt(row)) {
        Serve(row, *identity, holds ? std::optional(held_s) : std::nullopt);
      } else if (!holds) {
        cell_ = ServedCells::kNone;
      }
      result_.of_row[row] = cell_;
      TakeLevel(level_.At(row));
    }
    return std::move(result_);
  }

 private:
  std::optional<CellIdentity> IdentityAt(std::uint32_t row) {
    const double first = first_.At(row);
    const double second = rule_.second == 0 ? 0.0 : second_.At(row);
    if (!(first >= 0.0) || !(second >= 0.0)) return std::nullopt;
    return CellIdentity{rule_.key, static_cast<std::int64_t>(first), static_cast<std::int64_t>(second)};
  }

  void Serve(std::uint32_t row, const CellIdentity& identity, std::optional<double> held_s) {
    const auto cell = static_cast<std::int32_t>(NumberOf(identity));
    if (held_s) {
      result_.cells[static_cast<std::size_t>(cell_)].time_s += *held_s;
      if (cell != cell_)
        result_.handovers.push_back({row, static_cast<std::uint32_t>(cell_), static_cast<std::uint32_t>(cell)});
    }
    cell_ = cell;
    since_s_ = samples_.time_s[row];
    if (!samples_.HasPosition(row)) return;
    ServedCell& served = result_.cells[static_cast<std::size_t>(cell)];
    served.longitude_sum += samples_.longitude[row];
    served.latitude_sum += samples_.latitude[row];
    ++served.positions;
  }

  void TakeLevel(double level) {
    if (cell_ == ServedCells::kNone || std::isnan(level)) return;
    ServedCell& served = result_.cells[static_cast<std::size_t>(cell_)];
    served.level_sum += level;
    ++served.samples;
  }

  std::size_t NumberOf(const CellIdentity& identity) {
    const auto [known, is_new] = numbers_.try_emplace(identity, result_.cells.size());
    if (is_new) result_.cells.push_back({.identity = identity});
    return known->second;
  }

  const Samples& samples_;
  const CellRule& rule_;
  Reader first_;
  Reader second_;
  Reader level_;
  ServedCells result_;
  std::map<CellIdentity, std::size_t> numbers_;
  std::int32_t cell_ = ServedCells::kNone;
  double since_s_ = kNoValue;
};

std::string Pair(std::int64_t first, std::int64_t second, const char* between) {
  return std::to_string(first) + between + std::to_string(second);
}

}  // namespace

std::string LabelOf(const CellIdentity& cell) {
  const std::int64_t high = cell.first >> 16;
  const std::int64_t low = cell.first & 0xFFFF;
  switch (cell.key) {
    case CellKey::kLacCi:
      return Pair(cell.first, cell.second, "-");
    case CellKey::kTdKey:
      return Pair(high, low, "-");
    case CellKey::kUarfcnCpi:
      return "UARFCN " + Pair(cell.first, cell.second, ", CPI ");
    case CellKey::kBcchBsic:
      return "BCCH " + Pair(cell.first, cell.second, ", BSIC ");
    case CellKey::kLteKey:
      return "PCI " + std::to_string(high) + (low > 0 ? ", " + std::to_string(low) + " MHz" : "");
    case CellKey::kEci:
      return Pair(cell.first >> 8, cell.first & 0xFF, "-");
    case CellKey::kPciEarfcn:
      return "PCI " + Pair(cell.first, cell.second, ", EARFCN ");
    case CellKey::kPci:
      return "PCI " + std::to_string(cell.first);
    default:
      return "CI " + std::to_string(cell.first);
  }
}

std::vector<std::int32_t> CellElements(std::string_view protocol) {
  std::vector<std::int32_t> elements;
  for (const CellRule& rule : kRules) {
    for (const std::int32_t element : {rule.first, rule.second, rule.level}) {
      const bool is_known = std::ranges::find(elements, element) != elements.end();
      if (element != 0 && !is_known && IsOf(rule, protocol)) elements.push_back(element);
    }
  }
  return elements;
}

ServedCells FindServedCells(const Samples& samples, std::string_view protocol) {
  const CellRule* const rule = BestRule(samples, protocol);
  if (rule == nullptr) return {.of_row = std::vector<std::int32_t>(samples.RowCount(), ServedCells::kNone)};
  return Finder(samples, *rule).Run();
}

}  // namespace loom::analysis
