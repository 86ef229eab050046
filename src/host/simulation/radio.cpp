#include "host/simulation/radio.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace loom::simulation {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double kShadowDeviation_db = 7.0;
constexpr double kHysteresis_db = 3.0;
constexpr int kTimeToTrigger = 2;
constexpr double kCandidateRefresh_m = 150.0;
constexpr std::size_t kCandidates = 18;
constexpr double kNearest_m = 50.0;  // below an antenna

// Carriers of a town: UARFCNs of 2010 to 2025 MHz, ARFCNs of GSM 900, EARFCNs of the bands 38 and 40.
constexpr std::array<std::int32_t, 6> kTdCarriers{10055, 10063, 10071, 10080, 10088, 10096};
constexpr std::array<std::int32_t, 12> kGsmCarriers{5, 12, 19, 26, 33, 40, 47, 54, 61, 68, 75, 82};
constexpr std::array<std::int32_t, 3> kLteCarriers{37900, 38098, 38950};

}  // namespace

const LayerStyle kTdLayer{650.0, -84.0, kTdCarriers, 128, 4660, 10001};
const LayerStyle kGsmLayer{900.0, -68.0, kGsmCarriers, 64, 4670, 20001};
const LayerStyle kLteLayer{550.0, -95.0, kLteCarriers, 504, 4680, 30001};

Layer::Layer(const LayerStyle& style, double extent_m, std::uint64_t seed) : style_(style) {
  Random random(seed);
  const double d = style.site_distance_m;
  const int reach = static_cast<int>(extent_m / d) + 2;
  for (int row = -reach; row <= reach; ++row) {
    for (int column = -reach; column <= reach; ++column) {
      const PlanePoint site{(column + (row % 2 != 0 ? 0.5 : 0.0)) * d + random.Spread() * d * 0.08,
                            row * d * 0.866 + random.Spread() * d * 0.08};
      const double turn = random.Between(-20.0, 20.0);
      for (int sector = 0; sector < 3; ++sector) {
        Cell cell;
        const auto number = static_cast<std::int32_t>(cells_.size());
        cell.at = site;
        cell.azimuth_deg = 120.0 * sector + turn;
        cell.lac = style.lac + (site.north_m < 0 ? 0 : 1);
        cell.ci = style.first_ci + number;
        cell.channel = style.channels[random.Below(static_cast<int>(style.channels.size()))];
        cell.code = (number * 5 + 3) % style.codes;  // 5 shares no factor with the numbers of codes
        for (std::size_t i = 0; i < cell.shadow.size(); i += 3) {
          const double wave = 2.0 * std::numbers::pi / random.Between(80.0, 500.0);
          const double direction = random.Between(0.0, 2.0 * std::numbers::pi);
          cell.shadow[i] = static_cast<float>(wave * std::cos(direction));
          cell.shadow[i + 1] = static_cast<float>(wave * std::sin(direction));
          cell.shadow[i + 2] = static_cast<float>(random.Between(0.0, 2.0 * std::numbers::pi));
        }
        cells_.push_back(cell);
      }
    }
  }
}

void Layer::SetHole(const PlanePoint& middle, double radius_m, double loss_db) {
  hole_ = middle;
  hole_radius_m_ = radius_m;
  hole_loss_db_ = loss_db;
}

void Layer::FindCandidates(const PlanePoint& at) {
  std::vector<std::pair<double, const Cell*>> by_distance;
  by_distance.reserve(cells_.size());
  for (const Cell& cell : cells_) by_distance.emplace_back(DistanceBetween(cell.at, at), &cell);
  const std::size_t count = std::min(kCandidates, by_distance.size());
  std::partial_sort(by_distance.begin(), by_distance.begin() + static_cast<std::ptrdiff_t>(count), by_distance.end());
  candidates_.clear();
  for (std::size_t i = 0; i < count; ++i) candidates_.push_back(by_distance[i].second);
  candidates_at_ = at;
}

// Path loss of 3GPP TR 36.942, antenna pattern of 70 degrees, shadowing from four waves.
double Layer::LevelOf(const Cell& cell, const PlanePoint& at) const {
  const double east = at.east_m - cell.at.east_m;
  const double north = at.north_m - cell.at.north_m;
  const double distance_km = std::max(std::hypot(east, north), kNearest_m) / 1000.0;
  double angle = std::atan2(east, north) / kDegree - cell.azimuth_deg;
  angle -= 360.0 * std::round(angle / 360.0);
  const double pattern_db = std::min(12.0 * (angle / 70.0) * (angle / 70.0), 20.0);
  double shadow = 0.0;
  for (std::size_t i = 0; i < cell.shadow.size(); i += 3)
    shadow += std::sin(cell.shadow[i] * at.east_m + cell.shadow[i + 1] * at.north_m + cell.shadow[i + 2]);
  const double shadow_db = shadow * kShadowDeviation_db / std::numbers::sqrt2;
  return style_.power_dbm - 37.6 * std::log10(distance_km) - pattern_db + shadow_db;
}

std::span<const CellLevel> Layer::Look(const PlanePoint& at) {
  if (candidates_.empty() || DistanceBetween(at, candidates_at_) > kCandidateRefresh_m) FindCandidates(at);
  const double loss_db = loss_db_ + (DistanceBetween(at, hole_) < hole_radius_m_ ? hole_loss_db_ : 0.0);
  levels_.clear();
  for (const Cell* cell : candidates_) levels_.push_back({cell, LevelOf(*cell, at) - loss_db});
  std::sort(levels_.begin(), levels_.end(),
            [](const CellLevel& a, const CellLevel& b) { return a.level_dbm > b.level_dbm; });
  return levels_;
}

Serving::Change Serving::Update(std::span<const CellLevel> levels) {
  const auto mine = std::find_if(levels.begin(), levels.end(), [&](const CellLevel& l) { return l.cell == cell_; });
  const CellLevel& best = levels.front();
  const bool lost = mine == levels.end();
  better_for_ = !lost && best.level_dbm > mine->level_dbm + kHysteresis_db ? better_for_ + 1 : 0;
  if (!lost && better_for_ < kTimeToTrigger) {
    level_dbm_ = mine->level_dbm;
    return Change::kNone;
  }
  const Change change = cell_ ? Change::kNew : Change::kFirst;
  cell_ = best.cell;
  level_dbm_ = best.level_dbm;
  better_for_ = 0;
  return change;
}

}  // namespace loom::simulation
