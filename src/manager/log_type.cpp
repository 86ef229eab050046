#include <algorithm>
#include <array>
#include <exception>

#include "components/autotest.h"
#include "manager/io_manager.h"
#include "platform/log.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"
#include "platform/ui/wait_cursor.h"

namespace loom {
namespace {

// Versions that can be imported, and who reads a log of test type 0, 1 and 2.
struct LogVersion {
  int version;
  std::array<ImporterTypeEnum, 3> importer_by_test_type;
};

// clang-format off
constexpr LogVersion kLogVersions[] = {
    {110, {kImporterOutdoorLog, kImporterOutdoorLog, kImporterNone}},
    {120, {kImporterNone,       kImporterOutdoorLog, kImporterIndoorLog}},
    {130, {kImporterNone,       kImporterOutdoorLog, kImporterIndoorLog}},
    {140, {kImporterNone,       kImporterOutdoorLog, kImporterIndoorLog}},
    {150, {kImporterNone,       kImporterOutdoorLog, kImporterIndoorLog}},
    {160, {kImporterNone,       kImporterOutdoorLog, kImporterIndoorLog}},
    {600, {kImporterNone,       kImporterOutdoorLog, kImporterIndoorLog}},
};
// clang-format on

// A log opened for a look at its header.
class OpenedLog {
 public:
  OpenedLog(CLogFileManager& store, const CString& path) : store_(store) {
    const auto [folder, file_name] = SplitPath(path);
    is_open_ = store_.OpenFile(folder, file_name, 0) != 0;
  }
  OpenedLog(const OpenedLog&) = delete;
  OpenedLog& operator=(const OpenedLog&) = delete;
  ~OpenedLog() { store_.CloseReadingFile(); }
  bool IsOpen() const { return is_open_; }

 private:
  CLogFileManager& store_;
  bool is_open_ = false;
};

ImporterTypeEnum Refuse(const CString& message, const CString& path) {
  ShowMessageBox(Format(message, NameOf(path)), MessageIcon::kError);
  return kImporterNone;
}

ImporterTypeEnum RefuseUnreadable(const CString& path) {
  return Refuse("无法获取日志文件：%s 的版本及类型信息！"_gbk, path);
}

}  // namespace

ImporterTypeEnum CIOManager::GetImporterType(const CString& path) {
  const CWaitCursor wait;
  try {
    if (CCSLogImportWrap().IsCSLog(path)) return kImporterAutoTestLog;
    if (CCMCCLogImportWrap().IsCMCCLog(path)) return kImporterChinaMobileLog;
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
    return RefuseUnreadable(path);
  }
  CLogFileManager store;
  return GetImporterType(store, path);
}

ImporterTypeEnum CIOManager::GetImporterType(CLogFileManager& store, CString path) {
  int version = kUnreadableVersion;
  int test_type = kUnreadableVersion;
  try {
    const OpenedLog log(store, path);
    if (!log.IsOpen()) return RefuseUnreadable(path);
    version = store.GetLogFileVersion();
    test_type = CLogFileManager::GetLogTestType(path);
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
    return RefuseUnreadable(path);
  }
  const auto accepted = std::ranges::find(kLogVersions, version, &LogVersion::version);
  if (accepted == std::end(kLogVersions)) return Refuse("日志文件：%s 版本不正确！"_gbk, path);
  const auto& importers = accepted->importer_by_test_type;
  const auto type = static_cast<std::size_t>(test_type);  // a negative one is out of range
  if (type >= importers.size() || importers[type] == kImporterNone) {
    return Refuse("日志文件：%s 测试类型不正确！"_gbk, path);
  }
  return importers[type];
}

int CIOManager::GetLogVersion(CString path) {
  const CWaitCursor wait;
  try {
    CLogFileManager store;
    const OpenedLog log(store, path);
    return log.IsOpen() ? store.GetLogFileVersion() : kUnreadableVersion;
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
    return kUnreadableVersion;
  }
}

CString CIOManager::GetLogFilter(ImporterTypeEnum type) const {
  if (type == kImporterChinaMobileLog) {
    return "Log(*.log;*.loc;*.lot;*.low;*.loe)|*.log;*.loc;*.lot;*.low;*.loe||";
  }
  return "Log(*.log)|*.log||";
}

}  // namespace loom
