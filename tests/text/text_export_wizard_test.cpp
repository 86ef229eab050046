#include "components/dt_time.h"
#include "components/resource_handle.h"
#include "platform/log.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/property_sheet.h"
#include "resources/images.h"
#include "resources/text_export_templates.h"
#include "tests/text/export_streams.h"
#include "text/export/text_exporter.h"

namespace loom::testing {
namespace {

const CString kStream = "日志文件/a.log/a_TD"_gbk;

class TextExportWizard : public ExportTest {
 protected:
  // The second page with the TD-SCDMA stream.
  ScriptedUser& ChooseTdStream() {
    AddTdStream();
    return user_.Expect(kDialogTextExport1).SelectItems(kTreeExport, {kStream}).Next();
  }
  // The third page with one parameter chosen.
  ScriptedUser& ChooseRscp() {
    ChooseTdStream().SelectItems(kTreeExport, {"a_TD/TD-SCDMA/Quality/Power"}).Press(kButtonExportSelect);
    return user_.Next().SeePage(kDialogTextExport3);
  }
  int Export() {
    CTextExporter exporter;
    const int result = exporter.Export();
    user_.Finish();
    EXPECT_EQ(0, CResourceHandle::Current());
    return result;
  }
  // Lines of "depth text image".
  ScriptedUser& SeeTree(const std::vector<std::string>& expected) {
    return user_.Do("see the tree", [expected](CDialog& dialog) {
      const auto& tree = dialog.GetDlgItem<CTreeCtrl>(kTreeExport);
      std::vector<std::string> lines;
      for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
        lines.push_back(std::string(static_cast<std::size_t>(tree.GetDepth(item)), '.') + tree.GetItemText(item).str() +
                        " " + std::to_string(tree.GetItemImage(item)) + (tree.IsExpanded(item) ? " open" : ""));
      }
      EXPECT_EQ(expected, lines);
    });
  }
  ScriptedUser& SeeNames(const std::vector<CString>& names) {
    std::vector<std::vector<CString>> rows;
    for (const CString& name : names) rows.push_back({name, "", ""});
    return user_.SeeRows(kListExport, rows);
  }
};

TEST_F(TextExportWizard, OnlyStreamsOfOneProtocolCanBeChosen) {
  AddStream("b.log", "b", "DOUBLEPROTOCOL", {"UARFCN"});
  AddTdStream();
  AddStream("a.log", "a_GSM", "GSM", {"RxLev"});
  user_.Expect(kDialogTextExport1).SeeTitle("文本文件导出向导--第一步"_gbk).SeeButtons("cancel");
  SeeTree({"日志文件"_gbk.str() + " 5 open", ".a.log 3 open", "..a_TD 4", "..a_GSM 4", ".b.log 3 open"});
  user_.Do("see the resources", [](CDialog&) { EXPECT_EQ(1, CResourceHandle::Current()); });
  user_.SelectItems(kTreeExport, {"日志文件"_gbk}).SeeButtons("cancel");
  user_.SelectItems(kTreeExport, {"日志文件/b.log"_gbk}).SeeButtons("cancel");
  user_.SelectItems(kTreeExport, {kStream}).SeeButtons("next cancel").DoubleClickItem(kTreeExport, kStream);
  user_.SeePage(kDialogTextExport1).Next().SeePage(kDialogTextExport2).Back().SeeButtons("next cancel");
  user_.SelectItems(kTreeExport, {"日志文件/a.log"_gbk}).SeeButtons("cancel").Cancel();
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, TheTreeHoldsWhatTheStreamHasOfItsProtocol) {
  ChooseTdStream().SeeTitle("文本文件导出向导--第二步"_gbk).SeeButtons("back cancel");
  SeeTree({"a_TD 4 open", ".TD-SCDMA 1", "..Cell 1", "...UARFCN 2", "...NetworkMode 2", "..Quality 1", "...Power 1",
           "....PCCPCH_RSCP 2", "...TrCHBLER_Total 2", "...LAC 2"});
  user_.Do("see the columns", [](CDialog& dialog) {
    const auto& list = dialog.GetDlgItem<CListCtrl>(kListExport);
    CString columns;
    for (int at = 0; at < list.GetColumnCount(); ++at)
      columns += list.GetColumn(at).heading + Format(" %d ", list.GetColumnWidth(at));
    EXPECT_EQ("导出参数 100 最小值 55 最大值 55 "_gbk, columns);
  });
  user_.Cancel();
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, GroupsAddEachOfTheirLeavesOnce) {
  const CString quality = "a_TD/TD-SCDMA/Quality";
  ChooseTdStream().SelectItems(kTreeExport, {quality, quality + "/LAC", "a_TD/TD-SCDMA/Cell/UARFCN"});
  user_.Press(kButtonExportSelect).SeeButtons("back next cancel");
  SeeNames({"UARFCN", "PCCPCH_RSCP", "TrCHBLER_Total", "LAC"});
  user_.SelectItems(kTreeExport, {"a_TD"}).Press(kButtonExportSelect);
  SeeNames({"UARFCN", "PCCPCH_RSCP", "TrCHBLER_Total", "LAC", "NetworkMode"});
  user_.SelectRows(kListExport, {0, 2, 4}).Press(kButtonExportRemove).SeeButtons("back next cancel");
  SeeNames({"PCCPCH_RSCP", "LAC"});
  user_.Press(kButtonExportRemove);  // nothing is selected
  SeeNames({"PCCPCH_RSCP", "LAC"});
  user_.Press(kButtonExportClear).SeeButtons("back cancel");
  SeeNames({});
  user_.SelectItems(kTreeExport, {quality + "/LAC"}).Press(kButtonExportSelect).SelectRows(kListExport, {0});
  user_.Press(kButtonExportRemove).SeeButtons("back cancel").Cancel();
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, RowsMoveTogetherAndStaySelected) {
  ChooseTdStream().SelectItems(kTreeExport, {"a_TD"}).Press(kButtonExportSelect);
  SeeNames({"UARFCN", "NetworkMode", "PCCPCH_RSCP", "TrCHBLER_Total", "LAC"});
  user_.SelectRows(kListExport, {2, 3}).Press(kButtonExportUp).SeeSelectedRows(kListExport, {1, 2});
  SeeNames({"UARFCN", "PCCPCH_RSCP", "TrCHBLER_Total", "NetworkMode", "LAC"});
  user_.Do("see the first selected row",
           [](CDialog& dialog) { EXPECT_LE(dialog.GetDlgItem<CListCtrl>(kListExport).GetTopIndex(), 1); });
  user_.Press(kButtonExportDown).Press(kButtonExportDown).SeeSelectedRows(kListExport, {3, 4});
  SeeNames({"UARFCN", "NetworkMode", "LAC", "PCCPCH_RSCP", "TrCHBLER_Total"});
  user_.SelectRows(kListExport, {4}).Press(kButtonExportDown).SeeSelectedRows(kListExport, {4});
  user_.SelectRows(kListExport, {0}).Press(kButtonExportUp).SeeSelectedRows(kListExport, {0});
  SeeNames({"UARFCN", "NetworkMode", "LAC", "PCCPCH_RSCP", "TrCHBLER_Total"});
  user_.Cancel();
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, LimitsLieWithinTheValidRange) {
  const CString objection = "门限值设置错误，请重设！"_gbk;
  ChooseTdStream().SelectItems(kTreeExport, {"a_TD/TD-SCDMA/Quality", "a_TD/TD-SCDMA/Cell/NetworkMode"});
  user_.Press(kButtonExportSelect);
  SeeNames({"NetworkMode", "PCCPCH_RSCP", "TrCHBLER_Total", "LAC"});
  // No range, no limits; nor where no row is.
  user_.DoubleClick(kListExport, 0).DoubleClick(kListExport, -1).DoubleClick(kListExport, 2);
  user_.Expect(kDialogExportLimits).SeeTitle("参数导出设置"_gbk).SeeText(kEditLimitName, "TrCHBLER_Total");
  user_.SeeText(kEditValidMinimum, "0.000000").SeeText(kEditValidMaximum, "100.000000");
  user_.SeeText(kEditSetMinimum, "").SeeText(kEditSetMaximum, "");
  struct {
    const char* minimum;
    const char* maximum;
  } const refused[] = {{"120", ""}, {"-1", "5"}, {"5", "100.5"}, {"30", "20"}};
  for (const auto& [minimum, maximum] : refused) {
    user_.Type(kEditSetMinimum, minimum).Type(kEditSetMaximum, maximum).Ok();
    user_.ExpectMessage(objection, MessageIcon::kWarning);
  }
  user_.Type(kEditSetMinimum, "20").Type(kEditSetMaximum, "").Ok();
  const auto with = [](const CString& minimum, const CString& maximum) {
    return std::vector<std::vector<CString>>{
        {"NetworkMode", "", ""}, {"PCCPCH_RSCP", "", ""}, {"TrCHBLER_Total", minimum, maximum}, {"LAC", "", ""}};
  };
  user_.SeeRows(kListExport, with("20.00", "100.00")).DoubleClick(kListExport, 2).Expect(kDialogExportLimits);
  user_.SeeText(kEditSetMinimum, "20.000000").Type(kEditSetMinimum, "1.256").Type(kEditSetMaximum, "2").Cancel();
  user_.SeeRows(kListExport, with("20.00", "100.00")).DoubleClick(kListExport, 2).Expect(kDialogExportLimits);
  user_.Type(kEditSetMinimum, "1.256").Type(kEditSetMaximum, "2").Ok().SeeRows(kListExport, with("1.26", "2.00"));
  // The limits go with the row, up and down and away.
  user_.SelectRows(kListExport, {2})
      .Press(kButtonExportDown)
      .SeeRows(kListExport,
               {{"NetworkMode", "", ""}, {"PCCPCH_RSCP", "", ""}, {"LAC", "", ""}, {"TrCHBLER_Total", "1.26", "2.00"}});
  user_.Press(kButtonExportRemove).SelectItems(kTreeExport, {"a_TD/TD-SCDMA/Quality/TrCHBLER_Total"});
  user_.Press(kButtonExportSelect);
  SeeNames({"NetworkMode", "PCCPCH_RSCP", "LAC", "TrCHBLER_Total"});
  user_.DoubleClick(kListExport, 3).Expect(kDialogExportLimits).SeeText(kEditSetMaximum, "").Cancel().Cancel();
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, TheSecondPageStartsAfreshWithAnotherStreamOnly) {
  AddStream("a.log", "a_GSM", "GSM", {"RxLev"});
  ChooseTdStream().SelectItems(kTreeExport, {"a_TD/TD-SCDMA/Quality/LAC"}).Press(kButtonExportSelect).Back();
  user_.SeePage(kDialogTextExport1).Next().SeeButtons("back next cancel");
  SeeNames({"LAC"});
  user_.Back().SelectItems(kTreeExport, {"日志文件/a.log/a_GSM"_gbk}).Next().SeeButtons("back cancel");
  SeeNames({});
  SeeTree({"a_GSM 4 open", ".GSM 1", "..Cell 1", "...RxLev 2"});
  user_.Cancel();
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, AnEmptyListDoesNotLeadOnAndSaysSo) {
  ChooseTdStream().Do("go on without a parameter", [](CDialog& dialog) {
    dialog.GetSheet()->SetWizardButtons(kWizardBack | kWizardNext);
    dialog.GetSheet()->UserPress(kIdWizardNext);
  });
  user_.ExpectMessage("请选择要导出的参数！"_gbk, MessageIcon::kWarning).SeePage(kDialogTextExport2).Cancel();
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, WithoutANavigatorTheWizardEnds) {
  WriteRawNavigator("<no>");
  ChooseTdStream().ExpectMessage("加载参数配置文件失败！不能正常显示参数"_gbk, MessageIcon::kError);
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, AStreamThatIsGoneKeepsTheFirstPage) {
  AddTdStream();
  user_.Expect(kDialogTextExport1).SelectItems(kTreeExport, {kStream});
  user_.Do("drop the log", [this](CDialog&) { manager_.DropLogfile("a.log"); }).Next();
  user_.ExpectMessage("初始化信息失败，请重试！"_gbk, MessageIcon::kError).SeePage(kDialogTextExport1).Cancel();
  EXPECT_EQ(0, Export());
}

TEST_F(TextExportWizard, TheThirdPageStartsWithATabAndTheNames) {
  ChooseRscp().SeeTitle("文本文件导出向导--第三步"_gbk).SeeButtons("back cancel").SeeText(kEditExportFile, "");
  user_.SeeChecked(kRadioExportTab, 1).SeeChecked(kRadioExportRaw, 1).SeeChecked(kCheckExportHeader, 1);
  user_.SeeChecked(kCheckExportUnits, 0).SeeEnabled(kCheckExportUnits, true).SeeEnabled(kEditExportCustom, false);
  user_.SeeChecked(kCheckExportFill, 0);
  user_.Check(kCheckExportUnits, true).Check(kCheckExportHeader, false);
  user_.SeeChecked(kCheckExportUnits, 0).SeeEnabled(kCheckExportUnits, false);
  user_.Check(kCheckExportHeader, true).SeeEnabled(kCheckExportUnits, true).SeeChecked(kCheckExportUnits, 0);
  user_.Press(kButtonExportBrowse).CancelFiles().SeeText(kEditExportFile, "").SeeButtons("back cancel");
  user_.Press(kButtonExportBrowse).PickFiles({folder_.File("out")}).SeeText(kEditExportFile, Path());
  user_.SeeButtons("back finish cancel").Back().Next().SeeButtons("back finish cancel").Cancel();
  EXPECT_EQ(0, Export());
  const FileDialogRequest& request = user_.file_dialogs().front();
  EXPECT_TRUE(request.save && request.overwrite_prompt);
  EXPECT_EQ("新建文本文件"_gbk, request.title);
  EXPECT_EQ("txt", request.default_extension);
  EXPECT_EQ((std::vector<CString>{"*.txt"}), request.filters.front().patterns);
}

TEST_F(TextExportWizard, FinishNeedsAFileAndASeparator) {
  ChooseRscp().Press(kButtonExportBrowse).PickFiles({Path()}).Type(kEditExportFile, "").FinishWizard();
  user_.ExpectMessage("请指定输出的文本文件名称！"_gbk, MessageIcon::kNone).SeePage(kDialogTextExport3);
  user_.Type(kEditExportFile, Path()).Press(kRadioExportCustom).SeeEnabled(kEditExportCustom, true);
  for (const char* const refused : {"a", "5", "Z", "\x7F", "\x80"}) {
    user_.Type(kEditExportCustom, refused).ExpectMessage("请输入一个符号"_gbk, MessageIcon::kNone);
    user_.SeeText(kEditExportCustom, "");
  }
  user_.FinishWizard().ExpectMessage("请设定文本分隔符！"_gbk, MessageIcon::kNone);
  user_.Press(kRadioExportComma).SeeEnabled(kEditExportCustom, false).FinishWizard();
  user_.ExpectMessage("导出文本文件成功!"_gbk, MessageIcon::kInformation);
  EXPECT_EQ(1, Export());
}

TEST_F(TextExportWizard, WhatThePagesHoldIsWritten) {
  const std::string time = CDTTime(5).ToString(127).str();
  struct {
    const char* symbol;  // null: a radio button
    int radio;
    std::string separator;
  } const cases[] = {{nullptr, kRadioExportTab, "\t"},      {nullptr, kRadioExportComma, ","},
                     {nullptr, kRadioExportSemicolon, ";"}, {"#", kRadioExportCustom, "#"},
                     {".", kRadioExportCustom, ". "},       {" ", kRadioExportCustom, "  "}};
  IDataStream& stream = *AddTdStream();
  AddRow(stream, 5, {{kRscpIe, uniFieldValue(-70)}});
  for (const auto& [symbol, radio, separator] : cases) {
    user_.Expect(kDialogTextExport1).SelectItems(kTreeExport, {kStream}).Next();
    user_.SelectItems(kTreeExport, {"a_TD/TD-SCDMA/Quality/Power"}).Press(kButtonExportSelect).Next();
    user_.Type(kEditExportFile, Path()).Check(kCheckExportUnits, true).Press(radio);
    if (symbol != nullptr) user_.Type(kEditExportCustom, symbol);
    user_.FinishWizard().ExpectMessage("导出文本文件成功!"_gbk, MessageIcon::kInformation);
    EXPECT_EQ(1, Export());
    std::string expected = "RecordTime()|Longitude(degree)|Latitude(degree)|PCCPCH_RSCP(dBm)|Distance(m)|TimeStamp()";
    expected += "\r\n" + time + "| | |-70| | \r\n";
    for (std::size_t at = 0; (at = expected.find('|', at)) != std::string::npos; at += separator.size()) {
      expected.replace(at, 1, separator);
    }
    EXPECT_EQ(expected, Written());
  }
}

}  // namespace
}  // namespace loom::testing
