#include "platform/ui/file_dialog.h"
#include "resources/text_import_templates.h"
#include "text/import/text_import_pages.h"

namespace loom {

CTextImportWizPage1::CTextImportWizPage1(TextImportSettings& settings)
    : CPropertyPage(kTextImport1Template), settings_(settings) {
  OnClicked(kButtonBrowseText, [this] { BrowseText(); });
  OnClicked(kButtonImportConfig, [this] { BrowseConfig(); });
  OnSelChange(kComboImportConfig, [this] { ShowButtons(); });
  OnChange(kEditTextPath, [this] {
    UpdateData(true);
    ShowButtons();
  });
}

void CTextImportWizPage1::OnInitDialog() {
  auto& configs = GetDlgItem<CComboBox>(kComboImportConfig);
  configs.AddString("[无配置]"_gbk);
  configs.SetCurSel(0);
  CPropertyPage::OnInitDialog();
}

void CTextImportWizPage1::DoDataExchange(CDataExchange& exchange) { exchange.Text(kEditTextPath, settings_.path); }

bool CTextImportWizPage1::OnSetActive() {
  CPropertyPage::OnSetActive();
  ShowButtons();
  return true;
}

// A configuration leaves nothing to ask.
void CTextImportWizPage1::ShowButtons() {
  const bool has_path = !settings_.path.IsEmpty();
  GetDlgItem(kButtonImportConfig).EnableWindow(has_path);
  const bool has_config = GetDlgItem<CComboBox>(kComboImportConfig).GetCurSel() > 0;
  if (!has_path) {
    GetSheet()->SetWizardButtons(0);
  } else {
    GetSheet()->SetWizardButtons(has_config ? kWizardFinish : kWizardNext);
  }
}

void CTextImportWizPage1::BrowseText() {
  CFileDialog dialog(true, "*.TXT", CString(), CFileDialog::kFileMustExist, "TXT file (*.TXT)|*.TXT||");
  dialog.SetTitle("选择文本文件"_gbk);
  if (dialog.DoModal() == kIdOk) {
    settings_.path = dialog.GetPathName();
    UpdateData(false);
  }
  ShowButtons();
}

void CTextImportWizPage1::BrowseConfig() {
  CFileDialog dialog(true, kImportConfigExtension, CString(), 0, kImportConfigFilter);
  dialog.SetTitle("选择导入配置文件"_gbk);
  if (dialog.DoModal() != kIdOk) return;
  auto& configs = GetDlgItem<CComboBox>(kComboImportConfig);
  const int present = configs.FindStringExact(-1, dialog.GetPathName());
  if (present > 0) configs.DeleteString(present);
  configs.SetCurSel(configs.AddString(dialog.GetPathName()));
  ShowButtons();
}

int CTextImportWizPage1::OnWizardNext() { return settings_.path.IsEmpty() ? kWizardStay : kWizardGoOn; }

bool CTextImportWizPage1::OnWizardFinish() {
  return LoadImportConfig(GetDlgItem<CComboBox>(kComboImportConfig).GetWindowText(), settings_);
}

}  // namespace loom
