#include "manager/import_file_dialog.h"

#include "platform/encoding.h"
#include "resources/log_import_templates.h"
#include "settings/binning_page.h"
#include "text/selection/ie_selection_page.h"
#include "text/selection/import_wiz.h"

namespace loom {
namespace {

constexpr std::int32_t kStandardLengthM = 100;  // of a distance slice and of both sides of a grid cell

}  // namespace

CImportFileDialog::CImportFileDialog(bool open, const CString& default_extension, const CString& file_name,
                                     unsigned flags, const CString& filter)
    : CFileDialog(open, default_extension, file_name, flags, filter) {
  SetExtraButton(kButtonImportSettings, Utf8ToGbk(kLogFilesControls[0].text));
  binning_.binning_distance_m = kStandardLengthM;
  binning_.grid_height_m = kStandardLengthM;
  binning_.grid_width_m = kStandardLengthM;
}

void CImportFileDialog::OnExtraButton() {
  CImportWiz sheet("文件导入设置"_gbk);
  CImportBinningSetting binning_page;
  binning_page.SetEnabled(binning_enabled_);
  binning_page.SetSetting(binning_);
  binning_page.SetParameters(binning_.ue_parameter, binning_.scanner_parameter);
  CSelImportDialog selection_page;
  selection_page.SetFirstUse(first_use_);
  selection_page.SetPreviousSettings(ie_settings_);
  sheet.AddPage(selection_page);
  sheet.AddPage(binning_page);
  if (sheet.DoModal() != kIdOk) return;

  ie_settings_ = selection_page.GetResult();
  struct_BinningSetting confirmed;
  binning_page.GetSetting(confirmed);
  binning_ = confirmed;
  binning_enabled_ = binning_page.IsEnabled();
  first_use_ = 0;
}

}  // namespace loom
