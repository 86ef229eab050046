#include "conversion/gsm_record_converter.h"

#include <string>

#include "conversion/gsm_fields.h"
#include "conversion/ie_ids.h"
#include "conversion/signalling_header.h"

namespace loom {
namespace {

constexpr std::int32_t kDedicatedKind = 32264;
constexpr std::int32_t kFrequencyListText = 31732;
constexpr std::int32_t kNoLayer3Header = 40000;  // in word156

std::string NumberList(RecordList<std::uint8_t> numbers) {
  std::string text;
  for (const std::uint8_t number : numbers) {
    if (!text.empty()) text += ", ";
    text += std::to_string(number);
  }
  return text;
}

void PutTextUnlessEmpty(CRowIEWriter& writer, std::string_view text, std::int32_t id) {
  if (!text.empty()) PutValue(writer, id, text);
}

}  // namespace

std::unique_ptr<CMemDataRow> CGSMRecordConverter::Convert(const CTestdataBase& record, struct_STREAMINFO& stream,
                                                          std::int32_t selection_switch) {
  BeginNetworkModeChange(record, stream);
  auto row = StartRow(kHeaderRow, record, stream, selection_switch);
  WriteRecordHeader(record);
  WriteGsmBlocks(record);
  WriteEvent(record);
  WriteLayer3Header(record);
  if (record.serving_cell) WriteTdServingCell(record);
  if (record.neighbours) WriteTdNeighbours(*record.neighbours);
  if (record.gsm_simple_info) WriteSimpleInfo(*record.gsm_simple_info);
  InvalidateOldMode();
  return row;
}

void CGSMRecordConverter::WriteGsmBlocks(const CTestdataBase& record) {
  WriteFields<kGsmServingCellFields, GsmMarkers>(writer_, record.gsm_serving_cell);
  WriteFields<kGsmReselectionFields, GsmMarkers>(writer_, record.gsm_reselection);
  if (record.gsm_radio) WriteRadio(*record.gsm_radio);
  WriteFields<kGsmDscFields, GsmMarkers>(writer_, record.gsm_dsc);
  if (record.gsm_neighbours) WriteNeighbours(*record.gsm_neighbours);
  WriteFields<kGsmMultislotFields, GsmMarkers>(writer_, record.gsm_multislot_class);
  if (record.gsm_dedicated_channel) WriteDedicatedChannel(*record.gsm_dedicated_channel);
  WriteFields<kGsmDedicatedMeasurementFields, GsmMarkers>(writer_, record.gsm_dedicated_measurements);
  WriteFields<kGsmRadioLinkFields, GsmMarkers>(writer_, record.gsm_radio_link_counter);
  WriteFields<kGsmRatFields, GsmMarkers>(writer_, record.gsm_rat);
  WriteFields<kGsmLlcFields, GsmMarkers>(writer_, record.gsm_llc_qos);
  WriteFields<kGsmRlcFields, GsmMarkers>(writer_, record.gsm_rlc_qos);
}

void CGSMRecordConverter::WriteRadio(const CIE_GSM_SCell_Radio_Info& info) {
  WriteFields<kGsmRadioFields, GsmMarkers>(writer_, info);
  switch (FormOf(info.form)) {
    case ReselectionForm::kC2:
      WriteFields<kGsmC2Fields, GsmMarkers>(writer_, info);
      break;
    case ReselectionForm::kC31:
      WriteFields<kGsmC31Fields, GsmMarkers>(writer_, info);
      break;
    case ReselectionForm::kC32:
      WriteFields<kGsmC32Fields, GsmMarkers>(writer_, info);
      break;
    case ReselectionForm::kNone:
      break;
  }
}

void CGSMRecordConverter::WriteNeighbours(const CIE_GSM_NCell_Info& info) {
  if (info.list_kind != 0) {
    WriteFields<kGsmOtherListFields, GsmMarkers>(writer_, info);
    return;
  }
  const auto passing = PassingFields<kGsmNeighbourFields>(writer_, 0);
  const auto passing_c2 = PassingFields<kGsmNeighbourC2Fields>(writer_, 0);
  const auto passing_c31 = PassingFields<kGsmNeighbourC31Fields>(writer_, 0);
  const auto passing_c32 = PassingFields<kGsmNeighbourC32Fields>(writer_, 0);
  const std::size_t size = UsableEntries(info.count, info.neighbours.size(), kGsmNeighbours);
  for (std::size_t at = 0; at < size; ++at) {
    const GsmNeighbour& entry = info.neighbours[at];
    const auto number = static_cast<std::int32_t>(at);
    WriteEntry<kGsmNeighbourFields, GsmMarkers>(writer_, entry, number, passing);
    switch (FormOf(entry.form)) {
      case ReselectionForm::kC2:
        WriteEntry<kGsmNeighbourC2Fields, GsmMarkers>(writer_, entry, number, passing_c2);
        break;
      case ReselectionForm::kC31:
        WriteEntry<kGsmNeighbourC31Fields, GsmMarkers>(writer_, entry, number, passing_c31);
        break;
      case ReselectionForm::kC32:
        WriteEntry<kGsmNeighbourC32Fields, GsmMarkers>(writer_, entry, number, passing_c32);
        break;
      case ReselectionForm::kNone:
        break;
    }
  }
  WriteFields<kGsmNeighbourListFields, GsmMarkers>(writer_, info);
}

void CGSMRecordConverter::WriteDedicatedChannel(const CIE_GSM_Ded_CH_Info& info) {
  WriteFields<kGsmDedicatedChannelFields, GsmMarkers>(writer_, info);
  if (!info.frequencies) return;
  if (info.frequencies->kind == 0) {
    if (writer_.IsSelected(kDedicatedKind)) writer_.Put(kDedicatedKind, 1);
    WriteFields<kGsmSingleFrequencyFields, GsmMarkers>(writer_, *info.frequencies);
  } else if (info.frequencies->kind == 1) {
    if (writer_.IsSelected(kDedicatedKind)) writer_.Put(kDedicatedKind, 3);
    if (writer_.IsSelected(kFrequencyListText)) {
      PutTextUnlessEmpty(writer_, NumberList(info.frequencies->ie31732), kFrequencyListText);
    }
  }
}

void CGSMRecordConverter::WriteEvent(const CTestdataBase& record) {
  if (IsShownEvent(record.event_id) && writer_.IsSelectedByName(SelectionName::kEvent)) {
    PutEvent(writer_, record.event_id);
  }
}

void CGSMRecordConverter::WriteLayer3Header(const CTestdataBase& record) {
  if (!IsLayer3Message(record.message_id) || record.word156 == kNoLayer3Header) return;
  if (!writer_.IsSelectedByName(SelectionName::kL3)) return;
  writer_.PutInt(record.direction, record.direction, ie::kL3MessageId);
  PutTextUnlessEmpty(writer_, record.layer3_name, ie::kL3Name);
  if (!record.layer3_name.empty()) writer_.stream().l3_names.insert(CString(record.layer3_name));
  const int length = record.raw_message.GetBufferLen();
  writer_.Put(ie::kL3Length, length);
  if (const char* bytes = record.raw_message.GetBuffer(0)) {
    PutValue(writer_, ie::kL3Bytes, std::string_view(bytes, static_cast<std::size_t>(length)));
  }
  writer_.PutInt(record.channel, record.channel, ie::kL3Channel);
}

void CGSMRecordConverter::WriteTdServingCell(const CTestdataBase& record) {
  if (writer_.IsSelected(ie::kNetworkModeSelection)) writer_.Put(ie::kNetworkMode, record.network_mode);
  WriteFields<kGsmTdServingCellFields>(writer_, *record.serving_cell);
}

void CGSMRecordConverter::WriteTdNeighbours(const CIE_NCell_Meas& info) {
  const std::size_t size = UsableEntries(info.count, info.neighbours.size(), kGsmTdNeighbours);
  for (std::size_t at = 0; at < size; ++at) {
    const auto number = static_cast<std::int32_t>(at);
    WriteEntry<kGsmTdNeighbourFields, GsmMarkers>(writer_, info.neighbours[at], number,
                                                  PassingFields<kGsmTdNeighbourFields>(writer_, number));
  }
}

void CGSMRecordConverter::WriteSimpleInfo(const CIE_GSM_2230E_Simple_Info& info) {
  if (writer_.selection_switch() == 0) return;
  if (writer_.IsSelected(kGsmSimpleInfoText)) {
    PutTextUnlessEmpty(writer_, CIE_GSM_2230E_Simple_Info::ChangeValue2CSText(info.ie32170_first, info.ie32170_second),
                       kGsmSimpleInfoText);
  }
  WriteFields<kGsmSimpleInfoFields, GsmMarkers>(writer_, info);
}

}  // namespace loom
