#pragma once

#include <map>
#include <string>
#include <vector>

#include "components/import_settings.h"
#include "components/markup.h"
#include "platform/ui/property_sheet.h"
#include "platform/ui/tree_ctrl.h"
#include "text/selection/ie_template.h"

namespace loom {

// The page "参数选择": which information elements a log import brings in. Selections can be kept in template files.
class CSelImportDialog final : public CPropertyPage {
 public:
  CSelImportDialog();

  // Before the page is shown: 0 lets a template decide the first ticks, and what was chosen before, whose value ranges
  // leaves keep that are ticked again.
  void SetFirstUse(std::int32_t first_use) { first_use_ = first_use; }
  void SetPreviousSettings(const ImpIESettings& settings) { previous_settings_ = settings; }

  // Whether the sheet may close with this selection; asks when a protocol is left out.
  bool ConfirmSelection();

  // After the sheet's OK: the ticked leaves with their settings, always with record time and position.
  const ImpIESettings& GetResult() const { return result_; }

 protected:
  void OnInitDialog() override;
  void OnOK() override;

 private:
  CMutiTreeCtrl& Tree() const;
  void BuildTree();
  std::vector<CString> TickedLeaves() const;
  CString IeNameOf(const CString& leaf) const;
  void CollectResult();
  void LoadTemplate();
  void SaveTemplate();
  void NoteUnknownEntries(const CString& path) const;
  void ReportTemplate(bool is_done, const std::string& failure);

  CMarkupMSXML navigator_;
  std::map<CString, CString> ie_names_;  // tree text -> IE that stands for it, where that is another name
  ImpIESettings previous_settings_;
  ImpIESettings result_;
  IeTemplate template_;
  std::int32_t first_use_ = 1;
  bool tree_built_ = false;
};

}  // namespace loom
