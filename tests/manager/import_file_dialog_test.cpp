#include "manager/import_file_dialog.h"

#include "components/project.h"
#include "components/resource_handle.h"
#include "manager/io_manager.h"
#include "platform/file.h"
#include "resources/binning_templates.h"
#include "resources/log_import_templates.h"
#include "tests/importers/import_test.h"

namespace loom::testing {
namespace {

class ImportFileDialog : public ImportTest {
 protected:
  ScriptedUser& OpenSettings() { return user_.PressInFiles(kButtonImportSettings).Expect(kDialogSelImport); }

  CImportFileDialog dialog_{true, "", "", 0, "Log|*.log||"};
  CIOManager manager_;
};

TEST_F(ImportFileDialog, TheSheetChangesNothingUntilItIsConfirmed) {
  OpenSettings().SeeTitle("文件导入设置"_gbk).SeeButtons("ok cancel");
  user_.SheetPage(kDialogBinning).Check(kCheckBinningEnabled, true).Check(kCheckUe, true).Cancel().CancelFiles();
  EXPECT_EQ(kIdCancel, dialog_.DoModal());
  EXPECT_TRUE(dialog_.GetIESettings().empty());
  const struct_BinningSetting& binning = dialog_.GetBinningSetting();
  EXPECT_EQ(kBinningByTime, binning.binning_type);
  EXPECT_EQ(1, binning.binning_time_s);
  EXPECT_EQ(100, binning.binning_distance_m);
  EXPECT_EQ(100, binning.grid_height_m);
  EXPECT_EQ(100, binning.grid_width_m);
  EXPECT_EQ("导入设置(&I)"_gbk, user_.file_dialogs().front().extra_button->text);
}

TEST_F(ImportFileDialog, ASecondOpeningShowsWhatWasConfirmed) {
  OpenSettings().SheetPage(kDialogBinning).Check(kCheckBinningEnabled, true).Press(kRadioByDistance);
  user_.Type(kEditDistance, "30").Check(kCheckScanner, true).Ok();
  OpenSettings().SheetPage(kDialogBinning).SeeChecked(kCheckBinningEnabled, 1).SeeText(kEditDistance, "30");
  user_.SeeChecked(kCheckScanner, 1).SeeEnabled(kEditDistance, true).Ok();
  // Switched off, the numbers fall back to those of a setting that nobody has made.
  OpenSettings().SheetPage(kDialogBinning).Check(kCheckBinningEnabled, false).Press(kIdOk);
  OpenSettings().SheetPage(kDialogBinning).SeeText(kEditDistance, "0").Ok().CancelFiles();
  dialog_.DoModal();
  EXPECT_TRUE(dialog_.GetIESettings().contains("RecordTime"));
  EXPECT_EQ("", dialog_.GetBinningSetting().scanner_parameter);
  EXPECT_EQ(0, dialog_.GetBinningSetting().binning_distance_m);
}

TEST_F(ImportFileDialog, ARefusedSelectionKeepsTheSheetOpenOnEitherPage) {
  OpenSettings().Tick(kTreeImportIes, "TD-SCDMA", false).Tick(kTreeImportIes, "GSM", false).SheetPage(kDialogBinning);
  user_.Ok().ExpectMessage("没有选择导入IE，文件打开后将不导入任何IE，是否继续？"_gbk).Answer(MessageAnswer::kNo);
  user_.SeePage(kDialogBinning).Check(kCheckBinningEnabled, true).Ok();
  user_.ExpectMessage("没有选择导入IE，文件打开后将不导入任何IE，是否继续？"_gbk);
  user_.ExpectMessage("请至少选择一种处理方式."_gbk).SeePage(kDialogBinning).Cancel().CancelFiles();
  dialog_.DoModal();
  EXPECT_TRUE(dialog_.GetIESettings().empty());
}

TEST_F(ImportFileDialog, AnImportStoresTheSettingsWithEveryLog) {
  const std::vector<CString> paths{WriteLog("a.log", {HandsetRecord()}), WriteLog("b.log", {HandsetRecord()})};
  OpenSettings().Tick(kTreeImportIes, "TD-SCDMA", false).Tick(kTreeImportIes, "GSM", false);
  user_.Do("look at the resources", [](CDialog&) { EXPECT_EQ(1, CResourceHandle::Current()); });
  user_.SheetPage(kDialogBinning).Check(kCheckBinningEnabled, true).Type(kEditTime, "5").Check(kCheckUe, true).Ok();
  user_.ExpectMessage("没有选择导入IE，文件打开后将不导入任何IE，是否继续？"_gbk);
  user_.PickFiles(paths);
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_EQ(0, CResourceHandle::Current());
  for (const CString& path : paths) {
    const ImpIESettings settings = g_project->GetImpSettingByLogFile(path);
    EXPECT_TRUE(settings.contains("RecordTime")) << path;
    EXPECT_FALSE(settings.contains("UARFCN"));
    struct_BinningSetting binning;
    g_project->GetBinningSetting(path, binning);
    EXPECT_EQ(5, binning.binning_time_s);
    EXPECT_EQ("PBCH_RSRP", binning.ue_parameter);
  }
}

TEST_F(ImportFileDialog, WithTheSheetClosedEverythingIsImported) {
  const CString path = WriteLog("a.log", {HandsetRecord()});
  user_.PickFiles({path});
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_TRUE(g_project->GetImpSettingByLogFile(path).empty());
  EXPECT_TRUE(host_.project().Content().import_settings.empty());
}

TEST_F(ImportFileDialog, SettingsOutliveASelectionThatIsTooLarge) {
  std::vector<CString> many;
  const CString long_name(std::string(200, 'x'));
  for (int number = 0; number < 350; ++number) {
    many.push_back(folder_.File(Format("%s%d.log", long_name, number)));
    WriteWholeFile(many.back(), "");
  }
  const CString path = WriteLog("a.log", {HandsetRecord()});
  OpenSettings().SheetPage(kDialogBinning).Check(kCheckBinningEnabled, true).Check(kCheckUe, true).Ok();
  user_.PickFiles(many).ExpectMessage("选择文件个数过多，请减少文件个数后重试!"_gbk, MessageIcon::kWarning);
  user_.PickFiles({path});
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));
  struct_BinningSetting binning;
  g_project->GetBinningSetting(path, binning);
  EXPECT_EQ("PBCH_RSRP", binning.ue_parameter);
}

}  // namespace
}  // namespace loom::testing
