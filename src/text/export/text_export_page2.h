#pragma once

#include <set>
#include <vector>

#include "components/markup.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/property_sheet.h"
#include "platform/ui/tree_ctrl.h"
#include "text/export/text_export_page1.h"
#include "text/export/text_export_writer.h"

namespace loom {

// Second page of the text export: which parameters of the stream, in which order, within which limits.
class CTextExportWizPage2 final : public CPropertyPage {
 public:
  explicit CTextExportWizPage2(const CTextExportWizPage1& stream_page);  // outlives this page

  const std::vector<CString>& GetParameters() const { return parameters_; }  // after Next
  const ExportLimits& GetLimits() const { return limits_; }

 protected:
  void OnInitDialog() override;
  bool OnSetActive() override;
  int OnWizardNext() override;

 private:
  CMutiTreeCtrl& Tree() const;
  CListCtrl& List() const;
  void ShowStream(IDataStream& stream);
  bool RemoveUnavailable(HTREEITEM item);
  void AddSelected();
  void AddParameter(const CString& name);
  void RemoveSelected();
  void RemoveAll();
  void MoveUp();
  void MoveDown();
  void MoveRow(int from, int to);
  void EditLimit();
  void UpdateButtons();

  const CTextExportWizPage1& stream_page_;
  CMarkupMSXML navigator_;
  const IDataStream* shown_stream_ = nullptr;  // whose tree is shown
  std::set<CString> ie_names_;                 // of that stream
  std::vector<CString> parameters_;
  ExportLimits limits_;
};

}  // namespace loom
