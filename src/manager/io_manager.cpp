#include "manager/io_manager.h"

#include "manager/dialog_commands.h"
#include "manager/file_maps.h"
#include "manager/io_registry.h"
#include "manager/log_commands.h"
#include "manager/log_type.h"
#include "manager/text_commands.h"
#include "settings/handset_question.h"

namespace loom {
namespace {

void HearNothing(const LogOutcome&) {}

}  // namespace

// Each works for its own part of the facade; what they share stands in front.
struct CIOManager::Commands {
  IORegistry registry;
  LogListener listener = &HearNothing;
  IModuleCommunicator* communicator = nullptr;
  LogCommands logs{registry, listener};
  TextCommands texts{registry, listener};
  DialogCommands dialogs{registry};
  FileMaps file_maps;
};

CIOManager::CIOManager() : commands_(std::make_unique<Commands>()) {}
CIOManager::~CIOManager() { CIOManager::Release(); }
void CIOManager::Release() { commands_->registry.Release(); }

void CIOManager::RegisterModuleCommunicator(IModuleCommunicator* communicator) {
  commands_->communicator = communicator;
}
void CIOManager::UnregisterModuleCommunicator() { commands_->communicator = nullptr; }
void CIOManager::SetLogListener(LogListener listener) {
  commands_->listener = listener ? std::move(listener) : &HearNothing;
}

IImporter* CIOManager::GetImporterByType(ImporterTypeEnum type) { return commands_->registry.GetImporterByType(type); }
IExporter* CIOManager::GetExporterByType(ExporterTypeEnum type) { return commands_->registry.GetExporterByType(type); }

ImporterTypeEnum CIOManager::GetImporterType(const CString& path) { return loom::GetImporterType(path); }
ImporterTypeEnum CIOManager::GetImporterType(CLogFileManager& store, CString path) {
  return loom::GetImporterType(store, path);
}
int CIOManager::GetLogVersion(CString path) { return loom::GetLogVersion(path); }

int CIOManager::ImportLog(ImporterTypeEnum node_type) { return commands_->logs.ImportLog(node_type); }
int CIOManager::ImportLogByName(const CString& path) { return commands_->logs.ImportLogByName(path); }
int CIOManager::OpenLog(const CString& path, bool node_check) { return commands_->logs.OpenLog(path, node_check); }
int CIOManager::OpenRecentLog(CString path) { return commands_->logs.OpenRecentLog(path); }
int CIOManager::OpenImmediateLogFile(std::vector<CString>& paths) {
  return commands_->logs.OpenImmediateLogFile(paths, commands_->communicator);
}

int CIOManager::ImportTxt() { return commands_->texts.ImportTxt(); }
int CIOManager::OpenTxt(const CString& path) { return commands_->texts.OpenTxt(path); }
int CIOManager::ImportTextAs(const TextImportSettings& settings, const CString& protocol) {
  return commands_->texts.ImportTextAs(settings, protocol);
}

int CIOManager::ExportTxt() { return commands_->dialogs.ExportTxt(); }
int CIOManager::ImportNetInfo(ProtocolTypeEnum& protocol) { return commands_->dialogs.ImportNetInfo(protocol); }
void CIOManager::CombineLogFile() { commands_->dialogs.CombineLogFile(); }
void CIOManager::PartitionLogfile() { commands_->dialogs.PartitionLogfile(); }

void CIOManager::ResetIOFix() { g_handset_question.ResetFlags(); }

void* CIOManager::CreateFileMap(const CString& path, std::uint32_t size_bytes) {
  return commands_->file_maps.Create(path, size_bytes);
}
std::uint32_t CIOManager::ExportMemoryToFile(void*& mapping, std::uint32_t& offset_bytes, const void* data,
                                             std::uint32_t length_bytes) {
  return commands_->file_maps.Write(mapping, offset_bytes, data, length_bytes);
}
void CIOManager::CloseFileMap(void* mapping) { commands_->file_maps.Close(mapping); }
const std::string& CIOManager::FileMapFailure() const { return commands_->file_maps.Failure(); }

}  // namespace loom
