#include "text/export/text_export_page3.h"

#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "resources/text_export_templates.h"
#include "text/separator.h"
#include "text/separator_edit.h"

namespace loom {

CTextExportWizPage3::CTextExportWizPage3() : CPropertyPage(kTextExport3Template) {
  OnClicked(kRadioExportTab, [this] { UseSeparator("\t"); });
  OnClicked(kRadioExportComma, [this] { UseSeparator(","); });
  OnClicked(kRadioExportSemicolon, [this] { UseSeparator(";"); });
  OnClicked(kRadioExportCustom, [this] { GetDlgItem(kEditExportCustom).EnableWindow(true); });
  OnChange(kEditExportCustom, [this] { ReadCustomSeparator(); });
  OnClicked(kCheckExportHeader, [this] { FollowHeader(); });
  OnClicked(kButtonExportBrowse, [this] { Browse(); });
  OnChange(kEditExportFile, [this] { AllowFinish(); });
}

void CTextExportWizPage3::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  CheckRadio(kRadioExportTab);
  auto& custom = GetDlgItem<CEdit>(kEditExportCustom);
  custom.SetLimitText(1);
  custom.EnableWindow(false);
}

void CTextExportWizPage3::DoDataExchange(CDataExchange& exchange) {
  exchange.Text(kEditExportFile, file_name_);
  exchange.Radio(kRadioExportRaw, data_choice_);
  exchange.Check(kCheckExportHeader, write_header_);
  exchange.Check(kCheckExportUnits, write_units_);
  exchange.Check(kCheckExportFill, fill_gaps_);
}

bool CTextExportWizPage3::OnSetActive() {
  if (!CPropertyPage::OnSetActive()) return false;
  GetSheet()->SetWizardButtons(kWizardBack | (file_name_.IsEmpty() ? kWizardDisabledFinish : kWizardFinish));
  return true;
}

void CTextExportWizPage3::UseSeparator(const char* separator) {
  separator_ = separator;
  GetDlgItem(kEditExportCustom).EnableWindow(false);
}

void CTextExportWizPage3::ReadCustomSeparator() {
  if (const auto symbol = TypedSeparator(GetDlgItem<CEdit>(kEditExportCustom))) separator_ = WidenedSeparator(*symbol);
}

void CTextExportWizPage3::FollowHeader() {
  const bool has_header = GetDlgItem<CButton>(kCheckExportHeader).GetCheck() != 0;
  auto& units = GetDlgItem<CButton>(kCheckExportUnits);
  if (!has_header) units.SetCheck(0);
  units.EnableWindow(has_header);
}

void CTextExportWizPage3::Browse() {
  CFileDialog dialog(false, "txt", CString(), CFileDialog::kOverwritePrompt, "Text(*.txt)|*.txt||");
  dialog.SetTitle("新建文本文件"_gbk);
  if (dialog.DoModal() != kIdOk) return;
  GetDlgItem(kEditExportFile).SetWindowText(dialog.GetPathName());
  AllowFinish();
}

void CTextExportWizPage3::AllowFinish() {
  if (!GetDlgItem(kEditExportFile).GetWindowText().IsEmpty()) GetSheet()->SetWizardButtons(kWizardBack | kWizardFinish);
}

bool CTextExportWizPage3::OnWizardFinish() {
  if (file_name_.IsEmpty()) {
    ShowMessageBox("请指定输出的文本文件名称！"_gbk);
    return false;
  }
  if (separator_.IsEmpty()) {
    ShowMessageBox("请设定文本分隔符！"_gbk);
    return false;
  }
  flags_ = {write_header_, write_header_ != 0 ? write_units_ : 0, data_choice_ != 0 ? 1 : 0, fill_gaps_};
  return true;
}

}  // namespace loom
