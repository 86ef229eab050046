#include <algorithm>
#include <cstdint>

#include "components/project.h"
#include "components/records/stream_and_string.h"
#include "conversion/ie_ids.h"
#include "conversion/signalling_header.h"
#include "conversion/td_record_converter.h"

// Events, file marks, layer-3 headers, and the handset models with a route of their own.
namespace loom {
namespace {

constexpr std::size_t kEventRowRoom = 10;
constexpr std::int32_t kFileMarkEvent = 1610;
constexpr std::int32_t kNoIe7 = -99000000;
constexpr std::string_view kSilentLayer3Name = "SYSTEM INFORMATION TYPE 3";

void AppendText(CMemDataRow& row, std::int32_t id, std::string_view text) {
  row.QuickAddIE(id, uniFieldValue::Text(row.AddText(text)));
}

void WriteMarkHeader(CMemDataRow& row, const CTestdataBase& record, double day_offset_s) {
  row.SetRecordTime(record.time.toSecond() + day_offset_s);
  row.QuickAddIE(ie::kRecordId, uniFieldValue(record.record_id));
  if (record.ie7 != -1 && record.ie7 != kNoIe7) row.QuickAddIE(7, uniFieldValue(record.ie7));
  const Position position = ValidPosition(record, false);
  row.QuickAddIE(ie::kLongitude, uniFieldValue(static_cast<float>(position.longitude)));
  row.QuickAddIE(ie::kLatitude, uniFieldValue(static_cast<float>(position.latitude)));
  row.QuickAddIE(ie::kTimeStamp, uniFieldValue(static_cast<std::int32_t>(record.time_stamp)));
  row.QuickAddIE(ie::kNetworkMode, uniFieldValue(record.network_mode));
}

std::string_view MessageText(const AUTOTEST::CAutoBuffer& message) {
  const char* bytes = message.GetBuffer(0);
  return bytes == nullptr ? std::string_view() : std::string_view(bytes, message.bytes().size());
}

}  // namespace

CTDRecordConverter::Row CTDRecordConverter::ConvertEvent(const CTestdataBase& record, double day_offset_s,
                                                         std::int32_t selection_switch) {
  if (!writer_.IsSelectedByName(SelectionName::kEvent, selection_switch)) return nullptr;
  Row row = MakeRow(kEventRowRoom);
  WriteMarkHeader(*row, record, day_offset_s);
  if (record.kind == kRecordEvent) {
    row->QuickAddIE(ie::kEventId, uniFieldValue(record.event_id));
    AppendText(*row, ie::kEventName, g_sysProject->GetEventName(record.event_id));
  }
  return row;
}

CTDRecordConverter::Row CTDRecordConverter::ConvertFileMark(const CTestdataBase& record, double day_offset_s,
                                                            std::int32_t /*selection_switch*/) {
  Row row = MakeRow(kEventRowRoom);
  WriteMarkHeader(*row, record, day_offset_s);
  AppendText(*row, ie::kFileMarkText, MessageText(record.raw_message));
  row->QuickAddIE(ie::kEventId, uniFieldValue(kFileMarkEvent));
  AppendText(*row, ie::kEventName, "FileMark");
  return row;
}

CTDRecordConverter::Row CTDRecordConverter::ConvertDeviceEvent(const CTestdataBase& record, struct_STREAMINFO& stream,
                                                               std::int32_t selection_switch) {
  if (record.device_number <= 0) return nullptr;
  Row row = ConvertEvent(record, stream.day_offset_s, selection_switch);
  if (!row) return nullptr;
  stream.event_names.insert(g_sysProject->GetEventName(record.event_id));
  row->SetSynFieldValue(stream.row_number);
  row->QuickAddIE(ie::kMessageId, uniFieldValue(stream.row_number));
  return row;
}

CTDRecordConverter::Row CTDRecordConverter::ConvertModel5(const CTestdataBase& record, const StateRecord& state,
                                                          struct_STREAMINFO& stream, std::int32_t selection_switch) {
  Row row = ConvertUE(record, state, stream, selection_switch);
  // A TD-SCDMA row has been through the signalling pass; the GSM rows of this model get it as well.
  if (row && record.kind != kRecordEvent && gsm_.network_mode() == kNetworkModeGsm) {
    writer_.Begin(stream, selection_switch, *row);
    signalling_.ApplySignalling(record, state, writer_);
  }
  return row;
}

CTDRecordConverter::Row CTDRecordConverter::ConvertModel10(const CTestdataBase& record, const StateRecord&,
                                                           struct_STREAMINFO& stream, std::int32_t selection_switch) {
  return record.kind == kRecordEvent ? ConvertDeviceEvent(record, stream, selection_switch) : nullptr;
}

void CTDRecordConverter::WriteEvent(const CTestdataBase& record) {
  if (IsShownEvent(record.event_id) && writer_.IsSelected(ie::kEventId)) PutEvent(writer_, record.event_id);
}

void CTDRecordConverter::WriteLayer3Header(const CTestdataBase& record) {
  if (!writer_.IsSelected(ie::kL3Name)) return;
  if (!IsLayer3Message(record.message_id) && record.kind != kRecordTdMessage) return;
  if (record.layer3_name == kSilentLayer3Name) return;
  writer_.PutText(record.layer3_name, ie::kL3Name);
  if (!record.layer3_name.empty()) writer_.stream().l3_names.insert(CString(record.layer3_name));
  writer_.PutInt(record.message_id, record.message_id, ie::kL3MessageId);
  writer_.PutInt(record.raw_length, record.raw_length, ie::kL3Length);
  if (record.kind == kRecordTdMessage) {
    writer_.PutText(MessageText(record.raw_message), ie::kL3Bytes, ie::kL3Name);
  } else if (!record.raw_bytes.empty()) {
    const auto held = static_cast<std::int32_t>(std::min<std::size_t>(record.raw_bytes.size(), 0x7FFFFFFF));
    CString digits;
    CStreamAndString::numToString(digits, record.raw_bytes.data(), std::min(record.raw_length, held));
    writer_.PutText(digits, ie::kL3Bytes, ie::kL3Name);
  }
  writer_.PutText(record.message_text, ie::kL3Text, ie::kL3Name);
  writer_.PutInt(record.channel, record.channel, ie::kL3Channel);
}

}  // namespace loom
