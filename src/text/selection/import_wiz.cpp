#include "text/selection/import_wiz.h"

#include "text/selection/ie_selection_page.h"

namespace loom {

bool CImportWiz::AcceptsOk() const {
  auto* const selection = GetPageCount() > 0 ? dynamic_cast<CSelImportDialog*>(&GetPage(0)) : nullptr;
  return selection == nullptr || selection->ConfirmSelection();
}

void CImportWiz::OnCommand(int id) {
  accept_ = 1;
  if (id == kIdOk && !AcceptsOk()) accept_ = 0;
  if (accept_ != 0) CPropertySheet::OnCommand(id);
}

}  // namespace loom
