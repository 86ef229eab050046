#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "host/simulation/random.h"
#include "host/simulation/route.h"

namespace loom::simulation {

struct Cell {
  PlanePoint at;
  double azimuth_deg = 0.0;
  std::int32_t lac = 0;
  std::int32_t ci = 0;
  std::int32_t channel = 0;        // UARFCN, ARFCN or EARFCN
  std::int32_t code = 0;           // cell parameter id, BSIC or physical cell id
  std::array<float, 12> shadow{};  // wave vectors (1/m) and phases of its shadowing

  std::int32_t Key() const { return lac << 16 | ci; }
};

struct CellLevel {
  const Cell* cell = nullptr;
  double level_dbm = 0.0;
};

// What tells the networks apart.
struct LayerStyle {
  double site_distance_m;
  double power_dbm;  // what a cell is received with at 1 km in its main direction without shadowing
  std::span<const std::int32_t> channels;
  std::int32_t codes;  // number of codes
  std::int32_t lac;    // the first one
  std::int32_t first_ci;
};
extern const LayerStyle kTdLayer;
extern const LayerStyle kGsmLayer;
extern const LayerStyle kLteLayer;

// The cells of one network: sites of three sectors on a hexagonal grid.
class Layer {
 public:
  Layer(const LayerStyle& style, double extent_m, std::uint64_t seed);

  const std::vector<Cell>& cells() const { return cells_; }
  void SetLoss(double loss_db) { loss_db_ = loss_db; }  // of walls around everything
  // Every level is `loss_db` lower within the circle.
  void SetHole(const PlanePoint& middle, double radius_m, double loss_db);
  // Levels around a point without fast fading, strongest first; valid until the next call.
  std::span<const CellLevel> Look(const PlanePoint& at);

 private:
  void FindCandidates(const PlanePoint& at);
  double LevelOf(const Cell& cell, const PlanePoint& at) const;

  const LayerStyle& style_;
  std::vector<Cell> cells_;
  std::vector<const Cell*> candidates_;
  PlanePoint candidates_at_;
  std::vector<CellLevel> levels_;
  PlanePoint hole_;
  double hole_radius_m_ = 0.0;
  double hole_loss_db_ = 0.0;
  double loss_db_ = 0.0;
};

// The cell that a handset is on.
class Serving {
 public:
  enum class Change { kNone, kFirst, kNew };

  // `levels` strongest first.
  Change Update(std::span<const CellLevel> levels);
  const Cell* cell() const { return cell_; }
  double level_dbm() const { return level_dbm_; }
  void Leave() { cell_ = nullptr; }

 private:
  const Cell* cell_ = nullptr;
  double level_dbm_ = 0.0;
  int better_for_ = 0;  // looks during which another cell was clearly better
};

}  // namespace loom::simulation
