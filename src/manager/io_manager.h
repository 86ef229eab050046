#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "components/importer.h"
#include "components/log_store.h"
#include "components/module_communicator.h"
#include "components/net_info.h"
#include "components/stream_info.h"
#include "manager/type_registry.h"
#include "platform/cstring.h"
#include "text/import/column_map.h"

namespace loom {

class CProjectTxtFile;
class CTextImporter;
struct TextImportSettings;

// What became of one log or text file of a command.
struct LogOutcome {
  CString path;
  ImporterTypeEnum type = kImporterNone;  // none while the file was refused before its type was known
  int result = kImportFailed;             // an ImportResult
  // Of the file as it was read; kUnreadableVersion when it told none. Intermediate files have a version only.
  std::int32_t version = kUnreadableVersion;
  std::int32_t test_type = kUnreadableVersion;
  ILogfile* logfile = nullptr;                             // of an imported log; belongs to the stream manager
  std::map<std::string_view, std::uint64_t> skipped = {};  // records that became no row, by reason
};
using LogListener = std::function<void(const LogOutcome&)>;

// Results of a command over several logs.
enum BatchResult : int {
  kBatchNothing = 0,  // nothing imported
  kBatchDone = 1,     // everything attempted was imported
  kBatchInPart = 2,   // something imported; something was cancelled, present already, or the batch was cut short
};

// The module's face: every import and export command of the host. Runs on the host's user-interface thread, shows its
// windows itself and lets no exception out; what no message is prescribed for goes to the log.
class CIOManager {
 public:
  CIOManager();
  virtual ~CIOManager();
  CIOManager(const CIOManager&) = delete;
  CIOManager& operator=(const CIOManager&) = delete;

  // Imports intermediate log files through the module communicator. A file whose title is present is refused; a missing
  // one is made empty. Always 1: what became of each file, the listener hears.
  virtual int OpenImmediateLogFile(std::vector<CString>& paths);
  // Deletes every importer and exporter; the next use makes fresh ones.
  virtual void Release();

  void RegisterModuleCommunicator(IModuleCommunicator* communicator) { communicator_ = communicator; }  // not owned
  void UnregisterModuleCommunicator() { communicator_ = nullptr; }
  // Hears of every log and text file that a command has dealt with, right after it.
  void SetLogListener(LogListener listener) { log_listener_ = std::move(listener); }

  // The importer or exporter of a type, made on first use, owned by the manager; null when the type has none.
  IImporter* GetImporterByType(ImporterTypeEnum type);
  IExporter* GetExporterByType(ExporterTypeEnum type);

  // Who reads the file: 1, 2, 3, 5, or 0 when it was refused with a message. The second form asks the log store only.
  ImporterTypeEnum GetImporterType(const CString& path);
  ImporterTypeEnum GetImporterType(CLogFileManager& store, CString path);
  int GetLogVersion(CString path);  // -255 when the file cannot be opened

  // Import of picked logs under a project node, and of one indoor log: a BatchResult.
  int ImportLog(ImporterTypeEnum node_type);
  int ImportLogByName(const CString& path);
  // A log that the project lists, with its stored settings, and a recently used indoor log: an ImportResult. A log
  // that fails leaves the project's list. Without the node check a China Mobile log is accepted.
  int OpenLog(const CString& path, bool node_check);
  int OpenRecentLog(CString path);

  // Import of the text file that the wizard asks for, and of one that the project records, by its path: an
  // ImportResult, 0 also when nothing was chosen. A recorded file that changed is asked about; one that fails leaves
  // the project.
  int ImportTxt();
  int OpenTxt(const CString& path);
  // Import of a text file with settings that are known, without the wizard; the stream and its record get the protocol
  // where one is given.
  int ImportTextAs(const TextImportSettings& settings, const CString& protocol);
  // One stream to a delimited text file, with its wizard: 1 when the file was written, else 0.
  int ExportTxt();
  // Network elements; 0 while this build has no importer for them.
  int ImportNetInfo(ProtocolTypeEnum& protocol);
  // Log maintenance: several logs become one, a time window of a log becomes a log.
  void CombineLogFile();
  void PartitionLogfile();

  // The handset question may be asked again, with both its checks set.
  void ResetIOFix();

  // A new file of fixed size to be filled by ExportMemoryToFile; null when it cannot be made.
  void* CreateFileMap(const CString& path, std::uint32_t size_bytes);
  // Copies the bytes to an offset of the file and gives their number; the offset is the caller's to advance.
  std::uint32_t ExportMemoryToFile(void*& mapping, std::uint32_t& offset_bytes, const void* data,
                                   std::uint32_t length_bytes);
  void CloseFileMap(void* mapping);
  // What went wrong first while the newest file was filled and closed, UTF-8; empty when nothing did.
  const std::string& FileMapFailure() const { return file_map_failure_; }

 private:
  struct LogSelection;
  class Batch;

  std::unique_ptr<IImporter> CreateImporterByType(ImporterTypeEnum type);
  std::unique_ptr<IExporter> CreateExporterByType(ExporterTypeEnum type);
  CString GetLogFilter(ImporterTypeEnum type) const;

  int OpenLogFile(const CString& path, const ImpIESettings& settings, struct_BinningSetting& binning, bool node_check);
  void ImportChecked(LogOutcome& outcome, const ImpIESettings& settings, const struct_BinningSetting& binning,
                     bool node_check);
  bool IsTitleFree(const CString& path, const std::set<CString>& present_titles);
  bool IsAllowedUnderNode(ImporterTypeEnum type, const CString& file_name) const;
  IImporter* PrepareImporter(ImporterTypeEnum type, const ImpIESettings& settings);
  bool ChooseLogs(ImporterTypeEnum node_type, LogSelection& selection);
  void ImportSelected(ImporterTypeEnum node_type, LogSelection& selection, Batch& batch);
  int ImportUnderNode(ImporterTypeEnum node_type, const CString& path, const ImpIESettings& settings,
                      struct_BinningSetting& binning, bool node_check);
  void Report(const LogOutcome& outcome);

  int ImportTextFile(const TextImportSettings& settings, const CString& protocol = {});
  int ReopenTextFile(const CString& path);
  int ImportRecordedText(const CProjectTxtFile& record, const CString& path);
  int RunTextImport(CTextImporter& importer, const CString& path, ILogfile** logfile);
  // 1 while the file still has the columns of its record, else 0.
  int MatchTextFiles(const ColumnMap& columns, const CProjectTxtFile* record, CString path);

  TypeRegistry<ImporterTypeEnum, IImporter> importers_;
  TypeRegistry<ExporterTypeEnum, IExporter> exporters_;
  ImporterTypeEnum import_node_type_ = kImporterNone;  // project node of the running import
  IModuleCommunicator* communicator_ = nullptr;
  LogListener log_listener_;
  std::string file_map_failure_;
};

}  // namespace loom
