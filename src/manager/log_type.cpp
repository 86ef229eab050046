#include "manager/log_type.h"

#include <algorithm>
#include <array>
#include <optional>

#include "components/autotest.h"
#include "platform/completes.h"
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

ImporterTypeEnum AutoTestTypeOf(const CString& path) {
  if (CCSLogImportWrap().IsCSLog(path)) return kImporterAutoTestLog;
  return CCMCCLogImportWrap().IsCMCCLog(path) ? kImporterChinaMobileLog : kImporterNone;
}

struct VersionAndTest {
  int version;
  int test_type;
};

std::optional<VersionAndTest> Read(CLogFileManager& store, const CString& path) {
  const OpenedLog log(store, path);
  if (!log.IsOpen()) return std::nullopt;
  const int version = store.GetLogFileVersion();
  return VersionAndTest{version, CLogFileManager::GetLogTestType(path)};
}

}  // namespace

ImporterTypeEnum GetImporterType(const CString& path) {
  const CWaitCursor wait;
  ImporterTypeEnum type = kImporterNone;
  if (!Completes([&] { type = AutoTestTypeOf(path); })) return RefuseUnreadable(path);
  if (type != kImporterNone) return type;
  CLogFileManager store;
  return GetImporterType(store, path);
}

ImporterTypeEnum GetImporterType(CLogFileManager& store, const CString& path) {
  const auto read = ResultOr<std::optional<VersionAndTest>>(std::nullopt, [&] { return Read(store, path); });
  if (!read) return RefuseUnreadable(path);
  const auto accepted = std::ranges::find(kLogVersions, read->version, &LogVersion::version);
  if (accepted == std::end(kLogVersions)) return Refuse("日志文件：%s 版本不正确！"_gbk, path);
  const auto& importers = accepted->importer_by_test_type;
  const auto type = static_cast<std::size_t>(read->test_type);  // a negative one is out of range
  if (type >= importers.size() || importers[type] == kImporterNone) {
    return Refuse("日志文件：%s 测试类型不正确！"_gbk, path);
  }
  return importers[type];
}

int GetLogVersion(const CString& path) {
  const CWaitCursor wait;
  return ResultOr<int>(kUnreadableVersion, [&] {
    CLogFileManager store;
    const OpenedLog log(store, path);
    return log.IsOpen() ? store.GetLogFileVersion() : kUnreadableVersion;
  });
}

CString GetLogFilter(ImporterTypeEnum node_type) {
  if (node_type == kImporterChinaMobileLog) {
    return "Log(*.log;*.loc;*.lot;*.low;*.loe)|*.log;*.loc;*.lot;*.low;*.loe||";
  }
  return "Log(*.log)|*.log||";
}

}  // namespace loom
