#include <filesystem>

#include "tests/manager/text_import_test.h"
#include "text/import/column_map.h"

namespace loom::testing {
namespace {

class TextImportCommands : public TextImportTest {
 protected:
  // Imports the file as the wizard's user does.
  CString ImportedText(const CString& name, const std::string& text = kTextFile) {
    const CString path = WriteText(name, text);
    ToThirdPage(path).FinishWizard();
    EXPECT_EQ(kImportDone, manager_.ImportTxt());
    return path;
  }
  static void Drop(const CString& path) { CStreamManagerCreator::CreateStreamManager()->DropLogfile(path); }
  static ILogfile* Present(const CString& path) {
    return CStreamManagerCreator::CreateStreamManager()->FindLogfile(path);
  }
  static const CProjectTxtFile* Listed(const CString& path) { return g_project->GetProjectTxtFileByName(path); }
};

TEST_F(TextImportCommands, AnImportedFileIsRecordedWithItsStream) {
  const CString path = WriteText("data.2010.txt");
  ToSecondPage(path)
      .Type(kEditStreamName, "UE_1")
      .Choose(kComboStreamType, "扫频数据流"_gbk)
      .ChooseAt(kComboTimeFormat, 2)
      .Press(kRadioComma)
      .Check(kCheckFirstLineIsNames, false)
      .Next()
      .FinishWizard();
  std::vector<int> results;
  manager_.SetLogListener([&](const LogOutcome& outcome) { results.push_back(outcome.result); });
  EXPECT_EQ(kImportDone, manager_.ImportTxt());
  EXPECT_EQ(std::vector<int>{1}, results);
  EXPECT_EQ(1, g_project->modified);
  const CProjectTxtFile* const record = Listed(path);
  ASSERT_NE(nullptr, record);
  EXPECT_EQ(path, record->GetTxtPath());
  EXPECT_EQ(",", record->GetSeparate());
  EXPECT_EQ("yyyy-mm-dd hh:nn:ss.ms", record->GetDataFormat());
  EXPECT_FALSE(record->GetHeadLineIsIgnore());
  EXPECT_EQ(2, record->GetStreamType());
  EXPECT_EQ((ColumnMap{{0, "RecordTime"}, {1, "Longitude"}}), record->GetColumnMapIE());
  const CProjectStream& stream = record->GetStreams().at("data.2010_UE_1");
  EXPECT_EQ("14", stream.GetStreamType());
  EXPECT_EQ("TD-SCDMA", stream.GetProtocol());
  EXPECT_EQ("AND", stream.GetFilterOperator());
  EXPECT_EQ(3, Present(path)->GetRowTotal());
}

TEST_F(TextImportCommands, AFileThatIsPresentOrCannotBeReadIsRefused) {
  const CString path = ImportedText("a.txt");
  ToThirdPage(path).FinishWizard().ExpectMessage("已有同名文本文件:a.txt !"_gbk, MessageIcon::kWarning);
  EXPECT_EQ(0, manager_.ImportTxt());

  const CString gone = WriteText("gone.txt");
  ToThirdPage(gone)
      .Do("remove it", [&](CDialog&) { RemoveFile(gone); })
      .FinishWizard()
      .ExpectMessage("载入文本文件：gone.txt 失败！"_gbk, MessageIcon::kError)
      .ExpectMessage(Format("导入文本文件：%s 失败! \n"_gbk, gone), MessageIcon::kError);
  EXPECT_EQ(kImportFailed, manager_.ImportTxt());
  EXPECT_EQ(nullptr, Listed(gone));

  ToThirdPage(WriteText("b.txt", LongText())).FinishWizard();
  user_.CancelProgressAt(100, 2);
  EXPECT_EQ(kImportCancelled, manager_.ImportTxt());
}

TEST_F(TextImportCommands, ARecordedFileIsImportedAgainWithItsSettings) {
  const CString path = ImportedText("data_2010.txt");
  user_.ExpectMessage("已有同名文本文件：data_2010.txt ! \n"_gbk, MessageIcon::kWarning);
  EXPECT_EQ(kImportAlreadyPresent, manager_.OpenTxt(path));
  EXPECT_NE(nullptr, Listed(path));

  Drop(path);
  EXPECT_EQ(kImportDone, manager_.OpenTxt(path));
  IDataStream& stream = *Present(path)->GetStreams().front();
  EXPECT_EQ("data_2010_UE1", stream.GetName());
  EXPECT_EQ("UE1", stream.GetDeviceName());
  EXPECT_EQ(2, stream.GetRowCount());
  EXPECT_NE(kInvalidDouble, stream.GetEarliestTime());
}

TEST_F(TextImportCommands, ARecordedFileThatFailsLeavesTheProject) {
  const CString missing = ImportedText("missing.txt");
  Drop(missing);
  RemoveFile(missing);
  g_project->modified = 0;
  user_.ExpectMessage(Format("找不到文本文件：%s ，请确认路径! \n"_gbk, missing), MessageIcon::kWarning);
  EXPECT_EQ(0, manager_.OpenTxt(missing));
  EXPECT_EQ(nullptr, Listed(missing));
  EXPECT_EQ(1, g_project->modified);

  const CString cancelled = ImportedText("cancelled.txt", LongText());
  Drop(cancelled);
  user_.CancelProgressAt(100, static_cast<int>(user_.progress().size()));
  EXPECT_EQ(kImportCancelled, manager_.OpenTxt(cancelled));
  EXPECT_EQ(nullptr, Listed(cancelled));
}

TEST_F(TextImportCommands, ARecordedFileThatChangedIsAskedAbout) {
  const CString question = "系统检测出原工程中的文本文件有修改是否重新执行导入？"_gbk;
  for (const bool again : {false, true}) {
    const CString path = ImportedText(again ? "again.txt" : "dropped.txt");
    Drop(path);
    WriteWholeFile(path, "RecordTime\n1\n");
    user_.ExpectMessage(question, MessageIcon::kWarning).Answer(again ? MessageAnswer::kOk : MessageAnswer::kCancel);
    if (again) ToThirdPage(path).FinishWizard();
    EXPECT_EQ(again ? kImportDone : 0, manager_.OpenTxt(path));
    EXPECT_EQ(again, Listed(path) != nullptr);
    EXPECT_EQ(MessageButtons::kOkCancel, user_.messages().back().buttons);
  }
}

TEST_F(TextImportCommands, ARecordFitsWhileItsColumnsAreWithinTheFirstLine) {
  const struct {
    const char* first_line;
    std::int32_t largest_column;
    std::int32_t stream_type;
    bool fits;
  } cases[] = {
      {"a,,b", 2, 0, true}, {"a,,b", 3, 0, false}, {"a,b,", 2, 0, true}, {"", 0, 0, false}, {"a,b", 0, -255, false}};
  for (const auto& [first_line, largest_column, stream_type, fits] : cases) {
    const CString path = WriteText("m.txt", first_line);
    CProjectTxtFile record;
    record.SetTxtName(path);
    record.SetSeparate(",");
    record.SetColumnMapIE({{largest_column, "RecordTime"}});
    record.SetStreamType(stream_type);
    record.SetStreams({{"m_UE1", CProjectStream()}});
    g_project->AddTxtFile(record);
    if (!fits)
      user_.ExpectMessage("系统检测出原工程中的文本文件有修改是否重新执行导入？"_gbk).Answer(MessageAnswer::kCancel);
    EXPECT_EQ(fits ? kImportDone : 0, manager_.OpenTxt(path)) << first_line << largest_column;
    Drop(path);
  }
}

}  // namespace
}  // namespace loom::testing
