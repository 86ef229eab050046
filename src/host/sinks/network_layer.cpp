#include "host/sinks/network_layer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "components/note_kinds.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr double kUsualBeamWidth = 65;
constexpr double kDegreesAPoint = 7.5;
constexpr double kMetresADegree = 111'195;  // of a sphere of 6,371 km
constexpr std::int64_t kMostExact = 1ll << 53;

double Radians(double degrees) { return degrees * std::numbers::pi / 180; }

// Across the antimeridian longitudes go on beyond 180 degrees: a ring in one piece.
GeoPoint Away(const GeoPoint& from, double azimuth, double distance_m) {
  const double shrink = std::max(std::cos(Radians(from.latitude)), 0.01);
  const double north = distance_m * std::cos(Radians(azimuth)) / kMetresADegree;
  const double east = distance_m * std::sin(Radians(azimuth)) / kMetresADegree / shrink;
  return {from.longitude + east, std::clamp(from.latitude + north, -90.0, 90.0)};
}

std::string CellText(const NetworkValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return std::to_string(*integer);
  if (const auto* real = std::get_if<double>(&value)) return NumberText(*real);
  if (const auto* text = std::get_if<CString>(&value)) return GbkToUtf8(*text);
  return {};
}

double NumberFrom(const NetworkValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return static_cast<double>(*integer);
  if (const auto* real = std::get_if<double>(&value)) return *real;
  return kNoNumber;
}

ColumnType TypeOfValue(const NetworkValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value))
    return std::abs(*integer) <= kMostExact ? ColumnType::kLong : ColumnType::kText;
  return std::holds_alternative<double>(value) ? ColumnType::kReal : ColumnType::kText;
}

}  // namespace

std::vector<GeoPoint> SectorRing(const GeoPoint& cell, double azimuth, double beam_width, double radius_m) {
  const bool is_circle = std::isnan(azimuth) || beam_width >= 360;
  const double width = is_circle ? 360 : beam_width;
  const double first = is_circle ? 0 : azimuth - width / 2;
  const int steps = std::max(2, static_cast<int>(std::ceil(width / kDegreesAPoint)));
  std::vector<GeoPoint> ring;
  if (!is_circle) ring.push_back(cell);
  for (int step = 0; step <= steps; ++step) ring.push_back(Away(cell, first + width * step / steps, radius_m));
  ring.back() = is_circle ? ring.front() : ring.back();
  if (!is_circle) ring.push_back(cell);
  std::ranges::reverse(ring);  // against the clock
  return ring;
}

NetworkLayer::NetworkLayer(NetworkDatabase& database, const CString& table, std::span<const CString> columns,
                           const CellDrawing& drawing)
    : rows_(database.ListRows(table)), drawing_(drawing) {
  schema_.name = GbkToUtf8(table);
  schema_.description = "network elements";
  schema_.source = table;
  schema_.shape = drawing.shape;
  schema_.rows = static_cast<std::int64_t>(rows_.size());
  const std::vector<CString> all = AllColumns(table);
  for (const CString& name : columns.empty() ? std::span<const CString>(all) : columns) {
    const auto found = std::ranges::find_if(all, [&](const CString& known) { return known.CompareNoCase(name) == 0; });
    if (found == all.end()) throw Error(schema_.name + " has no column \"" + GbkToUtf8(name) + "\"");
    AddColumn(std::ranges::find(all, name) != all.end() ? name : *found);
  }
}

std::vector<CString> NetworkLayer::AllColumns(const CString& table) const {
  std::vector<CString> all = NetworkDatabase::ColumnsOf(table);
  for (const NetworkRow& row : rows_) {
    for (const auto& [name, value] : row)
      if (std::ranges::find(all, name) == all.end()) all.push_back(name);
  }
  return all;
}

const NetworkValue* NetworkLayer::ValueOf(const NetworkRow& row, const CString& column) const {
  const auto found = std::ranges::find(row, column, &NetworkRow::value_type::first);
  return found != row.end() ? &found->second : nullptr;
}

double NetworkLayer::NumberOf(const NetworkRow& row, const char* column) const {
  const NetworkValue* const value = ValueOf(row, column);
  return value != nullptr ? NumberFrom(*value) : kNoNumber;
}

// Texts where one of the values is a text, numbers otherwise.
void NetworkLayer::AddColumn(const CString& name) {
  bool has_text = false;
  bool has_real = false;
  bool has_value = false;
  for (const NetworkRow& row : rows_) {
    const NetworkValue* const value = ValueOf(row, name);
    if (value == nullptr || std::holds_alternative<std::monostate>(*value)) continue;
    has_value = true;
    has_text = has_text || TypeOfValue(*value) == ColumnType::kText;
    has_real = has_real || TypeOfValue(*value) == ColumnType::kReal;
  }
  columns_.push_back(name);
  schema_.columns.push_back({.name = GbkToUtf8(name),
                             .unit = {},
                             .type = has_text || !has_value ? ColumnType::kText
                                     : has_real             ? ColumnType::kReal
                                                            : ColumnType::kLong});
}

void NetworkLayer::Take(RowBlock& block, std::size_t at) const {
  const NetworkRow& row = rows_[next_row_ + at];
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const NetworkValue* const value = ValueOf(row, columns_[column]);
    if (schema_.columns[column].IsText())
      block.columns[column].texts[at] = value != nullptr ? block.Keep(CellText(*value)) : std::string_view();
    else
      block.columns[column].numbers[at] = value != nullptr ? NumberFrom(*value) : kNoNumber;
  }
  const GeoPoint cell{NumberOf(row, "Longitude"), NumberOf(row, "Latitude")};
  if (std::isnan(cell.longitude) || std::isnan(cell.latitude)) return;
  if (std::abs(cell.longitude) > 180 || std::abs(cell.latitude) > 90) {
    CurrentNotes().Add("position outside of the earth"_note, schema_.source,
                       "row " + std::to_string(next_row_ + at + 1),
                       NumberText(cell.longitude) + ", " + NumberText(cell.latitude) + ": the row has no position");
    return;
  }
  if (drawing_.shape == LayerShape::kPoint) {
    block.points[at] = cell;
    return;
  }
  const double width = NumberOf(row, "BeamWidth");
  block.rings[at] = SectorRing(cell, NumberOf(row, "Azimuth"), width > 0 ? width : kUsualBeamWidth, drawing_.radius_m);
}

bool NetworkLayer::Next(RowBlock& block) {
  block.Start(schema_, static_cast<std::int64_t>(next_row_) + 1);
  block.rows = std::min(RowBlock::kMostRows, rows_.size() - next_row_);
  for (std::size_t at = 0; at < block.rows; ++at) Take(block, at);
  next_row_ += block.rows;
  return block.rows > 0;
}

}  // namespace loom
