#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "components/importer.h"
#include "components/net_info.h"
#include "manager/log_outcome.h"
#include "platform/cstring.h"

namespace loom {

class CLogFileManager;
class IModuleCommunicator;
struct TextImportSettings;

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

  void RegisterModuleCommunicator(IModuleCommunicator* communicator);  // not owned
  void UnregisterModuleCommunicator();
  // Hears of every log and text file that a command has dealt with, right after it.
  void SetLogListener(LogListener listener);

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
  // Network elements, as the wizard directs: their data type, else 0 or the mapper's result.
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
  const std::string& FileMapFailure() const;

 private:
  struct Commands;
  std::unique_ptr<Commands> commands_;
};

}  // namespace loom
