#pragma once

#include <map>

#include "components/stream_manager.h"
#include "platform/ui/property_sheet.h"
#include "platform/ui/tree_ctrl.h"

namespace loom {

// First page of the text export: which stream.
class CTextExportWizPage1 final : public CPropertyPage {
 public:
  explicit CTextExportWizPage1(std::map<CString, ILogfile*> logs);

  IDataStream* GetStream() const { return stream_; }  // null until Next

 protected:
  void OnInitDialog() override;
  bool OnSetActive() override;
  int OnWizardNext() override;

 private:
  CTreeCtrl& Tree() const;
  void BuildTree();
  IDataStream* SelectedStream() const;  // null when the selected item is none
  void UpdateButtons();

  std::map<CString, ILogfile*> logs_;
  IDataStream* stream_ = nullptr;
};

}  // namespace loom
