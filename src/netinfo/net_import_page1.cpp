#include "netinfo/net_import_page1.h"

#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "resources/net_import_templates.h"

namespace loom {

CNetInfoImportWizPage1::CNetInfoImportWizPage1()
    : CPropertyPage(kNetImport1Template),
      protocol_text_(NetProtocolNames().front()),
      data_type_text_(NetDataTypeName(kNetCell)) {
  OnClicked(kButtonBrowseNet, [this] { Browse(); });
  OnSelChange(kComboNetProtocol, [this] { OnProtocolChanged(); });
  OnSelChange(kComboNetDataType, [this] { OnDataTypeChanged(); });
}

void CNetInfoImportWizPage1::SetDataType(NetDataType data_type) {
  data_type_ = data_type;
  data_type_text_.Empty();
}

void CNetInfoImportWizPage1::OnInitDialog() {
  auto& protocols = GetDlgItem<CComboBox>(kComboNetProtocol);
  for (const CString& name : NetProtocolNames()) protocols.AddString(name);
  auto& data_types = GetDlgItem<CComboBox>(kComboNetDataType);
  for (const CString& name : NetDataTypeNames(NetProtocolNames().front())) data_types.AddString(name);
  CPropertyPage::OnInitDialog();
}

void CNetInfoImportWizPage1::DoDataExchange(CDataExchange& exchange) {
  exchange.Text(kEditNetPath, file_path_);
  exchange.ComboText(kComboNetProtocol, protocol_text_);
  exchange.ComboText(kComboNetDataType, data_type_text_);
}

bool CNetInfoImportWizPage1::OnSetActive() {
  CPropertyPage::OnSetActive();
  ShowWizardButtons();
  return true;
}

void CNetInfoImportWizPage1::ShowWizardButtons() {
  GetSheet()->PostWizardButtons(file_path_.IsEmpty() ? 0 : kWizardNext);
}

void CNetInfoImportWizPage1::Browse() {
  UpdateData(true);
  CFileDialog dialog(true, "", "", CFileDialog::kFileMustExist | CFileDialog::kHideReadOnly,
                     "Excel file (*.xls)|*.xls|Excel 2007 file (*.xlsx)|*.xlsx||");
  dialog.SetTitle(NetBrowseTitle(data_type_));
  if (dialog.DoModal() == kIdOk) {
    file_path_ = dialog.GetPathName();
    source_file_type_ = SourceFileTypeOf(file_path_);
    UpdateData(false);
  }
  if (!file_path_.IsEmpty()) ShowWizardButtons();
}

void CNetInfoImportWizPage1::OnProtocolChanged() {
  const CString protocol = GetDlgItem<CComboBox>(kComboNetProtocol).GetWindowText();
  auto& data_types = GetDlgItem<CComboBox>(kComboNetDataType);
  data_types.ResetContent();
  for (const CString& name : NetDataTypeNames(protocol)) data_types.AddString(name);
  shows_td_list_ = protocol == NetProtocolName(kProtocolTdScdma) ? 1 : 0;
  if (data_types.GetCurSel() < 0) data_types.SetCurSel(0);
}

void CNetInfoImportWizPage1::OnDataTypeChanged() {
  NetDataType chosen = kNetNone;
  TakeNetDataType(GetDlgItem<CComboBox>(kComboNetDataType).GetWindowText(), chosen);
  if (chosen != kNetTdNeighbour && chosen != kNetCustomCpiGroup) return;
  auto& protocols = GetDlgItem<CComboBox>(kComboNetProtocol);
  protocols.SetCurSel(protocols.FindStringExact(-1, NetProtocolName(kProtocolTdScdma)));
}

int CNetInfoImportWizPage1::OnWizardNext() {
  UpdateData(true);
  TakeNetProtocol(protocol_text_, protocol_);
  TakeNetDataType(data_type_text_, data_type_);
  CString refusal;
  if (file_path_.IsEmpty()) {
    refusal = "请选择要导入的数据文件!"_gbk;
  } else if (source_file_type_ == kSourceOther) {
    refusal = "文件类型错误,请重选!"_gbk;
  } else if (data_type_ == kNetNone) {
    refusal = "请选择要导入的网元数据类型!"_gbk;
  }
  if (refusal.IsEmpty()) return kWizardGoOn;
  ShowMessageBox(refusal, MessageIcon::kWarning, MessageButtons::kOk, kApplicationCaption, this);
  return kWizardStay;
}

}  // namespace loom
