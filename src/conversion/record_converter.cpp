#include "conversion/record_converter.h"

#include <cmath>

#include "components/measures.h"
#include "components/project.h"
#include "components/records/blocks_td.h"
#include "conversion/ie_ids.h"

namespace loom {
namespace {

constexpr double kMissing = -1.0;  // coordinate of a marked position

bool IsMissing(double longitude, double latitude) { return longitude == kMissing || latitude == kMissing; }

}  // namespace

bool IsGeographic(double longitude, double latitude) {
  return std::abs(longitude) <= 180.0 && std::abs(latitude) <= 90.0;
}

Position ValidPosition(const CTestdataBase& record, bool marked) {
  Position position{record.longitude, record.latitude};
  if (marked ? position.longitude == kMissing : !(std::abs(position.longitude) <= 180.0)) {
    position.longitude = kInvalidDouble;
  }
  if (marked ? position.latitude == kMissing : !(std::abs(position.latitude) <= 90.0)) {
    position.latitude = kInvalidDouble;
  }
  return position;
}

double CRecordConverter::DistanceToCell(std::int32_t cell_key, double longitude, double latitude,
                                        struct_STREAMINFO& stream) {
  return IsGeographic(longitude, latitude) ? DistanceFromValid(cell_key, longitude, latitude, stream) : kInvalidDouble;
}

double CRecordConverter::DistanceToCellMarked(std::int32_t cell_key, double longitude, double latitude,
                                              struct_STREAMINFO& stream) {
  return IsMissing(longitude, latitude) ? kInvalidDouble : DistanceFromValid(cell_key, longitude, latitude, stream);
}

double CRecordConverter::DistanceFromValid(std::int32_t cell_key, double longitude, double latitude,
                                           struct_STREAMINFO& stream) {
  if (cell_key == -1 || cell_key == -2 || cell_source_ == nullptr) return kInvalidDouble;
  if (cell_key != stream.cell_key) {
    stream.cell_key = cell_key;
    cell_source_->GetCellPosition(cell_key, stream.cell.longitude, stream.cell.latitude);
  }
  if (!IsGeographic(stream.cell.longitude, stream.cell.latitude)) return kInvalidDouble;
  return CalDistance(longitude, latitude, stream.cell.longitude, stream.cell.latitude);
}

double CRecordConverter::TravelStep(double longitude, double latitude, struct_STREAMINFO& stream) {
  if (IsGeographic(longitude, latitude)) return StepFromValid(longitude, latitude, stream);
  stream.previous = Position();
  return 0.0;
}

double CRecordConverter::TravelStepMarked(double longitude, double latitude, struct_STREAMINFO& stream) {
  if (!IsMissing(longitude, latitude)) return StepFromValid(longitude, latitude, stream);
  stream.previous = Position();
  return 0.0;
}

double CRecordConverter::StepFromValid(double longitude, double latitude, struct_STREAMINFO& stream) {
  double step_m = 0.0;
  if (stream.previous.longitude != kInvalidDouble && stream.previous.latitude != kInvalidDouble) {
    step_m = CalDistance(longitude, latitude, stream.previous.longitude, stream.previous.latitude);
    stream.travel_step_m = step_m;
  }
  stream.previous = {longitude, latitude};
  return step_m;
}

bool CRecordConverter::FollowNetworkMode(const CTestdataBase& record) {
  if (record.kind == kRecordTdMessage) {
    network_mode_ = kNetworkModeTdScdma;
  } else if (record.network_mode != kNetworkModeKeep && record.network_mode != kNetworkModeKeepToo) {
    network_mode_ = record.network_mode;
  }
  return network_mode_ == kNetworkModeGsm;
}

std::unique_ptr<CMemDataRow> CRecordConverter::MakeRow(std::size_t room) {
  auto row = std::make_unique<CMemDataRow>();
  row->Reserve(room);
  return row;
}

std::unique_ptr<CMemDataRow> CRecordConverter::StartRow(const RowStart& start, const CTestdataBase& record,
                                                        struct_STREAMINFO& stream, std::int32_t selection_switch) {
  auto row = MakeRow(start.room);
  writer_.Begin(stream, selection_switch, *row);
  const auto write = [&](std::int32_t id, uniFieldValue value) {
    start.replaces ? row->AddIE(id, value) : row->QuickAddIE(id, value);
  };

  row->SetSynFieldValue(stream.row_number);
  write(ie::kMessageId, uniFieldValue(stream.row_number));
  const double time_s = record.time.toSecond() + stream.day_offset_s;
  row->SetRecordTime(time_s);
  stream.time_s.Widen(time_s);

  const bool has_marked_positions = stream.log_version == kLogVersionMarkedPositions;
  const bool marked = start.distances_follow_log_version && has_marked_positions;
  if (start.travel == RowStart::Travel::kEveryStream || stream.stream_type == kStreamOutdoorHandset) {
    const double step_m = marked ? TravelStepMarked(record.longitude, record.latitude, stream)
                                 : TravelStep(record.longitude, record.latitude, stream);
    writer_.Put(ie::kTravelStep, static_cast<float>(step_m));
  }
  if (start.cell_distance && cell_distance_switch_ && record.serving_cell && writer_.IsSelected(ie::kCellDistance)) {
    const std::int32_t key = record.serving_cell->cell_key;
    const double distance_m = marked ? DistanceToCellMarked(key, record.longitude, record.latitude, stream)
                                     : DistanceToCell(key, record.longitude, record.latitude, stream);
    writer_.Put(ie::kCellDistance, static_cast<float>(distance_m));
  }

  const Position position = ValidPosition(record, start.position_follows_log_version && has_marked_positions);
  write(ie::kLongitude, uniFieldValue(static_cast<float>(position.longitude)));
  write(ie::kLatitude, uniFieldValue(static_cast<float>(position.latitude)));
  row->QuickAddIE(ie::kTimeStamp, uniFieldValue(static_cast<std::int32_t>(record.time_stamp)));
  if (position.longitude != kInvalidDouble) stream.longitude.Widen(position.longitude);
  if (position.latitude != kInvalidDouble) stream.latitude.Widen(position.latitude);

  if (start.records_record_id) {
    writer_.Put(ie::kRecordId, record.record_id);
  } else {
    write(ie::kRecordId, uniFieldValue(record.record_id));
  }
  return row;
}

void CRecordConverter::WriteRecordNumbers(const CTestdataBase& record) {
  writer_.Put(5, std::int32_t{record.ie5});
  WriteRecordNumbersFrom6(record);
}

void CRecordConverter::WriteRecordNumbersFrom6(const CTestdataBase& record) {
  writer_.Put(6, std::int32_t{record.ie6});
  if (record.ie7 > 0) writer_.Put(7, record.ie7);
  if (record.model_code != 0) writer_.Put(ie::kModelCode, std::int32_t{static_cast<std::uint16_t>(record.model_code)});
  writer_.Put(ie::kRecordKind, record.kind);
}

void CRecordConverter::WriteRecordHeader(const CTestdataBase& record) {
  if (record.text.data() != nullptr) {
    writer_.Put(ie::kRecordText, uniFieldValue::Text(writer_.row().AddText(record.text)));
  }
  WriteRecordNumbers(record);
  writer_.Put(ie::kNetworkMode, record.network_mode);
}

void CRecordConverter::BeginNetworkModeChange(const CTestdataBase& record, struct_STREAMINFO& stream) {
  mode_changed_ =
      stream.row_number > 1 && record.network_mode_changed != 0 && record.network_mode != kNetworkModeKeepToo;
  if (!mode_changed_) return;
  ids_before_change_ = stream.ie_ids;
  stream.previous = Position();
}

void CRecordConverter::InvalidateOldMode() {
  if (!mode_changed_) return;
  mode_changed_ = false;
  struct_STREAMINFO& stream = writer_.stream();
  CMemDataRow& row = writer_.row();
  IdSet held;
  for (const std::int32_t id : row.GetParamID()) held.Insert(id);
  ids_before_change_.ForEach([&](std::int32_t id) {
    if (id == ie::kMessageId || held.Contains(id)) return;
    const MemTableFieldTypeEnum type = g_memDataType->GetType(id);
    if (type == kFieldShort || type == kFieldInt) {
      row.QuickAddIE(id, InvalidValue(kFieldInt));
    } else if (type == kFieldFloat) {
      row.QuickAddIE(id, InvalidValue(kFieldFloat));
    } else {
      return;
    }
    if (id == ie::kPccpchRscp) stream.primary_rscp = kInvalidShort;
    if (id == ie::kTimeslot0Value) stream.timeslot0_iscp = kInvalidShort;
  });
}

}  // namespace loom
