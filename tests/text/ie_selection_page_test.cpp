#include "text/selection/ie_selection_page.h"

#include "components/project.h"
#include "resources/images.h"
#include "resources/log_import_templates.h"
#include "tests/support/places.h"
#include "tests/text/navigator_test.h"
#include "text/selection/import_wiz.h"

namespace loom::testing {
namespace {

const CString kNoIes = "没有选择导入IE，文件打开后将不导入任何IE，是否继续？"_gbk;

class IeSelection : public NavigatorTest {
 protected:
  // Two protocols of one leaf each.
  IeSelection() {
    WriteNavigator(R"(
        <PROTOCOL type="NAVIGATORPROTOCOL" value="TD-SCDMA">
          <PCCPCH_RSCP type="NAVIGATORPARAMITEM"/>
          <TimeslotISCP type="NAVIGATORPARAMTYPE" check="true"><TimeslotISCP_0 type="NAVIGATORPARAMITEM"/></TimeslotISCP>
        </PROTOCOL>
        <PROTOCOL type="NAVIGATORPROTOCOL" value="GSM"><BCCH type="NAVIGATORPARAMITEM" check="true"/></PROTOCOL>)");
  }

  // Shows the page in its sheet; what the person does is in user_.
  int Run(CSelImportDialog& page) {
    CImportWiz sheet("文件导入设置"_gbk);
    sheet.AddPage(page);
    return sheet.DoModal();
  }
  // Compares the tree: a line per item, indented by level, with the marks + ticked, ~ partly, - clear and * for a
  // group.
  ScriptedUser& SeeTree(const std::vector<std::string>& expected) {
    return user_.Do("see the tree", [expected](CDialog& dialog) {
      const auto& tree = dialog.GetDlgItem<CMutiTreeCtrl>(kTreeImportIes);
      std::vector<std::string> lines;
      for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
        const char* const kMarks = "-+~";
        std::string line(static_cast<std::size_t>(tree.GetDepth(item)), '.');
        line += tree.GetItemText(item).str() + " " + kMarks[tree.GetCheck(item)];
        lines.push_back(line + (tree.GetItemImage(item) == kImageGroup ? "*" : ""));
      }
      EXPECT_EQ(expected, lines);
    });
  }
  ScriptedUser& Begin() { return user_.Expect(kDialogSelImport); }
  static std::vector<CString> Keys(const ImpIESettings& settings) {
    std::vector<CString> keys;
    for (const auto& [key, setting] : settings) keys.push_back(key);
    return keys;
  }
};

TEST_F(IeSelection, RepeatedElementsAreShownOnce) {
  WriteNavigator(R"(
      <Independent><RecordTime type="NAVIGATORPARAMITEM"/></Independent>
      <PROTOCOL type="NAVIGATORPROTOCOL" value="TD-SCDMA">
        <RSSI_Measurements_Scan type="x"><RSSI_TS0_Scan type="y"/></RSSI_Measurements_Scan>
        <Root type="NAVIGATORPARAMROOT">
          <TimeslotInfo_Set1><TimeslotDirection_1 type="NAVIGATORPARAMITEM" check="true"/></TimeslotInfo_Set1>
          <TimeslotInfo_Set2><TimeslotDirection_2 type="NAVIGATORPARAMITEM"/></TimeslotInfo_Set2>
          <DL_DPCHInfo_0><Any type="NAVIGATORPARAMITEM"/></DL_DPCHInfo_0>
          <NborUARFCN check="true"><NborUARFCN_0 type="NAVIGATORPARAMITEM"/></NborUARFCN>
          <NborUARFCN/>
          <NborRxLevAccessMin/>
          <DDI/><DDIO_Extra type="NAVIGATORPARAMITEM"/>
          <Level_by_ARFCN_1><Hidden/></Level_by_ARFCN_1>
          <Events type="NAVIGATOREVENTSROOT"><Hidden/></Events>
        </Root>
        <Uplink_Measurements><Hidden/></Uplink_Measurements>
        <UARFCN_Scan check="true"><UARFCN_Scan_1 type="NAVIGATORPARAMITEM"/></UARFCN_Scan>
        <UARFCN_Scan_Again/>
        <Pilot_Measurements_Scan><DwPCH_RSCP_Scan/></Pilot_Measurements_Scan>
      </PROTOCOL>
      <Level type="NAVIGATORSTREAM"><PROTOCOL type="NAVIGATORPROTOCOL" value="GSM"><Empty/></PROTOCOL></Level>)");
  CSelImportDialog page;
  Begin();
  SeeTree({"TD-SCDMA ~*",
           ".Root ~*",
           "..TimeslotInfo +*",
           "...TimeslotDirection_1 +",
           "..DPCHInfo -*",
           "...Any -",
           "..NborUARFCN +",
           "..NborRxLevAccessMin -",
           "..DDI -",
           "..DDIO_Extra -",
           ".SCANNER_DataInfo ~*",
           "..UARFCN_Scan +",
           "..Pilot_Measurements_Scan -*",
           "...DwPCH_RSCP_Scan -",
           "RSSI_Measurements_Scan -*",
           ".RSSI_TS0_Scan -",
           "GSM -*",
           ".Empty -*",
           "All L3 +*",
           ".L3 +",
           "All Event +*",
           ".Event +"});
  user_.Ok().ExpectMessage("没有选择导入GSM的IE，文件打开后将不导入任何GSM的IE，是否继续？"_gbk);
  // The second item at the top, where GSM is expected, is the scan group that came before the scanner's.
  EXPECT_EQ(kIdOk, Run(page));
  const ImpIESettings& result = page.GetResult();
  EXPECT_EQ("UARFCN_Scan_1", result.at("UARFCN_Scan").ie_name);
  EXPECT_EQ("NborUARFCN_0", result.at("NborUARFCN").ie_name);
  EXPECT_EQ("TimeslotDirection_1", result.at("TimeslotDirection_1").ie_name);
  EXPECT_EQ("EventID_0", result.at("Event").ie_name);
}

TEST_F(IeSelection, ADocumentElementThatIsShownHoldsEverything) {
  WriteRawNavigator("<Top><BCCH type='NAVIGATORPARAMITEM'/></Top>");
  CSelImportDialog page;
  Begin();
  SeeTree({"Top ~*", ".BCCH -", ".All L3 +*", "..L3 +", ".All Event +*", "..Event +"}).Cancel();
  EXPECT_EQ(kIdCancel, Run(page));
  EXPECT_TRUE(page.GetResult().empty());
}

TEST_F(IeSelection, LeavesBecomeSettingsWithTheirRanges) {
  CSelImportDialog page;
  Begin().Tick(kTreeImportIes, "TD-SCDMA/PCCPCH_RSCP").Tick(kTreeImportIes, "All Event", false).Ok();
  EXPECT_EQ(kIdOk, Run(page));
  const ImpIESettings& result = page.GetResult();
  EXPECT_EQ((std::vector<CString>{"BCCH", "L3", "Latitude", "Longitude", "PCCPCH_RSCP", "RecordTime", "TimeslotISCP"}),
            Keys(result));
  EXPECT_EQ("MsgName", result.at("L3").ie_name);
  EXPECT_EQ("TimeslotISCP_0", result.at("TimeslotISCP").ie_name);
  EXPECT_EQ(-116, result.at("TimeslotISCP").minimum);
  EXPECT_EQ(-25, result.at("TimeslotISCP").maximum);
  EXPECT_EQ(-180, result.at("Longitude").minimum);
  EXPECT_EQ(-255, result.at("RecordTime").minimum);
  EXPECT_EQ(-255, result.at("RecordTime").maximum);
}

TEST_F(IeSelection, LeavingOutAProtocolIsAskedAbout) {
  const CString no_td = "没有选择导入TD-SCDMA的IE，文件打开后将不导入任何TD-SCDMA的IE，是否继续？"_gbk;
  const CString no_gsm = "没有选择导入GSM的IE，文件打开后将不导入任何GSM的IE，是否继续？"_gbk;
  CSelImportDialog page;
  Begin().Tick(kTreeImportIes, "TD-SCDMA", false).Ok();
  user_.ExpectMessage(no_td, MessageIcon::kNone).Answer(MessageAnswer::kNo);
  user_.Tick(kTreeImportIes, "TD-SCDMA/PCCPCH_RSCP").Tick(kTreeImportIes, "GSM", false).Ok();
  user_.ExpectMessage(no_gsm, MessageIcon::kNone).Answer(MessageAnswer::kNo);
  for (const char* item : {"TD-SCDMA", "All L3", "All Event"}) user_.Tick(kTreeImportIes, item, false);
  user_.Ok().ExpectMessage(kNoIes, MessageIcon::kNone);
  EXPECT_EQ(kIdOk, Run(page));
  EXPECT_EQ((std::vector<CString>{"Latitude", "Longitude", "RecordTime"}), Keys(page.GetResult()));
  for (const MessageBoxRequest& message : user_.messages()) {
    EXPECT_EQ(MessageButtons::kYesNo, message.buttons);
    EXPECT_EQ("Quillon Loom", message.caption);
  }
}

TEST_F(IeSelection, LeavesTickedAgainKeepTheRangesTheyHad) {
  CSelImportDialog page;
  page.SetFirstUse(0);
  page.SetPreviousSettings(
      {{"BCCH", {"BCCH", 1, 2}}, {"PCCPCH_RSCP", {"PCCPCH_RSCP", 3, 4}}, {"RecordTime", {"X", 5, 6}}});
  Begin();
  SeeTree({"TD-SCDMA ~*", ".PCCPCH_RSCP -", ".TimeslotISCP +", "GSM +*", ".BCCH +", "All L3 +*", ".L3 +",
           "All Event +*", ".Event +"})
      .Ok();
  EXPECT_EQ(kIdOk, Run(page));
  EXPECT_EQ(2, page.GetResult().at("BCCH").maximum);
  EXPECT_FALSE(page.GetResult().contains("PCCPCH_RSCP"));
  EXPECT_EQ("RecordTime", page.GetResult().at("RecordTime").ie_name);
}

TEST_F(IeSelection, ATemplateKeepsTheTicks) {
  const CString path = folder_.File("template.xml");
  CSelImportDialog page;
  Begin().Tick(kTreeImportIes, "TD-SCDMA/PCCPCH_RSCP").Tick(kTreeImportIes, "All L3", false);
  user_.Press(kButtonSaveIeTemplate).PickFiles({path}).Cancel();
  EXPECT_EQ(kIdCancel, Run(page));
  const FileDialogRequest& dialog = user_.file_dialogs().front();
  EXPECT_TRUE(dialog.save && dialog.overwrite_prompt);
  EXPECT_EQ("配置模板(*.xml)"_gbk, dialog.filters.front().name);
  const std::string written = ReadWholeText(path);
  EXPECT_NE(std::string::npos, written.find(R"(<IE name="TimeslotISCP_0">TimeslotISCP</IE>)")) << written;
  EXPECT_LT(written.find(">BCCH<"), written.find(">Event<"));
  EXPECT_EQ(std::string::npos, written.find("L3"));

  CSelImportDialog other;
  Begin().Press(kButtonLoadIeTemplate).CancelFiles().Press(kButtonLoadIeTemplate).PickFiles({path});
  SeeTree({"TD-SCDMA +*", ".PCCPCH_RSCP +", ".TimeslotISCP +", "GSM +*", ".BCCH +", "All L3 -*", ".L3 -",
           "All Event +*", ".Event +"})
      .Ok();
  EXPECT_EQ(kIdOk, Run(other));
  EXPECT_EQ("TimeslotISCP_0", other.GetResult().at("TimeslotISCP").ie_name);
  EXPECT_EQ(-116, other.GetResult().at("PCCPCH_RSCP").minimum);
}

TEST_F(IeSelection, FilesThatAreNoTemplatesRebuildTheTreeWithTheTicksOfBefore) {
  const std::vector<std::string> defaults{"TD-SCDMA ~*", ".PCCPCH_RSCP -", ".TimeslotISCP +", "GSM +*",  ".BCCH +",
                                          "All L3 +*",   ".L3 +",          "All Event +*",    ".Event +"};
  const CString path = folder_.File("other.xml");
  for (const char* content : {"<OTHER><IE name='BCCH'>BCCH</IE></OTHER>", "<IMPSETTING><IE", "", "<IMPSETTING/>"}) {
    WriteWholeFile(path, content);
    CSelImportDialog page;
    Begin().Tick(kTreeImportIes, "GSM", false).Press(kButtonLoadIeTemplate).PickFiles({path});
    SeeTree(defaults).Cancel();
    Run(page);
    EXPECT_EQ(std::string(content) == "<IMPSETTING/>", page.GetOutcome() == DialogOutcome::kDone) << content;
  }
  WriteWholeFile(path, "<IMPSETTING><IE name='BCCH'>BCCH</IE><IE>Nowhere</IE></IMPSETTING>");
  CSelImportDialog page;
  Begin().Press(kButtonLoadIeTemplate).PickFiles({path}).SeeTicked(kTreeImportIes, "GSM", kTreeTicked).Cancel();
  Run(page);
  ASSERT_EQ(1u, notes_.Count("template entry unknown"));
  EXPECT_EQ("IE 'Nowhere'", notes_.kinds().front().places.front().at);
}

TEST_F(IeSelection, WithoutANavigatorOnlyTimeAndPositionAreChosen) {
  for (const char* bytes : {"<Navigator><open>", ""}) {
    WriteRawNavigator(bytes);
    CSelImportDialog page;
    user_.ExpectMessage("加载配置文件失败！"_gbk, MessageIcon::kError);
    Begin();
    SeeTree({}).Ok().ExpectMessage(kNoIes);
    EXPECT_EQ(kIdOk, Run(page));
    EXPECT_EQ((std::vector<CString>{"Latitude", "Longitude", "RecordTime"}), Keys(page.GetResult()));
  }
}

TEST_F(IeSelection, TheHostsNavigatorShowsTdScdmaThenGsm) {
  SetChosenConfigFolder(ConfigFolder());
  CSelImportDialog page;
  Begin().Do("look at the top level", [](CDialog& dialog) {
    const auto& tree = dialog.GetDlgItem<CMutiTreeCtrl>(kTreeImportIes);
    std::vector<CString> top;
    for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextSiblingItem(item)) {
      top.push_back(tree.GetItemText(item));
      EXPECT_TRUE(tree.IsExpanded(item));
    }
    EXPECT_EQ((std::vector<CString>{"TD-SCDMA", "GSM", "LTE", "All L3", "All Event"}), top);
    EXPECT_EQ(3, tree.GetStateImage(tree.FindPath("All L3/L3")));
  });
  user_.Ok();
  EXPECT_EQ(kIdOk, Run(page));
  for (const auto& [text, setting] : page.GetResult()) {
    EXPECT_NE(nullptr, g_project->GetIEByName(setting.ie_name)) << text << ": " << setting.ie_name;
  }
}

}  // namespace
}  // namespace loom::testing
