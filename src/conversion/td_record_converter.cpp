#include "conversion/td_record_converter.h"

#include "conversion/field_table.h"
#include "conversion/ie_ids.h"

namespace loom {
namespace {

// clang-format off

// Serving cell of a TD-SCDMA handset.
constexpr auto kServingCellFields = FieldTable<CIE_SCell_Para>({
    {&CIE_SCell_Para::cell_parameter_id, IE{140}},
    Own<&CIE_SCell_Para::ie142>(),
    Own<&CIE_SCell_Para::ie143>(),
    Own<&CIE_SCell_Para::ie144>(),
    {&CIE_SCell_Para::lac,               IE{145}},
    {&CIE_SCell_Para::cell_key,          IE{146}},
    {&CIE_SCell_Para::uarfcn,            IE{147}},
    Own<&CIE_SCell_Para::ie149>(kOnlyWithSettings),
    Own<&CIE_SCell_Para::ie150>(kOnlyWithSettings),
    Own<&CIE_SCell_Para::ie151>(kOnlyWithSettings),
    Own<&CIE_SCell_Para::ie158>(kOnlyWithSettings),
    Own<&CIE_SCell_Para::ie152>(),
    Own<&CIE_SCell_Para::ie153>(),
    Own<&CIE_SCell_Para::ie154>(),
    Own<&CIE_SCell_Para::ie26765>(),
    Own<&CIE_SCell_Para::ie155>(),
    Own<&CIE_SCell_Para::ie156>(),
    Own<&CIE_SCell_Para::ie157>(),
    Own<&CIE_SCell_Para::ie169>(kOnlyWithSettings),
    Own<&CIE_SCell_Para::ie159>(),
    Own<&CIE_SCell_Para::ie5261>(),
    Own<&CIE_SCell_Para::ie5260>(),
});

constexpr auto kBlock252Fields = FieldTable<TdBlock252>({
    Own<&TdBlock252::ie5403>(),
});

constexpr Rule kMinus255Invalid = kAsIs.Marked({.invalid = -255});
constexpr auto kCellIdentityFields = FieldTable<TdCellIdentities>({
    Own<&TdCellIdentities::ie26766>(kMinus255Invalid),
    Own<&TdCellIdentities::ie26767>(kMinus255Invalid),
    Own<&TdCellIdentities::ie26768>(kMinus255Invalid),
    Own<&TdCellIdentities::ie26769>(kMinus255Invalid),
});

// clang-format on

constexpr std::int32_t kUraIdentityCount = 168;
constexpr std::int32_t kUraIdentities = 160;
constexpr std::int32_t kMaxUraIdentities = 7;

}  // namespace

void CTDRecordConverter::SetImportSettings(const ImpIESettings& settings) {
  CRecordConverter::SetImportSettings(settings);
  gsm_.SetImportSettings(settings);
  blocks_.SetImportSettings(settings);
  block_table_.SetImportSettings(settings);
  lte_measurements_.SetImportSettings(settings);
  lte_signalling_.SetImportSettings(settings);
}

void CTDRecordConverter::ResetForLog() {
  SetNetworkMode(kNetworkModeTdScdma);
  gsm_.SetNetworkMode(kNetworkModeTdScdma);
  lte_measurements_.ResetForLog();
  lte_signalling_.ResetForLog();
}

void CTDRecordConverter::ClearCarryRows() {
  for (CarryRow& row : carry_rows_) row.Clear();
}

CTDRecordConverter::Row CTDRecordConverter::ConvertUE(const CTestdataBase& record, const StateRecord& state,
                                                      struct_STREAMINFO& stream, std::int32_t selection_switch) {
  if (record.kind == kRecordEvent) return ConvertDeviceEvent(record, stream, selection_switch);
  if (gsm_.FollowNetworkMode(record)) {
    gsm_.SetCellSource(cell_source_);
    return gsm_.Convert(record, stream, selection_switch);
  }

  BeginNetworkModeChange(record, stream);
  Row row = StartRow(kHandsetRow, record, stream, selection_switch);
  WriteHandsetHeader(record);
  CarryRow* carry = CarryRowOf(record);
  if (record.serving_cell) {
    WriteServingCell(*record.serving_cell, carry);
    WriteUraIdentities(*record.serving_cell, carry);
  }
  if (record.timeslot_measurements) WriteTimeslotMeasurements(*record.timeslot_measurements);
  if (record.neighbours) WriteNeighbours(*record.neighbours);
  WriteEvent(record);
  WriteLayer3Header(record);
  if (carry) carry->AppendTo(*row);
  if (record.channels) WriteChannels(*record.channels);
  if (record.codes) WriteCodes(*record.codes);
  if (record.physical_channels) WritePhysicalChannels(*record.physical_channels);
  WriteFields<kBlock252Fields>(writer_, record.block252);
  WriteFields<kCellIdentityFields>(writer_, record.cell_identities);
  signalling_.ApplySignalling(record, state, writer_);
  if (record.system_info) ConvertSystemInfo(*record.system_info);
  if (record.td_cell_list) ConvertCellList(*record.td_cell_list);
  blocks_.Convert(record, stream, selection_switch, *row);
  block_table_.Convert(record, stream, selection_switch, *row);
  InvalidateOldMode();
  return row;
}

CTDRecordConverter::Row CTDRecordConverter::ConvertHeaderOnly(const CTestdataBase& record, const StateRecord&,
                                                              struct_STREAMINFO& stream,
                                                              std::int32_t selection_switch) {
  Row row = StartRow(kHeaderRow, record, stream, selection_switch);
  WriteRecordHeader(record);
  ConvertAutoTestBlock(record);
  return row;
}

void CTDRecordConverter::WriteHandsetHeader(const CTestdataBase& record) {
  writer_.PutText(record.text, ie::kRecordText);
  WriteRecordNumbers(record);
  if (record.gsm_rat) writer_.PutIntIfSelected(record.gsm_rat->rat, record.gsm_rat->rat, 26770);
  if (writer_.IsSelected(ie::kNetworkModeSelection)) {
    writer_.PutInt(record.network_mode, record.network_mode, ie::kNetworkMode);
  }
}

CarryRow* CTDRecordConverter::CarryRowOf(const CTestdataBase& record) {
  const std::int32_t device = record.device_number;
  return device >= 1 && device <= kCarryRows ? &carry_rows_[static_cast<std::size_t>(device - 1)] : nullptr;
}

void CTDRecordConverter::WriteServingCell(const CIE_SCell_Para& block, CarryRow* carry) {
  VisitFields<kServingCellFields, TdMarkers>(block, [&](const auto& field, uniFieldValue value) {
    if (field.condition.gate == Condition::Gate::kOnlyWithSettings && settings_empty()) return;
    if (carry) carry->Set(field.ie.id, value);
    if (writer_.IsSelected(field.ie.id)) writer_.Put(field.ie.id, value);
  });
}

void CTDRecordConverter::WriteUraIdentities(const CIE_SCell_Para& block, CarryRow* carry) {
  const std::int32_t count = block.ura_identity_count;
  if (settings_empty() || count < 0 || !writer_.IsSelectedByName(SelectionName::kUraIdentities)) return;
  writer_.PutIntIfSelected(count, count, kUraIdentityCount);
  if (carry) carry->Set(kUraIdentityCount, uniFieldValue(count));
  for (std::int32_t at = 0; count == 0 && at < static_cast<std::int32_t>(block.ura_identities.size()); ++at) {
    if (!writer_.StreamHas(kUraIdentities + at)) continue;
    writer_.Put(kUraIdentities + at, kInvalidInt);
    if (carry) carry->Set(kUraIdentities + at, uniFieldValue(kInvalidInt));
  }
  for (std::int32_t at = 0; count <= kMaxUraIdentities && at < count; ++at) {
    const auto value = ConvertValue<TdMarkers>(kAsIs, block.ura_identities[static_cast<std::size_t>(at)]);
    if (!value) continue;
    writer_.Put(kUraIdentities + at, *value);
    if (carry) carry->Set(kUraIdentities + at, *value);
  }
}

CTDRecordConverter::Row CTDRecordConverter::ConvertLTE(const CTestdataBase& record, const StateRecord&,
                                                       struct_STREAMINFO& stream, std::int32_t selection_switch) {
  if (record.model_code == kModelTn300Lte) return lte_measurements_.Convert(record, stream, selection_switch);
  if (record.model_code == kModelH500Lte) return lte_signalling_.Convert(record, stream, selection_switch);
  return nullptr;
}

}  // namespace loom
