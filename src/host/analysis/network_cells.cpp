#include "host/analysis/network_cells.h"

#include <cmath>
#include <limits>

#include "components/measures.h"
#include "host/netdb/network_database.h"

namespace loom::analysis {
namespace {

struct CellTable {
  const char* table;
  std::string_view protocol;
};
constexpr CellTable kCellTables[] = {{"tbl_Cell", "TD-SCDMA"}, {"tbl_Cell_GSM", "GSM"}, {"tbl_Cell_LTE", "LTE"}};

constexpr double kFarthest_m = 50'000.0;  // a cell farther away does not serve

std::optional<double> RealOf(const NetworkValue& value) {
  if (const auto* const number = std::get_if<std::int64_t>(&value)) return static_cast<double>(*number);
  if (const auto* const real = std::get_if<double>(&value)) return *real;
  return std::nullopt;
}

struct RealColumn {
  std::string_view name;
  std::optional<double> NetworkCell::*member;
};
constexpr RealColumn kRealColumns[] = {{"Azimuth", &NetworkCell::azimuth}, {"BeamWidth", &NetworkCell::beam_width}};

struct NumberColumn {
  std::string_view name;
  std::optional<std::int64_t> NetworkCell::*member;
};
constexpr NumberColumn kNumberColumns[] = {
    {"LAC", &NetworkCell::lac},
    {"CI", &NetworkCell::ci},
    {"RNCID", &NetworkCell::rnc},
    {"UARFCN", &NetworkCell::uarfcn},
    {"CellParameterID", &NetworkCell::cell_parameter_id},
    {"BCCH", &NetworkCell::bcch},
    {"BSIC", &NetworkCell::bsic},
    {"PCI", &NetworkCell::pci},
    {"EARFCN", &NetworkCell::earfcn},
    {"Frequency", &NetworkCell::frequency_mhz},
};

void TakeNumber(NetworkCell& cell, const CString& column, double number) {
  for (const RealColumn& known : kRealColumns)
    if (column.view() == known.name) cell.*known.member = number;
  for (const NumberColumn& known : kNumberColumns)
    if (column.view() == known.name) cell.*known.member = static_cast<std::int64_t>(std::floor(number));
}

// Nothing for a cell without a position.
std::optional<NetworkCell> CellFrom(const NetworkRow& row, std::string_view protocol) {
  NetworkCell cell{.protocol = protocol};
  std::optional<double> longitude;
  std::optional<double> latitude;
  CString site;
  for (const auto& [column, value] : row) {
    if (const auto* const text = std::get_if<CString>(&value)) {
      if (column.view() == "CellName") cell.name = *text;
      if (column.view() == "SiteName") site = *text;
    } else if (const auto number = RealOf(value)) {
      if (column.view() == "Longitude") longitude = number;
      if (column.view() == "Latitude") latitude = number;
      TakeNumber(cell, column, *number);
    }
  }
  if (!longitude || !latitude || std::abs(*longitude) > 180.0 || std::abs(*latitude) > 90.0) return std::nullopt;
  cell.longitude = *longitude;
  cell.latitude = *latitude;
  if (cell.name.IsEmpty()) cell.name = site;
  return cell;
}

bool Is(const std::optional<std::int64_t>& known, std::int64_t number) { return known == number; }
bool MayBe(const std::optional<std::int64_t>& known, std::int64_t number) { return !known || known == number; }

// A key of LAC or RNC id and the 16 bits of a cell id, or the whole cell identity.
bool HasTdKey(const NetworkCell& cell, std::int64_t key) {
  if (!cell.ci) return false;
  const auto joined = [&](const std::optional<std::int64_t>& high) {
    return high && ((*high << 16) | (*cell.ci & 0xFFFF)) == key;
  };
  return *cell.ci == key || joined(cell.lac) || joined(cell.rnc);
}

bool HasLteKey(const NetworkCell& cell, std::int64_t key) {
  const std::int64_t mhz = key & 0xFFFF;
  return Is(cell.pci, key >> 16) && (mhz == 0 || MayBe(cell.frequency_mhz, mhz));
}

bool Fits(const NetworkCell& cell, const CellIdentity& identity) {
  switch (identity.key) {
    case CellKey::kLacCi:
      return Is(cell.lac, identity.first) && Is(cell.ci, identity.second);
    case CellKey::kTdKey:
      return HasTdKey(cell, identity.first);
    case CellKey::kUarfcnCpi:
      return Is(cell.uarfcn, identity.first) && Is(cell.cell_parameter_id, identity.second);
    case CellKey::kBcchBsic:
      return Is(cell.bcch, identity.first) && Is(cell.bsic, identity.second);
    case CellKey::kLteKey:
      return HasLteKey(cell, identity.first);
    case CellKey::kPciEarfcn:
      return Is(cell.pci, identity.first) && MayBe(cell.earfcn, identity.second);
    case CellKey::kPci:
      return Is(cell.pci, identity.first);
    default:
      return Is(cell.ci, identity.first);
  }
}

double DistanceTo(const NetworkCell& cell, const ServedCell& served) {
  const auto count = static_cast<double>(served.positions);
  return CalDistance(cell.longitude, cell.latitude, served.longitude_sum / count, served.latitude_sum / count);
}

}  // namespace

std::vector<NetworkCell> ReadNetworkCells(NetworkDatabase& network) {
  std::vector<NetworkCell> cells;
  for (const CellTable& table : kCellTables) {
    for (const NetworkRow& row : network.ListRows(table.table)) {
      if (auto cell = CellFrom(row, table.protocol)) cells.push_back(std::move(*cell));
    }
  }
  return cells;
}

std::optional<std::size_t> CellFinder::Find(const ServedCell& served, std::string_view protocol) const {
  std::optional<std::size_t> found;
  std::size_t fitting = 0;
  double nearest_m = kFarthest_m;
  for (std::size_t at = 0; at < cells_.size(); ++at) {
    const NetworkCell& cell = cells_[at];
    if (cell.protocol != protocol || !Fits(cell, served.identity)) continue;
    ++fitting;
    const double distance_m = served.positions > 0 ? DistanceTo(cell, served) : 0.0;
    if (found && distance_m >= nearest_m) continue;
    if (distance_m > kFarthest_m) continue;
    found = at;
    nearest_m = distance_m;
  }
  return served.positions > 0 || fitting == 1 ? found : std::nullopt;
}

}  // namespace loom::analysis
