#include "host/sinks/stream_layer.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "components/note_kinds.h"
#include "components/project.h"
#include "host/sinks/layer_time.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr std::int32_t kLongitudeIe = 2379;
constexpr std::int32_t kLatitudeIe = 2380;

std::set<std::int32_t> IdsOf(const RowMap& rows) {
  std::set<std::int32_t> ids;
  std::vector<std::int32_t> last;  // rows of a stream are mostly alike
  for (const auto& [number, row] : rows) {
    const auto& of_row = row->GetParamID();
    if (std::ranges::equal(last, of_row)) continue;
    last.assign(of_row.begin(), of_row.end());
    ids.insert(last.begin(), last.end());
  }
  return ids;
}

ColumnType TypeOf(MemTableFieldTypeEnum type) {
  switch (type) {
    case kFieldBool:
      return ColumnType::kBool;
    case kFieldText:
      return ColumnType::kText;
    case kFieldShort:
      return ColumnType::kShort;
    case kFieldFloat:
      return ColumnType::kReal;
    default:
      return ColumnType::kInt;
  }
}

std::string RowText(std::int64_t row) { return "row " + std::to_string(row); }

bool IsTime(double seconds) {
  char text[kUtcTextBytes + 8];
  return PutUtc(seconds, text) != text;
}

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

StreamLayer::StreamLayer(IDataStream& stream, const CString& source, std::span<const CString> elements)
    : cursor_(*stream.GetRows()),
      longitude_(cursor_.AddColumn(kLongitudeIe)),
      latitude_(cursor_.AddColumn(kLatitudeIe)) {
  schema_.name = GbkNameToUtf8(stream.GetName());
  schema_.description = GbkNameToUtf8(source);
  for (const CString& part : {stream.GetProtocol(), stream.GetDeviceName()})
    if (!part.IsEmpty()) schema_.description += ", " + GbkNameToUtf8(part);
  schema_.source = source;
  schema_.is_track = true;
  schema_.rows = static_cast<std::int64_t>(stream.GetRows()->size());
  AddRecordTime();
  if (elements.empty()) {
    for (const std::int32_t id : IdsOf(*stream.GetRows()))
      if (id != kRecordTimeIe && id != kLongitudeIe && id != kLatitudeIe) AddElement(id);
  }
  for (const CString& name : elements) {
    const std::int32_t id = g_sysProject->GetIEID(name);
    if (id < 0) throw Error("the catalogue has no information element \"" + GbkToUtf8(name) + "\"");
    if (id != kRecordTimeIe) AddElement(id);
  }
  StreamLayer::GoToStart();
}

void StreamLayer::AddRecordTime() {
  schema_.columns.push_back({.name = "RecordTime", .unit = {}, .type = ColumnType::kTime});
  columns_.push_back(cursor_.AddColumn(kRecordTimeIe));
}

void StreamLayer::AddElement(std::int32_t ie_id) {
  const std::uint32_t column = cursor_.AddColumn(ie_id);
  if (std::ranges::find(columns_, column) != columns_.end()) return;  // named twice
  columns_.push_back(column);
  const CString name = g_sysProject->GetIEName(ie_id);
  LayerColumn& added = schema_.columns.emplace_back();
  added.name = name.IsEmpty() ? "IE_" + std::to_string(ie_id) : GbkToUtf8(name);
  added.type = TypeOf(g_memDataType->GetType(ie_id));
  added.unit = GbkToUtf8(g_sysProject->GetIEUnitByIEName(name));
  added.has_range = g_sysProject->GetIEValueRangeByName(name, added.maximum, added.minimum);
}

void StreamLayer::GoToStart() {
  cursor_.GoToFirstRow();
  next_row_ = 1;
}

GeoPoint StreamLayer::PointOf(std::int64_t row) const {
  const GeoPoint point{cursor_.Number(longitude_), cursor_.Number(latitude_)};
  if (std::isnan(point.longitude) || std::isnan(point.latitude)) return {};
  if (std::abs(point.longitude) <= 180 && std::abs(point.latitude) <= 90) return point;
  CurrentNotes().Add("position outside of the earth"_note, schema_.source, RowText(row),
                     NumberText(point.longitude) + ", " + NumberText(point.latitude) + ": the row has no position");
  return {};
}

void StreamLayer::Take(RowBlock& block, std::size_t at) {
  const std::int64_t row = block.first_row + static_cast<std::int64_t>(at);
  block.points[at] = PointOf(row);
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (schema_.columns[column].IsText()) {
      const std::string_view text = cursor_.Text(columns_[column]);
      block.columns[column].texts[at] = IsAscii(text) ? block.Keep(text) : block.Keep(GbkToUtf8(text));
    } else {
      block.columns[column].numbers[at] = cursor_.Number(columns_[column]);
    }
  }
  double& time = block.columns.front().numbers[at];
  if (!std::isnan(time) && !IsTime(time)) {
    CurrentNotes().Add("time outside of the calendar"_note, schema_.source, RowText(row), NumberText(time) + " s");
    time = kNoNumber;
  }
  if (cursor_.Row()->GetFFTReportPoints() > 0)
    CurrentNotes().Add("spectrum not in a layer"_note, schema_.source, RowText(row),
                       std::to_string(cursor_.Row()->GetFFTReportPoints()) + " samples left out");
}

bool StreamLayer::Next(RowBlock& block) {
  block.Start(schema_, next_row_);
  for (; block.rows < RowBlock::kMostRows && next_row_ <= schema_.rows; ++block.rows, ++next_row_) {
    Take(block, block.rows);
    cursor_.Move(1);
  }
  return block.rows > 0;
}

}  // namespace loom
