#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "components/note_kinds.h"
#include "components/project.h"
#include "components/records/blocks.h"
#include "importers/outdoor_log_importer.h"
#include "platform/encoding.h"
#include "platform/path.h"
#include "settings/handset_question.h"
#include "settings/handset_type_dialog.h"

namespace loom {
namespace {

constexpr int kHighestDevice = 8;
constexpr int kLogExtensionLength = 4;  // ".log"

// What the first record of a device says about it. A handset's number is filled into its name.
struct DeviceName {
  std::string_view name;
  std::int32_t protocol;  // of its stream
  bool is_scanner;
};

struct HandsetModel {
  std::int32_t model_code;
  DeviceName in_td_scdma;
  DeviceName in_gsm;
};

struct ScannerType {
  std::int32_t scan_type;
  std::int32_t flag;  // 0: the flag is 0, 1: it is not, kAnyFlag: whatever it is
  DeviceName device;
};

constexpr std::int32_t kAnyFlag = -1;
constexpr DeviceName kOstrelLteScanner{"OstrelLTE扫频仪", kProtocolLte, true};
constexpr DeviceName kOtherHandset{"", kProtocolTdScdma, false};
constexpr DeviceName kHeaderOnlyHandset{"VORNE(%d)", kProtocolGsm, false};

// clang-format off
constexpr HandsetModel kHandsetModels[] = {
    {kModelRv2210,           {"RV2210_TD(%d)",         kProtocolTdScdma, false}, {"RV2210_GSM(%d)",        kProtocolGsm, false}},
    {kModelRv2220,           {"RV2220_TD(%d)",         kProtocolTdScdma, false}, {"RV2220_GSM(%d)",        kProtocolGsm, false}},
    {kModelRv2230,           {"RV2230_TD(%d)",         kProtocolTdScdma, false}, {"RV2230_GSM(%d)",        kProtocolGsm, false}},
    {kModelKm4430,           {"KM4430_TD(%d)",         kProtocolTdScdma, false}, {"KM4430_GSM(%d)",        kProtocolGsm, false}},
    {kModelKm2242,           {"KM2242_TD(%d)",         kProtocolTdScdma, false}, {"KM2242_GSM(%d)",        kProtocolGsm, false}},
    {kModelMarlo77,          {"MARLO77_TD(%d)",        kProtocolTdScdma, false}, {"MARLO77_GSM(%d)",       kProtocolGsm, false}},
    {kModelTn300Lte,         {"TESSARY_TN300_LTE(%d)", kProtocolLte,     false}, {"TESSARY_TN300_LTE(%d)", kProtocolLte, false}},
    {kModelH500Lte,          {"HALDEN_H500_LTE(%d)",   kProtocolLte,     false}, {"HALDEN_H500_LTE(%d)",   kProtocolLte, false}},
    {kModelOstrelLteScanner, kOstrelLteScanner,                                  kOstrelLteScanner},
};

constexpr ScannerType kScannerTypes[] = {
    {0, 0,        {"Pellam TD50(I)", kProtocolTdScdma, true}},
    {0, 1,        {"Pellam TD50",    kProtocolTdScdma, true}},
    {1, kAnyFlag, {"RV2201(Scan)",   kProtocolTdScdma, true}},
    {2, kAnyFlag, {"Tavin扫频仪",    kProtocolTdScdma, true}},
    {3, kAnyFlag, {"Ostrel扫频仪",   kProtocolTdScdma, true}},
    {5, kAnyFlag, {"BrantScanner",   kProtocolTdScdma, true}},
    {6, kAnyFlag, {"Corvel RS-100",  kProtocolTdScdma, true}},
};

// Models that change between TD-SCDMA and GSM.
constexpr std::int32_t kDualModeModels[] = {kModelRv2210, kModel5, kModelRv2220, kModelRv2230, kModelKm4430, kModelKm2242, kModelMarlo77};
constexpr std::int32_t kLteModels[] = {kModelTn300Lte, kModelH500Lte, kModelOstrelLteScanner};
// Kinds that a device adds to a stream which its measurements have opened.
constexpr std::int32_t kJoiningKinds[] = {kRecordDataService, kRecordEvent, kRecordDataTest1, kRecordDataTest2, kRecordTdMessage};
// clang-format on

template <std::size_t kSize>
bool Holds(const std::int32_t (&numbers)[kSize], std::int32_t number) {
  return std::ranges::find(numbers, number) != std::end(numbers);
}

bool IsScannerKind(std::int32_t kind) { return kind == kRecordScanner || kind == kRecordScannerCells; }

// The record's device, with the model code that it goes by and whether the handset is in GSM mode.
struct RecordDevice {
  const CTestdataBase& record;
  std::int32_t model_code;
  bool is_gsm;

  bool IsDualModeInGsm() const { return record.kind == kRecordHandset && is_gsm && Holds(kDualModeModels, model_code); }

  std::int32_t StreamKey() const {
    if (record.kind == kRecordHandset) {
      // Any number may stand for the model: the key wraps.
      const std::uint32_t offset = 20000 + (model_code == kModelKm4430 ? 100 : 0) + (IsDualModeInGsm() ? 2000 : 0);
      return static_cast<std::int32_t>(static_cast<std::uint32_t>(model_code) + offset);
    }
    if (!IsScannerKind(record.kind) || !record.scan) return record.kind;
    if (record.scan->scan_type == 0) return record.scan->flag == 0 ? 10001 : 10002;
    return 10000 + record.scan->scan_type;
  }

  // The protocol by which further records of the device find their stream.
  std::int32_t Protocol() const {
    if (IsDualModeInGsm() || record.kind == kRecordHeaderOnly) return kProtocolGsm;
    return record.kind == kRecordHandset && Holds(kLteModels, model_code) ? kProtocolLte : kProtocolTdScdma;
  }

  // None for a record that opens no stream.
  std::optional<DeviceName> Name() const {
    std::optional<DeviceName> name;
    if (record.kind == kRecordHandset) name = HandsetName();
    if (record.kind == kRecordHeaderOnly) name = kHeaderOnlyHandset;
    if (IsScannerKind(record.kind) && record.scan) name = ScannerName();
    return name && (name->is_scanner || record.device_number >= 1) ? name : std::nullopt;
  }

 private:
  DeviceName HandsetName() const {
    const auto model = std::ranges::find(kHandsetModels, model_code, &HandsetModel::model_code);
    if (model == std::end(kHandsetModels)) return kOtherHandset;
    return is_gsm ? model->in_gsm : model->in_td_scdma;
  }

  std::optional<DeviceName> ScannerName() const {
    if (model_code == kModelOstrelLteScanner) return kOstrelLteScanner;
    const std::int32_t flag = record.scan->flag != 0 ? 1 : 0;
    for (const ScannerType& type : kScannerTypes) {
      if (type.scan_type == record.scan->scan_type && (type.flag == kAnyFlag || type.flag == flag)) return type.device;
    }
    return std::nullopt;
  }
};

bool IsModelKnown(std::int32_t model_code) { return model_code != 0 && model_code != 1; }

// The rightmost `length` bytes (none below 0), less the rear half of a character that would be cut.
CString Tail(const CString& text, int length) {
  if (length <= 0) return CString();
  int at = 0;
  while (at < text.GetLength() - length) {
    at += static_cast<int>(GbkCharLength(text.view(), static_cast<std::size_t>(at)));
  }
  return text.Mid(at);
}

}  // namespace

struct_STREAMINFO* COutdoorLogImporter::GetStreamContext(ILogfile* logfile, const CString& path, double day_offset_s,
                                                         StreamIndex& index, StreamMap& streams,
                                                         const CTestdataBase& record) {
  const std::int32_t device_number = record.device_number;
  if (device_number < 0 || device_number > kHighestDevice) return nullptr;
  const bool is_gsm = converter_->NetworkModeIsGSM(record);
  if (device_number > 0 && Holds(kJoiningKinds, record.kind)) return JoinedContext(index, device_number, day_offset_s);

  const std::int32_t model_code = record.kind == kRecordHandset ? ResolveModel(*logfile, record) : record.model_code;
  const RecordDevice device{record, model_code, is_gsm};
  const std::int32_t key = device.StreamKey();
  device_protocols_[device_number] = device.Protocol();
  if (const auto contexts = index.find(key); contexts != index.end()) {
    if (const auto found = contexts->second.find(device_number); found != contexts->second.end()) {
      return found->second.get();
    }
  }

  const std::optional<DeviceName> name = device.Name();
  if (!name) return nullptr;
  const CString pattern = Utf8ToGbk(name->name);
  const CString device_name = pattern.Find('%') < 0 ? pattern : Format(pattern, device_number);
  const CString stream_name = FreeStreamName(LogTitle(path) + '_' + device_name, path, streams);
  IDataStream* stream = stream_manager_->MakeStream(
      stream_name, name->is_scanner ? std::int32_t{kStreamScanner} : std::int32_t{test_type_});
  if (!stream) return nullptr;

  auto context = std::make_unique<struct_STREAMINFO>();
  context->stream_name = stream_name;
  context->device_name = device_name;
  context->day_offset_s = day_offset_s;
  context->log_version = logfile->GetVersion();
  context->rows = stream->GetRows();
  context->merged_rows = stream->GetMergedRows();
  context->stream_type = stream->GetStreamType();
  context->protocol = name->protocol;
  streams[stream_name] = stream;
  logfile->AddStream(stream);
  return (index[key][device_number] = std::move(context)).get();
}

// The record's own model, else the one that the log goes by, else the project's, else the person's answer. The log
// goes by it from here on.
std::int32_t COutdoorLogImporter::ResolveModel(ILogfile& logfile, const CTestdataBase& record) {
  std::int32_t model_code = record.model_code;
  if (!IsModelKnown(model_code)) model_code = logfile.GetHandsetType();
  if (!IsModelKnown(model_code)) {
    if (const CProjectLogfile* listed = g_project->GetNTLog()->GetProjectLogFileByPath(logfile.GetName())) {
      model_code = listed->GetFacType();
    } else if (g_handset_question.ask == 1) {
      model_code = AskForHandsetType();
      g_handset_question.ask = 0;
    }
  }
  logfile.SetHandsetType(model_code);
  return model_code;
}

// The device's stream of the protocol that its newest measurement had.
struct_STREAMINFO* COutdoorLogImporter::JoinedContext(StreamIndex& index, std::int32_t device_number,
                                                      double day_offset_s) {
  const auto protocol = device_protocols_.find(device_number);
  if (protocol == device_protocols_.end()) return nullptr;
  for (auto& [key, contexts] : index) {
    const auto context = contexts.find(device_number);
    if (context == contexts.end() || context->second->protocol != protocol->second) continue;
    context->second->day_offset_s = day_offset_s;
    return context->second.get();
  }
  return nullptr;
}

// The name itself for the first stream that asks for it, with "_2", "_3" ... behind it for the others.
CString COutdoorLogImporter::FreeStreamName(const CString& name, const CString& path, const StreamMap& streams) const {
  if (!streams.contains(name)) return name;
  int number = 2;
  while (streams.contains(Format("%s_%d", name, number))) ++number;
  const CString free_name = Format("%s_%d", name, number);
  CurrentNotes().Add("streams of one name"_note, path, reader_ ? reader_->GetRecordPosition() : 0,
                     "another device's stream would be " + GbkToUtf8(name) + " as well and is " + GbkToUtf8(free_name));
  return free_name;
}

// Outdoors the file's title; indoors the path below the project's folder, its folders joined by '_'.
CString COutdoorLogImporter::LogTitle(const CString& path) const {
  if (test_type_ == kTestOutdoor) return TitleOf(path);
  CString title = Tail(path, path.GetLength() - g_project->GetPath().GetLength() - 1);
  title = title.Left(title.GetLength() - kLogExtensionLength);
  title.Replace("\\", "_");
  title.Replace("/", "_");
  return title;
}

}  // namespace loom
