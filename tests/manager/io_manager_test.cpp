#include "manager/io_manager.h"

#include <gtest/gtest.h>

#include <array>

#include "importers/exporter.h"
#include "platform/file.h"
#include "platform/file_map.h"
#include "resources/text_export_templates.h"
#include "tests/importers/import_test.h"

namespace loom::testing {
namespace {

class IOManagerTest : public ImportTest {
 protected:
  CIOManager manager_;
};

TEST_F(IOManagerTest, ImportersAreMadeOnFirstUseAndKeptUntilRelease) {
  for (const int type : {1, 2, 3, 5}) {
    IImporter* importer = manager_.GetImporterByType(static_cast<ImporterTypeEnum>(type));
    ASSERT_TRUE(importer) << type;
    EXPECT_EQ(importer, manager_.GetImporterByType(static_cast<ImporterTypeEnum>(type))) << type;
    EXPECT_EQ(type, dynamic_cast<CImporter&>(*importer).importer_type());
  }
  EXPECT_EQ(nullptr, manager_.GetImporterByType(static_cast<ImporterTypeEnum>(4)));
  manager_.Release();
  manager_.Release();
  EXPECT_TRUE(manager_.GetImporterByType(kImporterOutdoorLog));
}

TEST_F(IOManagerTest, TheTextExporterIsMadeOnFirstUseAndRunsItsWizard) {
  user_.Expect(kDialogTextExport1).Cancel().Expect(kDialogTextExport1).Cancel();
  EXPECT_EQ(0, manager_.ExportTxt());
  IExporter* const exporter = manager_.GetExporterByType(kExporterText);
  ASSERT_TRUE(exporter);
  EXPECT_EQ(kExporterText, dynamic_cast<CExporter&>(*exporter).exporter_type());
  EXPECT_EQ(0, exporter->Export());
  EXPECT_EQ(exporter, manager_.GetExporterByType(kExporterText));
  EXPECT_EQ(nullptr, manager_.GetExporterByType(static_cast<ExporterTypeEnum>(3)));
}

struct TypeCase {
  LogHeader header;
  ImporterTypeEnum type;
  CString refusal = {};
};

TEST_F(IOManagerTest, TheTypeOfALogComesFromItsKindVersionAndTestType) {
  const CString bad_test_type = "日志文件：a.log 测试类型不正确！"_gbk;
  const CString bad_version = "日志文件：a.log 版本不正确！"_gbk;
  const TypeCase cases[] = {
      {Header(110, 0), kImporterOutdoorLog},
      {Header(110, 1), kImporterOutdoorLog},
      {Header(110, 2), kImporterNone, bad_test_type},
      {Header(120, 0), kImporterNone, bad_test_type},
      {Header(120, 1), kImporterOutdoorLog},
      {Header(140, 2), kImporterIndoorLog},
      {Header(140, 3), kImporterNone, bad_test_type},
      {Header(600, 2), kImporterIndoorLog},
      {Header(170, 1), kImporterNone, bad_version},
      {Header(170, 9), kImporterNone, bad_version},
      {Header(170, 1, LogKind::kAuto), kImporterAutoTestLog},
      {Header(160, 9, LogKind::kCmcc), kImporterChinaMobileLog},
  };
  for (const TypeCase& log : cases) {
    const CString path = WriteLog("a.log", {}, log.header);
    if (!log.refusal.IsEmpty()) user_.ExpectMessage(log.refusal, MessageIcon::kError);
    EXPECT_EQ(log.type, manager_.GetImporterType(path)) << log.header.version << ' ' << log.header.test_type;
    EXPECT_EQ(log.header.version, manager_.GetLogVersion(path));
  }
  EXPECT_EQ(0, user_.wait_cursor_depth());
  EXPECT_EQ(2 * static_cast<int>(std::size(cases)), user_.wait_cursor_count());
}

TEST_F(IOManagerTest, AFileThatIsNoLogHasNoTypeAndNoVersion) {
  const CString path = folder_.File("text.log");
  WriteWholeFile(path, "no log");
  user_.ExpectMessage("无法获取日志文件：text.log 的版本及类型信息！"_gbk, MessageIcon::kError);
  EXPECT_EQ(kImporterNone, manager_.GetImporterType(path));
  EXPECT_EQ(-255, manager_.GetLogVersion(path));
  EXPECT_EQ(-255, manager_.GetLogVersion(folder_.File("missing.log")));
}

TEST_F(IOManagerTest, MemoryIsWrittenAtOffsetsThatAreNoPageBorders) {
  const CString path = folder_.File("export.bin");
  std::uint32_t offset = AllocationGranularity() + 7;
  void* mapping = manager_.CreateFileMap(path, offset + 5);
  ASSERT_TRUE(mapping);
  EXPECT_EQ(5u, manager_.ExportMemoryToFile(mapping, offset, "hello", 5));
  EXPECT_EQ(AllocationGranularity() + 7, offset);
  manager_.CloseFileMap(mapping);
  const std::string written = ReadWholeText(path);
  EXPECT_EQ(std::string(offset, '\0') + "hello", written);
  EXPECT_EQ(nullptr, manager_.CreateFileMap(folder_.File("no/such/folder.bin"), 5));
  manager_.CloseFileMap(nullptr);
}

TEST_F(IOManagerTest, AMissingIntermediateFileIsMadeEmptyAndNoted) {
  std::vector<CString> paths{folder_.File("a.int")};
  manager_.OpenImmediateLogFile(paths);
  EXPECT_EQ(1u, notes_.Count("not imported"));
}

TEST_F(IOManagerTest, ResettingTheQuestionArmsItWithBothChecks) {
  g_handset_question = {.ask = 0, .keep_for_this_log = 0, .keep_for_all_logs = 0, .corrected_type = 9};
  manager_.ResetIOFix();
  EXPECT_EQ(1, g_handset_question.ask);
  EXPECT_EQ(1, g_handset_question.keep_for_this_log);
  EXPECT_EQ(1, g_handset_question.keep_for_all_logs);
  EXPECT_EQ(9, g_handset_question.corrected_type);
}

}  // namespace
}  // namespace loom::testing
