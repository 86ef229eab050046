#include "importers/outdoor_log_importer.h"

#include <exception>

#include "components/note_kinds.h"
#include "platform/clock.h"
#include "platform/log.h"
#include "platform/path.h"

namespace loom {

COutdoorLogImporter::COutdoorLogImporter() { importer_type_ = kImporterOutdoorLog; }

int COutdoorLogImporter::Import(const CString& path, ILogfile** logfile) {
  *logfile = nullptr;
  LogImport log;
  log.path = path;
  int result = kImportFailed;
  try {
    result = BeginImport(path, &log.logfile);
    if (result != kImportDone) return result;
    result = ImportOpenedLog(log);
  } catch (...) {
    stream_manager_->DropLogfile(path);
    EndImport();
    throw;
  }
  if (result == kImportDone) {
    *logfile = log.logfile;
  } else {
    stream_manager_->DropLogfile(path);
  }
  EndImport();
  return result;
}

int COutdoorLogImporter::ImportOpenedLog(LogImport& log) {
  int result = kImportDone;
  log.log_version = reader_->GetLogFileVersion();
  for (;;) {
    LogRecord& record = log.pool.Next();
    if (!ReadRecord(record, result)) break;
    Dispatch(log, record);
    if (log.pool.IsBlockUsedUp()) log.pool.Release();
  }
  if (result != kImportDone) return result;
  if (log.index.empty()) return kImportFailed;

  progress_->SetPos(100);
  progress_->PeekAndPump(1);
  progress_.reset();
  MergeProtocolStreams(log.index, log.streams, log.logfile);
  return kImportDone;
}

// What rows carried over to later rows of the log ends with it, however the import ended.
void COutdoorLogImporter::EndImport() {
  converter_->ClearCarryRows();
  if (reader_) reader_->CloseReadingFile();
  progress_.reset();
}

int COutdoorLogImporter::BeginImport(const CString& path, ILogfile** logfile) {
  *logfile = nullptr;
  if (stream_manager_->FindLogfile(path)) return kImportAlreadyPresent;

  const auto [folder, file_name] = SplitPath(path);
  ShowProgress(file_name);
  percent_ = 0;
  shown_percent_ = 0;
  skipped_.StartLog(path);
  PrepareConverter();

  reader_ = std::make_unique<CLogFileManager>();
  if (reader_->OpenFile(folder, file_name, 0) == 0) {
    progress_.reset();
    return kImportFailed;
  }
  *logfile = stream_manager_->MakeLogfile(path);
  (*logfile)->SetVersion(reader_->GetLogFileVersion());
  (*logfile)->SetImporting(1);

  const CDTFile& day = *reader_->GetLogFile();
  day_offset_s_ = static_cast<double>(LocalMidnight({day.getYear(), day.getMonth(), day.getDate()}));
  has_cell_table_ = cell_mapper_->TableExists("tbl_Cell");
  converter_->SetCellDistanceSwitch(has_cell_table_);
  return kImportDone;
}

void COutdoorLogImporter::ShowProgress(const CString& file_name) {
  progress_ = std::make_unique<CProgressWnd>(1);
  progress_->GoModal("导入日志文件进度"_gbk, 0);
  progress_->SetText(Format("导入日志文件：%s"_gbk, file_name));
  progress_->SetRange(0, 100, 1);
}

// The settings go to the converter even when they are empty: what an earlier log selected is forgotten.
void COutdoorLogImporter::PrepareConverter() {
  selection_switch_ = ie_settings_.empty() ? 0 : 1;
  converter_->SetImportSettings(ie_settings_);
  ResetDeviceProtocols();
  decoder_->Reset(0, 1);
  converter_->ResetForLog();
}

bool COutdoorLogImporter::ReadRecord(CTestdataBase& record, int& result) {
  if (progress_->Cancelled() == 1) {
    result = kImportCancelled;
    return false;
  }
  try {
    if (reader_->ReadFile(record) == 0) return false;
  } catch (const std::exception& error) {
    Log(LogLevel::kWarning, error.what());
    CurrentNotes().Add("reading ended early"_note, skipped_.path(), reader_->GetRecordPosition(), error.what());
    return false;
  }
  ShowPercent();
  return true;
}

void COutdoorLogImporter::ShowPercent() {
  percent_ = static_cast<std::int32_t>(reader_->GetCurPercent() * 100.0);
  if ((percent_ % 3 != 0 && percent_ != 100) || percent_ <= shown_percent_) return;
  progress_->SetPos(percent_);
  progress_->PeekAndPump(1);
  shown_percent_ = percent_;
}

}  // namespace loom
