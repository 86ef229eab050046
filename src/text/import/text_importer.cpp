#include "text/import/text_importer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <set>

#include "components/dual_protocol.h"
#include "components/note_kinds.h"
#include "components/project.h"
#include "conversion/ie_ids.h"
#include "platform/completes.h"
#include "platform/encoding.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"
#include "text/import/byte_order_mark.h"
#include "text/import/text_lines.h"

namespace loom {
namespace {

constexpr std::int32_t kKeyRowStep = 500;
constexpr int kProgressEnd = 1000;
constexpr int kProgressStep = 100;

bool Contains(const std::vector<CString>& names, const CString& name) {
  return std::ranges::find(names, name) != names.end();
}

// Runs the work of reading; an exception becomes the message, and false.
template <class Work>
bool CompletesOrTells(const CString& message, Work work) {
  if (Completes(work)) return true;
  ShowMessageBox(message, MessageIcon::kError);
  return false;
}

// NaN where the row has none, or one that is none.
double DegreesIn(const CMemDataRow& row, std::int32_t id, float limit) {
  const uniFieldValue* const value = row.FindIE(id);
  const bool is_valid = value != nullptr && std::abs(value->float_value) <= limit;
  return is_valid ? value->float_value : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

// One import.
struct CTextImporter::Run {
  CString path;
  CProgressWnd progress{1};
  ILogfile* logfile = nullptr;
  IDataStream* stream = nullptr;
  std::int32_t row_count = 0;
  ValueRange time_s = {};
  PositionBounds bounds = {};
};

CTextImporter::CTextImporter() {
  importer_type_ = kImporterText;
  LoadNavigatorNames();
}

int CTextImporter::Import(const CString& path, ILogfile** logfile) {
  *logfile = nullptr;
  if (stream_manager_->FindLogfile(path)) return kImportAlreadyPresent;

  Run run{.path = path};
  run.progress.GoModal("导入文本文件进度"_gbk, 0);
  run.progress.SetText(Format("导入文本文件：%s"_gbk, NameOf(path)));
  run.progress.SetRange(0, kProgressEnd, 1);
  int result = kImportFailed;
  try {
    run.logfile = stream_manager_->MakeLogfile(path);
    run.stream = stream_manager_->MakeStream(settings_.stream_full_name, StreamKindOf(settings_.stream_type));
    run.logfile->AddStream(run.stream);
    result = ImportFile(run);
    if (result == kImportDone) FinishStream(run);
  } catch (...) {
    stream_manager_->DropLogfile(path);
    ResetColumns();
    throw;
  }
  if (result == kImportDone) {
    *logfile = run.logfile;
  } else {
    stream_manager_->DropLogfile(path);
  }
  ResetColumns();
  return result;
}

int CTextImporter::ImportFile(Run& run) {
  if (!PrepareProtocol()) {
    ShowMessageBox("加载配置文件失败！文本文件不能正常导入！"_gbk, MessageIcon::kError);
    return kImportFailed;
  }
  std::optional<TextLines> lines;
  const CString cannot_open = Format("载入文本文件：%s 失败！"_gbk, NameOf(run.path));
  if (!CompletesOrTells(cannot_open, [&] { lines.emplace(run.path); })) return kImportFailed;
  int result = kImportFailed;
  if (!CompletesOrTells("加载文本文件数据发生错误!"_gbk, [&] { result = ReadLines(run, *lines); }))
    return kImportFailed;
  if (result == kImportDone) run.progress.SetPos(kProgressEnd);
  return result;
}

int CTextImporter::ReadLines(Run& run, TextLines& lines) {
  RowNotes notes(run.path);
  TextRowBuilder builder(Columns(), settings_.separator, settings_.time_layout, notes);
  RowMap& rows = *run.stream->GetRows();
  RowMap& key_rows = *run.stream->GetKeyRows();
  CMemDataRow row;
  std::string_view line;
  std::uint64_t line_number = 0;
  if (settings_.has_header_line != 0 && lines.Next(line)) {
    notes.SetLine(++line_number);
    NoteByteOrderMark(run.path, line);
    builder.ReadTitles(line);
  }
  while (lines.Next(line)) {
    if (run.progress.Cancelled() == 1) return kImportCancelled;
    const auto position = static_cast<int>(lines.Position() * kProgressEnd / lines.FileSize());
    if (position % kProgressStep == 0) {
      run.progress.SetPos(position);
      run.progress.PeekAndPump(1);
    }
    notes.SetLine(++line_number);
    if (line_number == 1) NoteByteOrderMark(run.path, line);
    builder.Fill(row, line, ++run.row_count, run.time_s, TextLines::kReadableBehind);
    StoreRow(rows, run.row_count, row);
    ReadPosition(run, row);
    if (run.row_count == 1 || run.row_count % kKeyRowStep == 0) StoreRow(key_rows, run.row_count, row);
  }
  NoteColumns(run.path);
  if (!settings_.protocol_is_given) NoteProtocol(run.path);
  notes.HandOver(CurrentNotes());
  return kImportDone;
}

void CTextImporter::ReadPosition(Run& run, const CMemDataRow& row) const {
  const double longitude = DegreesIn(row, ie::kLongitude, 180.0f);
  const double latitude = DegreesIn(row, ie::kLatitude, 90.0f);
  if (std::isnan(longitude) || std::isnan(latitude)) return;
  run.bounds.longitude.Add({longitude, longitude});
  run.bounds.latitude.Add({latitude, latitude});
}

void CTextImporter::FinishStream(Run& run) const {
  IDataStream& stream = *run.stream;
  stream.SetCompleted(1);
  stream.SetStreamClass(stream.GetStreamType() == kStreamScanner ? kStreamClassScanner : kStreamClassHandset);
  stream.SetDeviceName(settings_.stream_name);
  stream.SetProtocol(protocol_);
  stream.SetRowCount(run.row_count);
  stream.SetEarliestTime(run.time_s.minimum);
  stream.SetLatestTime(run.time_s.maximum);
  SetBounds(run.bounds, stream);
  stream.SetFilterOperator("AND");
  for (const auto& [column, name] : settings_.columns) {
    if (!name.IsEmpty()) stream.AddIEName(name);
  }
  run.logfile->SetVersion(0);
  run.logfile->SetImporting(importer_type_);
  run.logfile->SetRowTotal(run.row_count);
  SetBounds(run.bounds, *run.logfile);
}

bool CTextImporter::LoadNavigatorNames() {
  CMarkupMSXML navigator;
  if (!LoadNavigator(navigator)) return false;
  names_ = ReadNavigatorNames(navigator);
  return true;
}

// The protocol of the mapped information elements; false when the navigator cannot be read.
bool CTextImporter::PrepareProtocol() {
  if ((names_.independent.empty() || names_.gsm.empty()) && !LoadNavigatorNames()) return false;
  bool has_gsm = false;
  bool has_td_scdma = false;
  bool has_shared = false;  // elements of every protocol
  lte_columns_.clear();
  for (const auto& [column, name] : settings_.columns) {
    if (g_sysProject->GetIEID(name) == kInvalidInt) continue;
    const bool is_of_gsm = Contains(names_.gsm, name);
    if (Contains(names_.independent, name)) {
      has_shared |= is_of_gsm;
      continue;
    }
    (is_of_gsm ? has_gsm : has_td_scdma) = true;
    if (Contains(names_.lte, name)) lte_columns_.push_back(name);
  }
  protocol_is_assumed_ = has_shared && !has_gsm && !has_td_scdma;
  if (has_gsm && has_td_scdma) {
    protocol_ = kDualProtocol;
  } else if (has_gsm || has_td_scdma || has_shared) {
    protocol_ = has_gsm ? "GSM" : "TD-SCDMA";
  }
  return true;
}

void CTextImporter::NoteProtocol(const CString& path) const {
  const std::string stream = "the stream is " + protocol_.str();
  if (protocol_is_assumed_)
    CurrentNotes().Add("protocol assumed"_note, path, "columns", "none is of one protocol alone; " + stream);
  if (lte_columns_.empty()) return;
  std::string columns = "'" + GbkToUtf8(lte_columns_.front()) + "'";
  if (lte_columns_.size() > 1) columns += " and " + std::to_string(lte_columns_.size() - 1) + " more";
  CurrentNotes().Add("LTE columns"_note, path, "columns",
                     columns + " of LTE, which the import does not tell; " + stream);
}

std::vector<TextColumn> CTextImporter::Columns() const {
  std::vector<TextColumn> columns;
  for (const auto& [number, name] : settings_.columns) {
    const std::int32_t id = g_sysProject->GetIEID(name);
    if (number < 0 || id == kInvalidInt) continue;
    columns.push_back({static_cast<std::size_t>(number), id, g_sysProject->GetIEMemType(id), name});
  }
  // The last column of that name is the time; one before it has no field to its value.
  const auto newest = std::find_if(columns.rbegin(), columns.rend(),
                                   [](const TextColumn& column) { return column.name == kTimeColumnName; });
  for (TextColumn& column : columns) {
    if (column.name == kTimeColumnName) column.lists_field = false;
  }
  if (newest != columns.rend()) newest->is_time = true;
  return columns;
}

void CTextImporter::NoteColumns(const CString& path) const {
  std::set<CString> seen;
  for (const auto& [column, name] : settings_.columns) {
    const std::string at = "column " + std::to_string(column);
    if (g_sysProject->GetIEID(name) == kInvalidInt)
      CurrentNotes().Add("unknown information element"_note, path, at, "'" + GbkToUtf8(name) + "' is not imported");
    else if (!seen.insert(name).second)
      CurrentNotes().Add("information element mapped twice"_note, path, at, "'" + GbkToUtf8(name) + "'");
  }
}

void CTextImporter::ResetColumns() {
  settings_.columns.clear();
  names_ = {};
}

CMemDataRow* CTextImporter::BuildRow(CString line, int row_number, double* minimum_time_s, double* maximum_time_s) {
  RowNotes notes{CString()};
  ValueRange time_s{*maximum_time_s, *minimum_time_s};
  auto row = std::make_unique<CMemDataRow>();
  TextRowBuilder(Columns(), settings_.separator, settings_.time_layout, notes).Fill(*row, line, row_number, time_s);
  *minimum_time_s = time_s.minimum;
  *maximum_time_s = time_s.maximum;
  return row.release();
}

}  // namespace loom
