#include <initializer_list>
#include <string>

#include "components/note_kinds.h"
#include "components/records/blocks.h"
#include "conversion/ie_ids.h"
#include "importers/outdoor_log_importer.h"

namespace loom {

// How one sort of record becomes rows. Sets are bit masks, bit n for number n.
struct RecordRoute {
  using Steps = void (COutdoorLogImporter::*)(LogImport& log, CTestdataBase& record, const RecordRoute& route);
  using Conversion = std::unique_ptr<CMemDataRow> (*)(CTDRecordConverter& converter, CTestdataBase& record,
                                                      struct_STREAMINFO& context, std::int32_t selection_switch);

  std::uint32_t kinds;
  std::uint32_t models;  // kAnyModel: whatever the model code
  bool decodes;
  bool keeps_state;  // the stream's newest structures follow its records
  bool has_samples;  // a record may hold further samples than its row
  Steps steps;
  Conversion convert;

  bool Takes(const CTestdataBase& record) const {
    return Holds(kinds, record.kind) && (models == 0 || Holds(models, record.model_code));
  }

 private:
  static bool Holds(std::uint32_t set, std::int32_t number) {
    return number >= 0 && number < 32 && (set >> number & 1) != 0;
  }
};

namespace {

consteval std::uint32_t SetOf(std::initializer_list<std::int32_t> numbers) {
  std::uint32_t set = 0;
  for (const std::int32_t number : numbers) set |= std::uint32_t{1} << number;
  return set;
}
constexpr std::uint32_t kAnyModel = 0;
constexpr std::uint32_t kLteHandsets = SetOf({kModelTn300Lte, kModelH500Lte});
constexpr std::uint32_t kScannerKinds = SetOf({kRecordScanner, kRecordScannerCells});
constexpr std::uint32_t kHandsetKinds = SetOf({kRecordHandset, kRecordEvent, kRecordTdMessage});
constexpr std::uint32_t kDataTestKinds = SetOf({kRecordDataTest1, kRecordDataTest2});
using Self = COutdoorLogImporter;

std::unique_ptr<CMemDataRow> ToHandset(CTDRecordConverter& converter, CTestdataBase& record, struct_STREAMINFO& context,
                                       std::int32_t selection_switch) {
  const StateRecord& state = context.state;
  if (record.model_code == kModel5) return converter.ConvertModel5(record, state, context, selection_switch);
  if (record.model_code == kModelMarlo77) return converter.ConvertModel10(record, state, context, selection_switch);
  return converter.ConvertUE(record, state, context, selection_switch);
}
std::unique_ptr<CMemDataRow> ToLte(CTDRecordConverter& converter, CTestdataBase& record, struct_STREAMINFO& context,
                                   std::int32_t selection_switch) {
  return converter.ConvertLTE(record, context.state, context, selection_switch);
}
std::unique_ptr<CMemDataRow> ToHeaderOnly(CTDRecordConverter& converter, CTestdataBase& record,
                                          struct_STREAMINFO& context, std::int32_t selection_switch) {
  return converter.ConvertHeaderOnly(record, context.state, context, selection_switch);
}
std::unique_ptr<CMemDataRow> ToDataService(CTDRecordConverter& converter, CTestdataBase& record,
                                           struct_STREAMINFO& context, std::int32_t selection_switch) {
  return converter.ConvertDataService(record, context, selection_switch);
}
std::unique_ptr<CMemDataRow> ToScanner(CTDRecordConverter& converter, CTestdataBase& record, struct_STREAMINFO& context,
                                       std::int32_t selection_switch) {
  return converter.ConvertScanner(record, context, selection_switch);
}
std::unique_ptr<CMemDataRow> ToDataTest(CTDRecordConverter& converter, CTestdataBase& record,
                                        struct_STREAMINFO& context, std::int32_t selection_switch) {
  return converter.ConvertDataTest(record, context, selection_switch);
}

}  // namespace

// The first route that takes a record wins.
// clang-format off
const RecordRoute COutdoorLogImporter::kRoutes[] = {
    // kinds                     models                           decodes state  samples steps                   conversion
    {SetOf({kRecordHandset}),    kLteHandsets,                    true,   true,  false,  &Self::ConvertRecord,   ToLte},
    {SetOf({kRecordDataService}), kAnyModel,                      false,  false, false,  &Self::ConvertRecord,   ToDataService},
    {kScannerKinds,              kAnyModel,                       false,  false, false,  &Self::ConvertRecord,   ToScanner},
    {SetOf({kRecordHandset}),    SetOf({kModelOstrelLteScanner}), false,  false, false,  &Self::ConvertRecord,   ToScanner},
    {kHandsetKinds,              kAnyModel,                       true,   true,  true,   &Self::ConvertHandset,  ToHandset},
    {SetOf({kRecordHeaderOnly}), kAnyModel,                       true,   true,  false,  &Self::ConvertRecord,   ToHeaderOnly},
    {SetOf({kRecordFileMark}),   kAnyModel,                       true,   false, false,  &Self::ConvertFileMark, nullptr},
    {kDataTestKinds,             kAnyModel,                       false,  false, false,  &Self::ConvertRecord,   ToDataTest},
};
// clang-format on

void COutdoorLogImporter::Dispatch(LogImport& log, CTestdataBase& record) {
  for (const RecordRoute& route : kRoutes) {
    if (route.Takes(record)) return (this->*route.steps)(log, record, route);
  }
  Skip(SkipReason::kUnknownKind, record);
}

void COutdoorLogImporter::ConvertRecord(LogImport& log, CTestdataBase& record, const RecordRoute& route) {
  if (route.decodes && !Decode(log, record)) return Skip(SkipReason::kNotDecoded, record);
  struct_STREAMINFO* context = ContextOf(log, record);
  if (!context) return Skip(SkipReason::kNoStream, record);
  if (route.keeps_state) UpdateStateRecord(record, context->state);

  const std::unique_ptr<CMemDataRow> row = route.convert(*converter_, record, *context, selection_switch_);
  NoteLeftOut(record);
  if (!row) return Skip(SkipReason::kNoRow, record);
  StoreRow(*context->rows, context->row_number, *row);
  if (route.has_samples) StoreFurtherSamples(record, *row, *context);
}

// An event of the whole log is taken by the broadcast; it is decoded all the same, so that a decoder sees every record.
void COutdoorLogImporter::ConvertHandset(LogImport& log, CTestdataBase& record, const RecordRoute& route) {
  if (!BroadcastEvent(log, record)) return ConvertRecord(log, record, route);
  Decode(log, record);
}

void COutdoorLogImporter::ConvertFileMark(LogImport& log, CTestdataBase& record, const RecordRoute&) {
  if (!Decode(log, record)) return Skip(SkipReason::kNotDecoded, record);
  const std::unique_ptr<CMemDataRow> row = converter_->ConvertFileMark(record, day_offset_s_, selection_switch_);
  if (!row) return Skip(SkipReason::kNoRow, record);
  Broadcast(log, record, *row);
}

bool COutdoorLogImporter::BroadcastEvent(LogImport& log, const CTestdataBase& record) {
  if (record.kind != kRecordEvent || record.device_number != 0) return false;
  const std::unique_ptr<CMemDataRow> row = converter_->ConvertEvent(record, day_offset_s_, selection_switch_);
  if (!row) return false;
  Broadcast(log, record, *row);
  return true;
}

// Stores a copy in every stream that exists by now, numbered on in each; the event's name joins the streams' names.
void COutdoorLogImporter::Broadcast(LogImport& log, const CTestdataBase& record, CMemDataRow& row) {
  if (log.streams.empty()) return Skip(SkipReason::kNoStream, record);
  for (const auto& [name, stream] : log.streams) {
    RowMap& rows = *stream->GetRows();
    const auto number = static_cast<std::int32_t>(rows.size()) + 1;
    row.SetSynFieldValue(number);
    StoreRow(rows, number, row);
  }
  const auto event_name = row.GetIEValueByID(ie::kEventName);
  if (!event_name) return;
  const CString text(row.GetText(event_name->text));
  if (text.IsEmpty()) return;
  for (auto& [key, contexts] : log.index) {
    for (auto& [device_number, context] : contexts) context->event_names.insert(text);
  }
}

bool COutdoorLogImporter::Decode(const LogImport& log, CTestdataBase& record) {
  return decoder_->Decode(log.log_version, record, record);
}

struct_STREAMINFO* COutdoorLogImporter::ContextOf(LogImport& log, const CTestdataBase& record) {
  struct_STREAMINFO* context = GetStreamContext(log.logfile, log.path, day_offset_s_, log.index, log.streams, record);
  if (context) context->row_number = static_cast<std::int32_t>(context->rows->size()) + 1;
  return context;
}

// The further samples of a record that was stored as its first row; a sample that is missing is passed over.
void COutdoorLogImporter::StoreFurtherSamples(const CTestdataBase& record, const CMemDataRow& first_row,
                                              struct_STREAMINFO& context) {
  const std::int32_t sample_count = converter_->SampleCount(first_row);
  for (std::int32_t sample = 1; sample < sample_count; ++sample) {
    context.row_number = static_cast<std::int32_t>(context.rows->size()) + 1;
    const auto row = converter_->ConvertSample(record, first_row, sample, context, selection_switch_);
    if (row) StoreRow(*context.rows, context.row_number, *row);
  }
}

void COutdoorLogImporter::UpdateStateRecord(const CTestdataBase& record, StateRecord& state) {
  state.SetRecordId(record.record_id);
  state.UpdateBasicInfo(record);
  if (record.kind != kRecordHandset) return;
  if (converter_->NetworkModeIsGSM(record)) {
    state.Update<Kept::kOfGsm>(record);
  } else {
    state.Update<Kept::kOfTd>(record);
  }
}

void COutdoorLogImporter::NoteLeftOut(const CTestdataBase& record) {
  for (const LeftOutValues& list : converter_->TakeLeftOutValues()) {
    CurrentNotes().Add("scanner entries beyond their arrays"_note, skipped_.path(), reader_->GetRecordPosition(),
                       "record " + std::to_string(record.record_id) + ": " + std::to_string(list.values) +
                           " values of the " + std::to_string(list.entries) + " " + list.list +
                           " entries have no information element");
  }
}

void COutdoorLogImporter::Skip(SkipReason reason, const CTestdataBase& record) {
  skipped_.Add(reason, record, reader_->GetRecordPosition());
}

}  // namespace loom
