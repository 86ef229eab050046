#include <filesystem>

#include "platform/ui/list_ctrl.h"
#include "platform/ui/message_box.h"
#include "tests/manager/text_import_test.h"
#include "text/import/text_preview.h"

namespace loom::testing {
namespace {

constexpr const char* kTimePath = "Independent/Independent_Parameters/RecordTime";
constexpr const char* kLongitudePath = "Independent/Independent_Parameters/Longitude";

class TextImportWizard : public TextImportTest {
 protected:
  void Run(int expected = kImportFailed) {
    EXPECT_EQ(expected, manager_.ImportTxt());
    user_.Finish();
  }
};

TEST_F(TextImportWizard, TheFirstPageAsksForAFileOrAConfiguration) {
  const CString path = WriteText("a.txt");
  const CString config = WriteText("c.imcf", "no configuration");
  const CString other = WriteText("d.imcf", "");
  user_.Expect(kDialogTextImport1)
      .SeeTitle("文本文件导入向导--第一步"_gbk)
      .SeeItems(kComboImportConfig, {"[无配置]"_gbk})
      .SeeButtons("cancel")
      .SeeEnabled(kButtonImportConfig, false)
      .Press(kButtonBrowseText)
      .CancelFiles()
      .SeeButtons("cancel")
      .Press(kButtonBrowseText)
      .PickFiles({path})
      .SeeText(kEditTextPath, path)
      .SeeButtons("next cancel")
      .Press(kButtonImportConfig)
      .PickFiles({config})
      .SeeButtons("finish cancel")
      .Press(kButtonImportConfig)
      .PickFiles({other})
      .Press(kButtonImportConfig)
      .PickFiles({folder_.File("C.IMCF")})
      .SeeItems(kComboImportConfig, {"[无配置]"_gbk, other, folder_.File("C.IMCF")})
      .FinishWizard()  // there is no such file: nothing happens
      .SeePage(kDialogTextImport1)
      .Choose(kComboImportConfig, "[无配置]"_gbk)
      .SeeButtons("next cancel")
      .Type(kEditTextPath, "")
      .SeeButtons("cancel")
      .Cancel();
  Run();
  EXPECT_EQ("选择文本文件"_gbk, user_.file_dialogs()[0].title);
  EXPECT_TRUE(user_.file_dialogs()[0].must_exist);
  EXPECT_EQ("选择导入配置文件"_gbk, user_.file_dialogs()[2].title);
}

TEST_F(TextImportWizard, TheSecondPageStartsOverEachTimeItIsShown) {
  ToSecondPage(WriteText("a.txt", "a\tb\tc\n\td\n"))
      .SeeTitle("文本文件导入向导--第二步"_gbk)
      .SeeText(kEditStreamName, "UnknownDevice")
      .SeeText(kComboStreamType, "下行数据流"_gbk)
      .SeeText(kComboTimeFormat, "yyyy-mm-dd hh:nn:ss:ms")
      .SeeChecked(kCheckFirstLineIsNames, 1)
      .SeeChecked(kRadioTab, 1)
      .SeeEnabled(kEditCustomSeparator, false)
      .SeeRows(kListTextPreview, {{"a", "b", "c"}, {"", "d", ""}})
      .Type(kEditStreamName, "")
      .SeeButtons("back cancel")
      .Type(kEditStreamName, "UE7")
      .SeeButtons("back next cancel")
      .Press(kRadioComma)
      .SeeRows(kListTextPreview, {{"a\tb\tc"}, {"\td"}})
      .Back()
      .Next()
      .SeeText(kEditStreamName, "UnknownDevice")
      .SeeChecked(kRadioComma, 1)
      .Cancel();
  Run();
}

TEST_F(TextImportWizard, ACustomSeparatorIsNoDigitNoLetterAndNoChineseCharacter) {
  ScriptedUser& user = ToSecondPage(WriteText("a.txt", "a#b: c\n")).Press(kRadioCustom).SeeFocus(kEditCustomSeparator);
  user.SeeRows(kListTextPreview, {{"a#b: c"}})
      .Type(kEditCustomSeparator, "#")
      .SeeRows(kListTextPreview, {{"a", "b: c"}})
      .Type(kEditCustomSeparator, ":")
      .SeeRows(kListTextPreview, {{"a#b", "c"}})
      .Press(kRadioTab)
      .SeeEnabled(kEditCustomSeparator, false)
      .Press(kRadioCustom)
      .SeeRows(kListTextPreview, {{"a#b", "c"}});
  for (const CString& refused : {CString("a"), CString("5"), "、"_gbk, CString("\x7f")}) {
    user.Type(kEditCustomSeparator, refused)
        .ExpectMessage("请输入一个符号"_gbk, MessageIcon::kNone)
        .SeeText(kEditCustomSeparator, "")
        .SeeRows(kListTextPreview, {{"a#b: c"}});
  }
  user.Cancel();
  Run();
}

TEST_F(TextImportWizard, ManyColumnsShareTheWidthOfTheList) {
  EXPECT_EQ(80, PreviewColumnWidth(375));
  EXPECT_EQ(79, PreviewColumnWidth(376));
  EXPECT_EQ(75, PreviewColumnWidth(400));
}

TEST_F(TextImportWizard, AFileThatIsGoneOrEmptyKeepsThePage) {
  const CString path = WriteText("a.txt", "");
  OpenWizard(path)
      .Type(kEditTextPath, folder_.File("gone.txt"))
      .Next()
      .ExpectMessage("初始化信息失败，请重试！"_gbk, MessageIcon::kError)
      .SeePage(kDialogTextImport1)
      .Type(kEditTextPath, path)
      .Next()
      .Next()
      .ExpectMessage("数据错误，请重试！"_gbk, MessageIcon::kNone)
      .SeePage(kDialogTextImport2)
      .Cancel();
  Run();
  EXPECT_EQ(kApplicationCaption, user_.messages()[0].caption);
  EXPECT_EQ(HostCaption(), user_.messages()[1].caption);
}

TEST_F(TextImportWizard, TitlesThatTheCatalogueKnowsAreMapped) {
  ToThirdPage(WriteText("a.txt"))
      .SeeTitle("文本文件导入向导--第三步"_gbk)
      .SeeRows(kListColumnMap, {{" 列 1"_gbk, "RecordTime"}, {" 列 2"_gbk, "Longitude"}, {" 列 3"_gbk, " ...... "}})
      .SeeSelectedRows(kListColumnMap, {0})
      .SeeButtons("back finish cancel")
      .SeeEnabled(kButtonSaveConfig, true)
      .Press(kButtonUnmapAll)
      .SeeButtons("back cancel")
      .SeeEnabled(kButtonSaveConfig, false)
      .Back()
      .Next()
      .SeeRows(kListColumnMap, {{" 列 1"_gbk, "RecordTime"}, {" 列 2"_gbk, "Longitude"}, {" 列 3"_gbk, " ...... "}})
      .FinishWizard();
  Run(kImportDone);
}

TEST_F(TextImportWizard, TheCurrentColumnIsHighlightedAndAtTheLeftEdge) {
  const auto see_current = [](int column) {
    return [column](CDialog& page) {
      const auto& preview = page.GetDlgItem<CListCtrl>(kListTextPreview);
      for (int at = 0; at < preview.GetColumnCount(); ++at) {
        EXPECT_EQ(at == column ? CellColours::kHighlight : CellColours::kNormal, preview.GetCellColours(0, at));
      }
      int before = 0;
      for (int at = 0; at < column; ++at) before += preview.GetColumnWidth(at);
      EXPECT_EQ(before, preview.GetScrollX());
    };
  };
  std::string line = "a";
  for (int column = 0; column < 20; ++column) line += ",some wide cell";
  ToThirdPage(WriteText("a.txt", line))
      .Do("see 0", see_current(0))
      .SelectRows(kListColumnMap, {5})
      .Do("see 5", see_current(5))
      .ClickHeader(kListTextPreview, 2)
      .SeeSelectedRows(kListColumnMap, {2})
      .Do("see 2", see_current(2))
      .Cancel();
  Run();
}

TEST_F(TextImportWizard, AColumnIsMappedToOneLeafThatNoOtherColumnCarries) {
  ScriptedUser& user = ToThirdPage(WriteText("a.txt", "a,b,c,RecordTime\n"));
  user.SelectRows(kListColumnMap, {0})
      .Press(kButtonMapColumn)
      .Expect(kDialogParam)
      .SeeTitle("参数选择"_gbk)
      .Ok()
      .ExpectMessage("请选择一个参数!"_gbk, MessageIcon::kWarning)
      .SelectItems(kTreeParams, {"Independent"})
      .Ok()
      .ExpectMessage("请选择一个参数!"_gbk, MessageIcon::kWarning)
      .SelectItems(kTreeParams, {kTimePath})
      .Ok()
      .ExpectMessage("该参数已经被第4列映射!"_gbk, MessageIcon::kWarning)
      .DoubleClickItem(kTreeParams, kLongitudePath, TreeHitPart::kImage)
      .DoubleClickItem(kTreeParams, kLongitudePath);
  user.SeeRows(kListColumnMap, {{" 列 1"_gbk, "Longitude"},
                                {" 列 2"_gbk, " ...... "},
                                {" 列 3"_gbk, " ...... "},
                                {" 列 4"_gbk, "RecordTime"}})
      .SelectRows(kListColumnMap, {3})
      .Press(kButtonUnmapColumn)
      .FinishWizard()
      .ExpectMessage("导入设置无效！请导入时间(RecordTime)。"_gbk, MessageIcon::kInformation)
      .Press(kButtonSaveConfig)
      .ExpectMessage("导入设置无效！请导入时间(RecordTime)。"_gbk, MessageIcon::kInformation)
      .SelectRows(kListColumnMap, {0})
      .Press(kButtonUnmapColumn)
      .SeeButtons("back cancel");
  Map(1, kTimePath).SeeButtons("back finish cancel").FinishWizard();
  Run(kImportDone);
}

TEST_F(TextImportWizard, WithoutTheNavigatorNothingIsMapped) {
  ToThirdPage(WriteText("a.txt", "a,b\n"))
      .Do("take the navigator away", [&](CDialog&) { SetChosenConfigFolder(folder_.File("nowhere")); })
      .Press(kButtonMapColumn)
      .ExpectMessage("加载配置文件失败！"_gbk, MessageIcon::kError)
      .SeeRows(kListColumnMap, {{" 列 1"_gbk, " ...... "}, {" 列 2"_gbk, " ...... "}})
      .Cancel();
  Run();
}

TEST_F(TextImportWizard, AConfigurationIsSavedUnderItsExtensionAndFinishesTheWizard) {
  const CString path = WriteText("a.txt", "RecordTime,LAC\n08:15:30 :: x\n");
  const struct {
    const char* typed;
    const char* written;
  } cases[] = {{"b.txt", "b.txt.imcf"}, {"c.IMCF", "c.IMCF"}, {"d", "d.imcf"}};
  ScriptedUser& user = ToSecondPage(path).Press(kRadioCustom).Type(kEditCustomSeparator, "@").Press(kRadioComma);
  user.Choose(kComboTimeFormat, "hh:nn:ss.ms")
      .Choose(kComboStreamType, "上行数据流"_gbk)
      .Type(kEditStreamName, "U_1")
      .Next();
  for (const auto& [typed, written] : cases) {
    user.Press(kButtonSaveConfig)
        .PickFiles({folder_.File(typed)})
        .ExpectMessage("配置文件保存成功！"_gbk, MessageIcon::kNone);
  }
  user.Press(kButtonSaveConfig).CancelFiles();
  user.Press(kButtonSaveConfig)
      .PickFiles({folder_.File("missing/e.imcf")})
      .ExpectMessage("配置文件保存失败！"_gbk, MessageIcon::kNone)
      .SeePage(kDialogTextImport3)
      .Cancel();
  Run();
  EXPECT_EQ("保存导入配置"_gbk, user_.file_dialogs().back().title);
  for (const auto& [typed, written] : cases)
    EXPECT_TRUE(std::filesystem::exists(folder_.native() / written)) << written;

  OpenWizard(path).Press(kButtonImportConfig).PickFiles({folder_.File("d.imcf")}).FinishWizard();
  Run(kImportDone);
  const CProjectTxtFile& record = *g_project->GetProjectTxtFileByName(path);
  EXPECT_EQ(0, record.GetStreamType());  // not part of a configuration
  EXPECT_EQ("hh:nn:ss.ms", record.GetDataFormat());
  EXPECT_EQ(",", record.GetSeparate());
  EXPECT_TRUE(record.GetStreams().contains("a_U_1"));
}

TEST_F(TextImportWizard, AConfigurationWithMoreColumnsThanTheFileHasTitlesIsRefused) {
  const CString config = WriteText(
      "c.imcf",
      R"(<TextImport version="1"><Setting stream="a" separator="," format="hh:nn:ss.ms" head_line_ignored="1"/>
         <Column number="0" ie="RecordTime"/><Column number="1" ie="LAC"/><Column number="2" ie="RxLev"/></TextImport>)");
  OpenWizard(WriteText("a.txt", "RecordTime,LAC\n"))
      .Press(kButtonImportConfig)
      .PickFiles({config})
      .FinishWizard()
      .ExpectMessage("配置文件与文本文件不匹配，请检查您的配置文件！"_gbk, MessageIcon::kWarning)
      .SeePage(kDialogTextImport1)
      .Type(kEditTextPath, WriteText("b.txt", "RecordTime,LAC,Foo\n08:00:00,1,2\n"))
      .FinishWizard();
  Run(kImportDone);
}

}  // namespace
}  // namespace loom::testing
