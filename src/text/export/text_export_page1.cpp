#include "text/export/text_export_page1.h"

#include <utility>

#include "components/dual_protocol.h"
#include "resources/images.h"
#include "resources/text_export_templates.h"

namespace loom {

CTextExportWizPage1::CTextExportWizPage1(std::map<CString, ILogfile*> logs)
    : CPropertyPage(kTextExport1Template), logs_(std::move(logs)) {
  OnSelChange(kTreeExport, [this] { UpdateButtons(); });
}

CTreeCtrl& CTextExportWizPage1::Tree() const { return GetDlgItem<CTreeCtrl>(kTreeExport); }

void CTextExportWizPage1::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  Tree().SetImageList(CImageList(kTreeImages));
  BuildTree();
}

void CTextExportWizPage1::BuildTree() {
  CTreeCtrl& tree = Tree();
  const HTREEITEM root = tree.InsertItem("日志文件"_gbk, kImageLogFiles);
  for (const auto& [path, log] : logs_) {
    const HTREEITEM log_item = tree.InsertItem(log->GetName(), kImageLogFile, root);
    for (IDataStream* const stream : log->GetStreams()) {
      if (stream->GetProtocol() == kDualProtocol) continue;
      const HTREEITEM item = tree.InsertItem(stream->GetName(), kImageStream, log_item);
      tree.SetItemData(item, reinterpret_cast<std::intptr_t>(stream));
    }
    tree.Expand(log_item);
  }
  tree.Expand(root);
}

// Only items of streams remember one.
IDataStream* CTextExportWizPage1::SelectedStream() const {
  const HTREEITEM item = Tree().GetSelectedItem();
  return item ? reinterpret_cast<IDataStream*>(Tree().GetItemData(item)) : nullptr;
}

void CTextExportWizPage1::UpdateButtons() {
  GetSheet()->SetWizardButtons(SelectedStream() != nullptr ? kWizardNext : 0);
}

bool CTextExportWizPage1::OnSetActive() {
  if (!CPropertyPage::OnSetActive()) return false;
  UpdateButtons();
  return true;
}

int CTextExportWizPage1::OnWizardNext() {
  IDataStream* const stream = SelectedStream();
  if (stream == nullptr) return kWizardStay;
  stream_ = stream;
  return kWizardGoOn;
}

}  // namespace loom
